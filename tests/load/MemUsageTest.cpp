// SPDX-License-Identifier: MIT
//
// The memory load: a shell with a simulated `free` and the real awk, in a folder of the test's own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "Talvane.h"
#include "simulator/SimulatedServer.h"

namespace {

using ::testing::ElementsAre;

constexpr const char* kCommand =
    "free |awk '{FS=\":\"; if ($1~/Mem/){print $2}}'|awk '{print $1;print $2}' > Memusage_dat ";

class MemUsageTest : public ::testing::Test {
protected:
    MemUsageTest() : before(std::filesystem::current_path()) {
        std::string name = testing::TempDir() + "memory-XXXXXX";
        if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder " + name);
        folder = name;
        std::filesystem::current_path(folder);
    }
    ~MemUsageTest() override {
        std::filesystem::current_path(before);
        std::filesystem::remove_all(folder);
    }

    int ShareOf(std::uint64_t total, std::uint64_t used) {
        server.GetFreeProgram().SetMemory(total, used);
        return GetMemUsageRate();
    }

    std::filesystem::path before;
    std::filesystem::path folder;
    sim::SimulatedServer server;
};

TEST_F(MemUsageTest, ShareIsTruncated) {
    EXPECT_EQ(ShareOf(1000, 999), 99);
    EXPECT_EQ(ShareOf(3, 1), 33);
    EXPECT_EQ(ShareOf(3, 2), 66);
}

TEST_F(MemUsageTest, WholeSharesAreReported) {
    EXPECT_EQ(ShareOf(1000, 0), 0);
    EXPECT_EQ(ShareOf(1000, 10), 1);
    EXPECT_EQ(ShareOf(1000, 1000), 100);
    EXPECT_EQ(ShareOf(524288, 262144), 50);
}

TEST_F(MemUsageTest, ShareIsNarrowedToAFloatBeforeItIsTruncated) {
    // 99.999999... rounds up to 100 with 24 digits.
    EXPECT_EQ(ShareOf(2147483647, 2147483646), 100);
    EXPECT_EQ(ShareOf(16777216, 16777215), 99);
}

TEST_F(MemUsageTest, LargeNumbersDoNotOverflow) {
    EXPECT_EQ(ShareOf(2000000000, 1500000000), 75);
}

TEST_F(MemUsageTest, NumbersPastALongAreTheLargestOne) {
    EXPECT_EQ(ShareOf(8000000000, 6000000000), 100);
}

TEST_F(MemUsageTest, CommandIsTheWholeLineForTheShell) {
    ShareOf(1000, 500);
    EXPECT_THAT(server.GetLog().Lines(), ElementsAre("system " + std::string(kCommand) + " -> 0"));
}

TEST_F(MemUsageTest, NoFileRemains) {
    EXPECT_EQ(ShareOf(1000, 500), 50);
    EXPECT_TRUE(std::filesystem::is_empty(folder));
}

TEST_F(MemUsageTest, FileOfAnotherRunIsOverwritten) {
    std::ofstream("Memusage_dat") << "100\n100\n";
    EXPECT_EQ(ShareOf(1000, 500), 50);
}

TEST_F(MemUsageTest, FileThatTheShellCannotMakeIsSaid) {
    std::filesystem::create_directory("gone");
    std::filesystem::current_path("gone");
    std::filesystem::remove(folder / "gone");  // nothing can be made in a folder that is not there
    testing::internal::CaptureStderr();        // the shell complains
    testing::internal::CaptureStdout();
    EXPECT_EQ(ShareOf(1000, 500), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "File is not exist!\n");
    (void)testing::internal::GetCapturedStderr();
}

TEST_F(MemUsageTest, FailedCommandLeavesTheFileOfAnotherRunToBeRead) {
    std::ofstream("Memusage_dat") << "1000\n250\n";
    server.GetFreeProgram().SetMemory(1000, 500);
    server.Fail("system", 1, ENOMEM);
    EXPECT_EQ(GetMemUsageRate(), 25);
    EXPECT_TRUE(std::filesystem::is_empty(folder));
}

// Whoever can make a link in the agent's working directory can have a file overwritten.
TEST_F(MemUsageTest, LinkNamedLikeTheScratchFileIsFollowedAndThenRemoved) {
    std::ofstream("precious") << "text\n";
    std::filesystem::create_symlink("precious", "Memusage_dat");
    EXPECT_EQ(ShareOf(1000, 500), 50);
    std::string line;
    std::getline(std::ifstream("precious") >> std::ws, line);
    EXPECT_EQ(line, "1000");
    EXPECT_FALSE(std::filesystem::is_symlink("Memusage_dat"));
}

TEST_F(MemUsageTest, FullDiskGivesTheProcessorsIndefiniteIntegerAndLeavesNoFile) {
    std::filesystem::create_symlink("/dev/full", "Memusage_dat");
    testing::internal::CaptureStderr();  // awk complains
    EXPECT_EQ(ShareOf(1000, 500), INT_MIN);
    (void)testing::internal::GetCapturedStderr();
    EXPECT_TRUE(std::filesystem::is_empty(folder));
}

// Whoever can put a `free` into the agent's PATH has run a program. Its output is numbers to the
// library, and no command.
TEST_F(MemUsageTest, OutputOfAPlantedProgramIsNumbersAndNothingElse) {
    server.GetFreeProgram().SetText("Mem: $(touch planted) `touch planted` ; touch planted\n");
    EXPECT_EQ(GetMemUsageRate(), INT_MIN);
    EXPECT_TRUE(std::filesystem::is_empty(folder));
    // A long line is read in pieces, of which each is the largest number.
    server.GetFreeProgram().SetText("Mem: " + std::string(100000, '9') + " 1 2 3\n");
    EXPECT_EQ(GetMemUsageRate(), 100);
    EXPECT_TRUE(std::filesystem::is_empty(folder));
}

// What the file holds when the command writes nothing.
class MemFileTest : public MemUsageTest {
protected:
    int ShareOfFile(const std::string& text) {
        std::ofstream("Memusage_dat") << text;
        server.GetFreeProgram().SetMemory(1000, 500);
        server.Fail("system", 1, ENOMEM);
        return GetMemUsageRate();
    }
};

TEST_F(MemFileTest, NumbersAreDecimalWithWhateverFollows) {
    EXPECT_EQ(ShareOfFile("1000\n500"), 50);
    EXPECT_EQ(ShareOfFile(" 1000 kB\n 300 kB\n"), 30);
    EXPECT_EQ(ShareOfFile("0100\n050\n"), 50);
}

TEST_F(MemFileTest, LineThatIsNoNumberIsZero) {
    EXPECT_EQ(ShareOfFile("1000\nmuch\n"), 0);
    EXPECT_EQ(ShareOfFile("1000\n"), 0);
}

TEST_F(MemFileTest, ShareOfNoMemoryIsTheProcessorsIndefiniteInteger) {
    EXPECT_EQ(ShareOfFile("0\n0\n"), INT_MIN);
    EXPECT_EQ(ShareOfFile("0\n1\n"), INT_MIN);
    EXPECT_EQ(ShareOfFile(""), INT_MIN);
}

TEST_F(MemFileTest, LineIsReadInPiecesOfTwoHundredFiftyFiveBytes) {
    const std::string zeros(255 - 4, '0');
    EXPECT_EQ(ShareOfFile(zeros + "1000" + "250\n999\n"), 25);
    EXPECT_EQ(ShareOfFile(zeros + "100\n25\n"), 25);
}

TEST_F(MemFileTest, NegativeNumbersAreRead) {
    EXPECT_EQ(ShareOfFile("1000\n-999\n"), -99);
}

}  // namespace
