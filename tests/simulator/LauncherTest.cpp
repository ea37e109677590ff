// SPDX-License-Identifier: MIT
//
// Programs on a simulated server, started by talvane-sim.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "MachineFolder.h"
#include "archive/Gzip.h"
#include "archive/Tar.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kTable = "smbios version 2.3\nstructure 1 handle 1 length 8\n";

struct Result {
    int status;
    std::string output;  // and errors
};

Result Shell(const std::string& command) {
    FILE* const pipe = popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) return {-1, "cannot start a shell"};
    std::string output;
    std::array<char, 256> part;
    while (std::fgets(part.data(), part.size(), pipe) != nullptr) output += part.data();
    return {WEXITSTATUS(pclose(pipe)), output};
}

// For programs that are preloaded without talvane-sim, which sees to this itself: where these
// tests are built with AddressSanitizer, its runtime would insist on coming first.
constexpr const char* kPreloading = "ASAN_OPTIONS=$ASAN_OPTIONS:verify_asan_link_order=0 ";

Result Launch(const std::string& arguments) {
    return Shell(TALVANE_SIM " " + arguments);
}

TEST(LauncherTest, ProgramSeesTheMachineAndItsChildrenDoNot) {
    const MachineFolder folder(kTable);
    const Result result = Launch(folder.path.string() + " -- " VISITOR " --help you");
    EXPECT_EQ(result.output, "anchor _SM_, port 0xFF, 2 arguments\n--help, a day later\n0\n");
    EXPECT_EQ(result.status, 0);
}

TEST(LauncherTest, ProgramSeesTheMachineOfAnArchive) {
    const MachineFolder folder("");
    const std::string table = kTable;
    const archive::Bytes gzip = archive::Compress(
        archive::WriteTar({{"server/machine.txt", {table.begin(), table.end()}}}, 0));
    folder.Write("box.tar.gz", {reinterpret_cast<const char*>(gzip.data()), gzip.size()});
    const Result result =
        Shell("cd " + folder.path.string() + " && " TALVANE_SIM " box.tar.gz -- " VISITOR);
    EXPECT_THAT(result.output, StartsWith("anchor _SM_, port 0xFF, "));
    EXPECT_EQ(result.status, 0);
}

TEST(LauncherTest, ExitStatusOfTheProgramIsReturned) {
    const MachineFolder folder("without /dev/mem EACCES");
    const Result result = Launch(folder.path.string() + " -- " VISITOR);
    EXPECT_EQ(result.output, "open: Permission denied\n");
    EXPECT_EQ(result.status, 1);
}

TEST(LauncherTest, LogFileShowsEachAccessOfTheProgram) {
    const MachineFolder folder(kTable);
    const std::string log = (folder.path / "log").string();
    EXPECT_EQ(Launch(folder.path.string() + " --log " + log + " -- " VISITOR).status, 0);
    std::ostringstream text;
    text << std::ifstream(log).rdbuf();
    EXPECT_EQ(text.str(),
              "open /dev/mem O_RDONLY -> ok\n"
              "lseek /dev/mem 0xF0010 -> 0xF0010\n"
              "read /dev/mem 0xF0010 4 -> 4\n"
              "close /dev/mem -> 0\n"
              "iopl 3 -> 0\n"
              "in 0xCA3 1 -> 0xFF\n"
              "sleep 86400 -> 0\n");
}

TEST(LauncherTest, ProgramInRealTimeRunsToItsEnd) {
    const MachineFolder folder(kTable);
    const Result result =
        Launch(folder.path.string() + " --real-time -- " VISITOR_FOLDER "/emptiness");
    EXPECT_EQ(result.output, "no machine path was touched\n");
    EXPECT_EQ(result.status, 0);
}

TEST(LauncherTest, RelativeFolderAndProgramInPathAreFound) {
    const MachineFolder folder(kTable);
    const Result result =
        Shell("cd " + folder.path.string() +
              " && PATH=" VISITOR_FOLDER ":$PATH " TALVANE_SIM " . --log log -- visitor");
    EXPECT_THAT(result.output, StartsWith("anchor _SM_"));
    EXPECT_TRUE(std::filesystem::exists(folder.path / "log"));
}

TEST(LauncherTest, OtherPreloadedLibrariesStayPreloaded) {
    const MachineFolder folder(kTable);
    const Result result =
        Shell(kPreloading + std::string("LD_PRELOAD=" PROBE_LIBRARY " " TALVANE_SIM " ") +
              folder.path.string() + " -- " VISITOR);
    EXPECT_THAT(result.output, EndsWith("\n1\n")) << "one of the variables is left";
}

TEST(LauncherTest, BadMachineIsReportedBeforeTheProgramStarts) {
    const MachineFolder folder("# one\nmemroy 1M\n");
    const Result result = Launch(folder.path.string() + " -- " VISITOR);
    EXPECT_EQ(result.output, "talvane-sim: " + folder.path.string() +
                                 "/machine.txt:2: unknown statement \"memroy\"\n");
    EXPECT_EQ(result.status, 2);
}

TEST(LauncherTest, ProgramsThatCannotBeSimulatedAreRefused) {
    const MachineFolder folder(kTable);
    const std::string machine = folder.path.string();
    folder.Write("script", "#!/bin/sh\n");
    std::filesystem::permissions(folder.path / "script", std::filesystem::perms::owner_all);

    Result result = Launch(machine + " -- " + machine + "/script");
    EXPECT_EQ(result.output, "talvane-sim: " + machine + "/script: not a 32-bit x86 program\n");
    EXPECT_EQ(result.status, 2);
    result = Launch(machine + " -- " STATIC_VISITOR);
    EXPECT_EQ(result.output, "talvane-sim: " STATIC_VISITOR
                             ": statically linked, so it cannot run on a simulated server\n");
    EXPECT_EQ(result.status, 2);
    result = Launch(machine + " -- no-such-program");
    EXPECT_EQ(result.output, "talvane-sim: no-such-program: No such file or directory\n");
    EXPECT_EQ(result.status, 2);
}

TEST(LauncherTest, ControlFileWithoutAControllerIsRefused) {
    const MachineFolder folder(kTable);
    const Result result = Launch(folder.path.string() + " --control file -- " VISITOR);
    EXPECT_EQ(result.output, "talvane-sim: " + folder.path.string() +
                                 " has no management controller for a control file to change\n");
    EXPECT_EQ(result.status, 2);
}

TEST(LauncherTest, ControlFileThatWouldWaitForAWriterIsRefused) {
    const MachineFolder folder("bmc kcs");
    const std::string fifo = folder.path.string() + "/fifo";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const Result result = Launch(folder.path.string() + " --control " + fifo + " -- " VISITOR);
    EXPECT_EQ(result.output, "talvane-sim: " + fifo + ": not a regular file\n");
    EXPECT_EQ(result.status, 2);
}

TEST(LauncherTest, UnwritableLogIsReported) {
    const MachineFolder folder(kTable);
    const Result result = Launch(folder.path.string() + " --log /nowhere/log -- " VISITOR);
    EXPECT_EQ(result.output, "talvane-sim: /nowhere/log: No such file or directory\n");
    EXPECT_EQ(result.status, 2);
}

struct Refused {
    const char* arguments;
    const char* message;
};

void PrintTo(const Refused& refused, std::ostream* out) {
    *out << refused.arguments;
}

class LauncherUsageTest : public testing::TestWithParam<Refused> {};

TEST_P(LauncherUsageTest, ErrorIsExplainedAndExitsWithTwo) {
    const Result result = Launch(GetParam().arguments);
    EXPECT_EQ(result.output, std::string("talvane-sim: ") + GetParam().message +
                                 "\nRun talvane-sim --help for its options.\n");
    EXPECT_EQ(result.status, 2);
}

constexpr Refused kRefused[] = {
    {"", "MACHINE is required"},
    {"-- program", "MACHINE is required"},
    {"'' -- program", "MACHINE: an empty name names no server"},
    {"machine", "-- PROGRAM is required"},
    {"machine --", "-- PROGRAM is required"},
    {"machine program", "The following argument was not expected: program"},
    {"machine --yes 20 -x --spoon=3 -- program",
     "The following arguments were not expected: --yes 20 -x --spoon=3"},
    {"machine -xy -- program", "The following arguments were not expected: -x -y"},
    {"machine --real-time=3 -- program", "The following argument was not expected: --real-time=3"},
    {"machine --log -- program", "--log: 1 required FILE missing"},
    {"machine --control= -- program", "--control: 1 required FILE missing"},
    {"machine --log one --log two -- program", "--log is given twice"},
};
INSTANTIATE_TEST_SUITE_P(CommandLine, LauncherUsageTest, testing::ValuesIn(kRefused));

TEST(LauncherTest, HelpAndVersionAreShownWhateverElseTheLineHolds) {
    for (const char* const arguments :
         {"--help", "-h", "--spoon machine --help", "machine -h -- program --version"}) {
        const Result help = Launch(arguments);
        EXPECT_EQ(help.status, 0) << arguments;
        EXPECT_THAT(help.output, HasSubstr("Usage: talvane-sim MACHINE [OPTION...] -- PROGRAM"));
    }
    const Result version = Launch("--version");
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.output, "talvane-sim " TALVANE_VERSION "\n");
}

TEST(LauncherTest, LostOutputIsReported) {
    for (const char* const option : {"--help", "--version"}) {
        const Result result =
            Shell(std::string("(" TALVANE_SIM " ") + option + " 2>&1 >/dev/full)");
        EXPECT_EQ(result.output, "talvane-sim: cannot write to standard output\n") << option;
        EXPECT_EQ(result.status, 2) << option;
    }
}

TEST(PreloadTest, ProgramWithoutAMachineIsNotSimulated) {
    const Result result = Shell(
        kPreloading + std::string("LD_PRELOAD=" PRELOAD_LIBRARY " " VISITOR_FOLDER "/emptiness"));
    EXPECT_EQ(result.output, "no machine path was touched\n");
    EXPECT_EQ(result.status, 0);
}

TEST(PreloadTest, BadMachineEndsTheProgram) {
    const Result result =
        Shell(kPreloading +
              std::string("TALVANE_MACHINE=/nowhere LD_PRELOAD=" PRELOAD_LIBRARY " " VISITOR));
    EXPECT_EQ(result.output, "simulated server: /nowhere/machine.txt: No such file or directory\n");
    EXPECT_EQ(result.status, 2);
}

}  // namespace
