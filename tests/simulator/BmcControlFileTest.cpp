// SPDX-License-Identifier: MIT
//
// What a person changes in a control file shows with the next reading.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "MachineFolder.h"
#include "simulator/description/MachineFile.h"
#include "simulator/machine/Machine.h"

namespace {

using sim::Bytes;

class BmcControlFileTest : public testing::Test {
protected:
    BmcControlFileTest() { LoadMachine(folder.path, machine); }

    Bytes Read(std::uint8_t sensor) {
        sim::BmcRequest request;
        request.netFn = 4;
        request.command = 0x2D;
        request.data = {sensor};
        machine.GetBmc().Answer(request);
        return request.response;
    }
    void Say(std::string_view text) { folder.Write("live", text); }

    MachineFolder folder{"bmc kcs\ncontrol live\nreading 1 20\nstates 1 3\nreading 2 30\n"};
    sim::Machine machine;
};

TEST_F(BmcControlFileTest, MissingFileLeavesTheSensorsAsDescribed) {
    EXPECT_EQ(Read(1), (Bytes{20, 0xC0, 3, 0}));
}

TEST_F(BmcControlFileTest, ChangeShowsInTheNextReading) {
    Say("# hot\nreading 1 90\n");
    EXPECT_EQ(Read(1), (Bytes{90, 0xC0, 3, 0}));
    EXPECT_EQ(Read(2), (Bytes{30, 0xC0, 0, 0})) << "another sensor";
    Say("reading 1 91\nstates 1 0x80 0x01\n");
    EXPECT_EQ(Read(1), (Bytes{91, 0xC0, 0x80, 0x01}));
    Say("reading 1 unavailable\n");
    EXPECT_EQ(Read(1), (Bytes{0, 0xE0, 3, 0}));
}

TEST_F(BmcControlFileTest, RemovedStatementRestoresTheDescribedValue) {
    Say("reading 1 90\n");
    EXPECT_EQ(Read(1)[0], 90);
    Say("");
    EXPECT_EQ(Read(1)[0], 20);
    Say("reading 1 90\n");
    EXPECT_EQ(Read(1)[0], 90);
    std::filesystem::remove(folder.path / "live");
    EXPECT_EQ(Read(1)[0], 20);
}

TEST_F(BmcControlFileTest, StatementAboutAnUnknownSensorCreatesItAndIsReportedOnce) {
    EXPECT_EQ(Read(7), Bytes{});
    Say("reading 1 90\nreading 7 1\nstates 7 1\nreading 0x1F 2\n");
    testing::internal::CaptureStderr();
    EXPECT_EQ(Read(7), (Bytes{1, 0xC0, 1, 0}));
    EXPECT_EQ(Read(1)[0], 90);
    const std::string file = "simulated server: " + (folder.path / "live").string();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), file + ":2: the machine has no sensor 0x7\n" +
                                                          file +
                                                          ":4: the machine has no sensor 0x1F\n");
}

TEST_F(BmcControlFileTest, FileThatBecomesAFifoIsReportedOnceAndChangesNothing) {
    Say("reading 1 90\n");
    EXPECT_EQ(Read(1)[0], 90);
    std::filesystem::remove(folder.path / "live");
    ASSERT_EQ(mkfifo((folder.path / "live").c_str(), 0600), 0);
    testing::internal::CaptureStderr();
    EXPECT_EQ(Read(1)[0], 90);
    EXPECT_EQ(Read(1)[0], 90);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "simulated server: " + (folder.path / "live").string() +
                  ": not a regular file; its previous content still applies\n");
    std::filesystem::remove(folder.path / "live");
    EXPECT_EQ(Read(1)[0], 20);
}

// The process's own memory is a regular file, and nothing is at its start.
TEST_F(BmcControlFileTest, FileThatCannotBeReadIsReportedOnceAndChangesNothing) {
    Say("reading 1 90\n");
    EXPECT_EQ(Read(1)[0], 90);
    std::filesystem::remove(folder.path / "live");
    std::filesystem::create_symlink("/proc/self/mem", folder.path / "live");
    testing::internal::CaptureStderr();
    EXPECT_EQ(Read(1)[0], 90);
    EXPECT_EQ(Read(1)[0], 90);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "simulated server: " + (folder.path / "live").string() +
                  ": cannot be read; its previous content still applies\n");
    std::filesystem::remove(folder.path / "live");
    EXPECT_EQ(Read(1)[0], 20);
}

TEST_F(BmcControlFileTest, ReadingWithAMomentShowsFromThatMomentOn) {
    Say("reading 1 at 5 90\n");
    EXPECT_EQ(Read(1)[0], 20);
    (void)machine.Sleep(5);
    EXPECT_EQ(Read(1)[0], 90);
}

TEST_F(BmcControlFileTest, MistakeIsReportedOnceAndChangesNothing) {
    Say("reading 1 90\n");
    EXPECT_EQ(Read(1)[0], 90);
    Say("reading 1 95\nreading 2 3oo\n");
    testing::internal::CaptureStderr();
    EXPECT_EQ(Read(1)[0], 90);
    EXPECT_EQ(Read(2)[0], 30);
    EXPECT_EQ(
        testing::internal::GetCapturedStderr(),
        "simulated server: " + (folder.path / "live").string() +
            ":2: the raw reading \"3oo\" is not a number; its previous content still applies\n");
    Say("type 4\n");
    testing::internal::CaptureStderr();
    EXPECT_EQ(Read(1)[0], 90);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "simulated server: " + (folder.path / "live").string() +
                  ":1: the statement \"type\" is none of reading, states; "
                  "its previous content still applies\n");
    Say("reading 1 95\nreading 2 31\n");
    EXPECT_EQ(Read(1)[0], 95);
    EXPECT_EQ(Read(2)[0], 31);
}

}  // namespace
