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
using testing::Not;
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

TEST(LauncherTest, FolderWithoutANameInPathIsTheCurrentOne) {
    const MachineFolder folder(kTable);
    const Result result = Shell("cd " VISITOR_FOLDER " && PATH=: " TALVANE_SIM " " +
                                folder.path.string() + " -- emptiness");
    EXPECT_EQ(result.output, "no machine path was touched\n");
}

TEST(LauncherTest, FileInPathThatIsNotExecutableIsPassedOver) {
    const MachineFolder folder(kTable);
    folder.Write("emptiness", "text");
    const std::string machine = folder.path.string();
    const Result result = Shell("PATH=" + machine + ":" VISITOR_FOLDER " " TALVANE_SIM " " +
                                machine + " -- emptiness");
    EXPECT_EQ(result.output, "no machine path was touched\n");
}

TEST(LauncherTest, ProgramsOfTheSystemAreFoundWithoutAPath) {
    const MachineFolder folder(kTable);
    const Result result =
        Shell("unset PATH; " TALVANE_SIM " " + folder.path.string() + " -- sh -c true");
    EXPECT_THAT(result.output, Not(HasSubstr("No such file"))) << "it can be of 64 bits";
}

// A copy of talvane-sim as a package installs it: with its library beside it, and a machine.
class InstalledLauncher : public MachineFolder {
public:
    explicit InstalledLauncher(const std::string& programFolder) : MachineFolder("") {
        const std::filesystem::path folder = path / programFolder;
        std::filesystem::create_directories(folder);
        std::filesystem::copy_file(TALVANE_SIM, folder / "talvane-sim");
        program = "'" + (folder / "talvane-sim").string() + "'";
        library = folder / "libtalvane-sim.so";
        std::filesystem::create_directories(path / MACHINES_FOLDER "/box");
        Write(MACHINES_FOLDER "/box/machine.txt", kTable);
    }
    void AddLibrary() const { std::filesystem::copy_file(PRELOAD_LIBRARY, library); }

    std::string program;  // as a word of the shell
    std::filesystem::path library;
};

TEST(LauncherTest, BareNameIsThatOfAnInstalledMachine) {
    const InstalledLauncher installed("bin");
    installed.AddLibrary();
    const Result result = Shell("cd / && " + installed.program + " box -- " VISITOR);
    EXPECT_THAT(result.output, StartsWith("anchor _SM_, port 0xFF, 0 arguments\n"));
    EXPECT_EQ(result.status, 0);
}

TEST(LauncherTest, BareNameOfNoMachineIsAFolderThatIsMissing) {
    const InstalledLauncher installed("bin");
    const Result result = Shell("cd / && " + installed.program + " crate -- " VISITOR);
    EXPECT_EQ(result.output, "talvane-sim: crate/machine.txt: No such file or directory\n");
    EXPECT_EQ(result.status, 2);
}

TEST(LauncherTest, MissingPreloadLibraryIsReported) {
    const InstalledLauncher installed("bin");
    const Result result = Shell("cd / && " + installed.program + " box -- " VISITOR);
    EXPECT_EQ(result.output, "talvane-sim: libtalvane-sim.so is not where " +
                                 installed.library.parent_path().string() + " expects it\n");
    EXPECT_EQ(result.status, 2);
}

TEST(LauncherTest, PreloadLibraryInAPathThatTheLinkerWouldSplitIsRefused) {
    for (const char* const folder : {"a b", "a:b"}) {
        const InstalledLauncher installed(std::string(folder) + "/bin");
        installed.AddLibrary();
        const Result result =
            Shell(installed.program + " " + installed.path.string() + " -- " VISITOR);
        EXPECT_EQ(result.output, "talvane-sim: " + installed.library.string() +
                                     ": cannot be preloaded from a path with blanks or colons\n");
        EXPECT_EQ(result.status, 2);
    }
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

TEST(LauncherTest, FileThatMayNotBeExecutedIsRefused) {
    const MachineFolder folder(kTable);
    const std::string machine = folder.path.string();
    const Result result = Launch(machine + " -- " + machine + "/machine.txt");
    EXPECT_EQ(result.output, "talvane-sim: " + machine + "/machine.txt: Permission denied\n");
    EXPECT_EQ(result.status, 2);
}

// The header of a 32-bit x86 program whose one segment lies past the end of the file.
std::string ElfHeader() {
    std::string header(
        "\x7F"
        "ELF\1\1\1",
        7);
    header.resize(52);
    header[16] = 2;   // an executable
    header[18] = 3;   // EM_386
    header[28] = 52;  // of the program headers: their offset,
    header[42] = 32;  // size,
    header[44] = 1;   // and number
    return header;
}

TEST(LauncherTest, FilesWithWrongElfHeadersAreRefused) {
    const std::string whole = ElfHeader();
    std::string wide = whole;
    wide[4] = 2;  // ELFCLASS64
    std::string foreign = whole;
    foreign[18] = 40;  // EM_ARM
    constexpr const char* kForeign = ": not a 32-bit x86 program\n";
    const std::pair<std::string, std::string> files[] = {
        {std::string(52, 'x'), kForeign},
        {whole.substr(0, 51), kForeign},
        {wide, kForeign},
        {foreign, kForeign},
        {whole, ": statically linked, so it cannot run on a simulated server\n"}};
    const MachineFolder folder(kTable);
    const std::filesystem::path program = folder.path / "program";
    for (const auto& [bytes, complaint] : files) {
        folder.Write("program", bytes);
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        const Result result = Launch(folder.path.string() + " -- " + program.string());
        EXPECT_EQ(result.output, "talvane-sim: " + program.string() + complaint);
        EXPECT_EQ(result.status, 2);
    }
}

TEST(LauncherTest, ReadingsOfTheControlFileReachTheProgram) {
    const MachineFolder folder("bmc kcs\nsensor 1 \"FAN\"\nreading 1 20\n");
    const std::string machine = folder.path.string();
    folder.Write("control", "reading 1 80\n");
    EXPECT_EQ(Launch(machine + " -- " VISITOR_FOLDER "/thermometer").output,
              "completion 0x0, reading 20\n");
    const Result result =
        Shell("cd " + machine +
              " && " TALVANE_SIM " . --control control -- " VISITOR_FOLDER "/thermometer");
    EXPECT_EQ(result.output, "completion 0x0, reading 80\n");
    EXPECT_EQ(result.status, 0);
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

TEST(PreloadTest, UnwritableLogEndsTheProgram) {
    const MachineFolder folder(kTable);
    const Result result =
        Shell(kPreloading + std::string("TALVANE_MACHINE=") + folder.path.string() +
              " TALVANE_MACHINE_LOG=/nowhere/log LD_PRELOAD=" PRELOAD_LIBRARY " " VISITOR);
    EXPECT_EQ(result.output, "simulated server: /nowhere/log: No such file or directory\n");
    EXPECT_EQ(result.status, 2);
}

TEST(PreloadTest, LibraryThatTheLinkerWasToldToPreloadWorksWithoutItsVariable) {
    const MachineFolder folder(kTable);
    const Result result =
        Shell(kPreloading + std::string("TALVANE_MACHINE=") + folder.path.string() +
              " /lib/ld-linux.so.2 --preload " PRELOAD_LIBRARY " " VISITOR);
    EXPECT_EQ(result.output, "anchor _SM_, port 0xFF, 0 arguments\n-, a day later\n0\n");
    EXPECT_EQ(result.status, 0);
}

}  // namespace
