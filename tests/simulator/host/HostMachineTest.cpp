// SPDX-License-Identifier: MIT
//
// The running system as a machine: which paths and ports lead where, and what is said about areas
// that cannot be read.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>

#include "simulator/host/HostMachine.h"
#include "simulator/machine/Machine.h"
#include "simulator/machine/RealPorts.h"
#include "simulator/machine/SmbiosTable.h"
#include "tests/support/HostTree.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

std::string Text(const sim::Bytes& bytes) {
    return {bytes.begin(), bytes.end()};
}

// A tree with something for each area but the BMC.
class HostMachineTest : public testing::Test {
protected:
    HostMachineTest() {
        sim::SmbiosTable table;
        table.Add(1, 0x0100, 8).String(4, "Maker");
        WriteSmbios(table.Image());
        std::string configuration(64, '\0');
        configuration.replace(0, 4, "\x86\x80\x01\x02");
        tree.Write("sys/bus/pci/devices/0000:0a:1f.7/config", configuration);
        tree.Write("sys/block/sda/size", "2\n");
        tree.Write("sys/block/sda/device/model", "DISK\n");
        tree.Write("dev/sda", std::string(512, 'S') + std::string(512, 'T'));
        tree.Write("proc/stat", "cpu 1 2 3 4\n");
    }

    void WriteSmbios(const sim::Bytes& table) {
        std::string entryPoint = "_SM3_";
        entryPoint.resize(24);
        entryPoint[7] = 3;
        tree.Write("sys/firmware/dmi/tables/smbios_entry_point", entryPoint);
        tree.Write("sys/firmware/dmi/tables/DMI", Text(table));
    }

    std::vector<sim::AreaWay> Build(sim::Machine& machine, std::set<std::string> direct = {}) {
        return sim::BuildHostMachine({.root = tree.root, .direct = std::move(direct)}, machine);
    }

    // Of the area with this place in kAreas.
    std::string ProblemOf(std::size_t area) {
        sim::Machine machine;
        return Build(machine).at(area).problem;
    }

    std::string Path(const std::string& name) const { return (tree.root / name).string(); }

    static int OpenError(sim::Machine& machine, const char* path) {
        return machine.Open("", path, O_RDONLY)->error;
    }

    static std::string Contents(sim::Machine& machine, const char* path) {
        const auto opened = machine.Open("", path, O_RDONLY);
        if (!opened->Ok()) return "errno " + std::to_string(opened->error);
        std::array<char, 2000> bytes;
        const auto file = static_cast<int>(opened->value);
        const auto got = machine.Read("", file, bytes.data(), bytes.size());
        (void)machine.Close("", file);
        return {bytes.data(), static_cast<std::size_t>(got->value)};
    }

    HostTree tree;
};

TEST_F(HostMachineTest, AreasNameTheFilesThatTheyAreReadFrom) {
    sim::Machine machine;
    const auto ways = Build(machine);
    ASSERT_EQ(ways.size(), sim::kAreas.size());
    for (std::size_t i = 0; i < ways.size(); ++i) EXPECT_EQ(ways[i].area, sim::kAreas[i]);
    EXPECT_EQ(ways[0].from, Path("sys/firmware/dmi/tables"));
    EXPECT_EQ(ways[1].from, Path("dev/ipmi0"));
    EXPECT_EQ(ways[2].from, Path("sys/bus/pci/devices"));
    EXPECT_EQ(ways[3].from, Path("sys/block"));
    EXPECT_EQ(ways[3].note, "hda is sda");
    for (const std::size_t i : {0u, 2u, 3u, 4u}) EXPECT_EQ(ways[i].problem, "");
}

TEST_F(HostMachineTest, TableLiesInTheBiosSegment) {
    sim::Machine machine;
    (void)Build(machine);
    sim::Bytes anchor(4);
    ASSERT_TRUE(machine.GetMemory().Read(0xF0010, anchor));
    EXPECT_EQ(Text(anchor), "_SM_");
}

TEST_F(HostMachineTest, LongTableIsCutAndThatIsSaid) {
    sim::SmbiosTable table;
    for (unsigned i = 0; i < 300; ++i) table.Add(11, 0x1000, 250);
    ASSERT_EQ(table.Image().size(), 300u * 252);
    WriteSmbios(table.Image());
    sim::Machine machine;
    EXPECT_EQ(Build(machine)[0].note, "the table of 75600 bytes is cut to 65520");
}

TEST_F(HostMachineTest, PciFunctionAnswersAtItsAddress) {
    sim::Machine machine;
    (void)Build(machine);
    (void)machine.SetPrivilege(3);
    machine.PortOut(0xCF8, 4, 0x800AFF00);
    EXPECT_EQ(machine.PortIn(0xCFC, 4), 0x02018086u);
    machine.PortOut(0xCF8, 4, 0x80000000);
    EXPECT_EQ(machine.PortIn(0xCFC, 4), 0xFFFFFFFFu);
}

TEST_F(HostMachineTest, PciFunctionsOutOfReachAreCounted) {
    tree.Write("sys/bus/pci/devices/0000:0b:00.0/config", "");
    tree.Write("sys/bus/pci/devices/0001:00:00.0/config", "");
    sim::Machine machine;
    EXPECT_EQ(Build(machine)[2].note, "2 outside of buses 0 to 10 of domain 0 left out");
}

TEST_F(HostMachineTest, DiskHasItsFilesAndItsSectors) {
    sim::Machine machine;
    (void)Build(machine);
    EXPECT_EQ(Contents(machine, "/proc/ide/ide0/hda/model"), "DISK\n");
    EXPECT_EQ(Contents(machine, "/proc/ide/ide0/hda/capacity"), "2\n");
    EXPECT_EQ(Contents(machine, "/dev/hda"), std::string(512, 'S') + std::string(512, 'T'));
    EXPECT_EQ(machine.Open("", "/dev/hda", O_RDWR)->error, EACCES);
    EXPECT_EQ(OpenError(machine, "/dev/hdb"), ENOENT);
}

TEST_F(HostMachineTest, DiskThatCannotBeOpenedIsNamed) {
    sim::Machine machine;
    EXPECT_EQ(Build(machine)[3].unopened, "");
    tree.Write("sys/block/sdb/size", "2\n");
    sim::Machine other;
    const auto ways = Build(other);
    EXPECT_EQ(ways[3].problem, "");
    EXPECT_EQ(ways[3].unopened, (tree.root / "dev/sdb").string());
    EXPECT_EQ(ways[3].whyUnopened, "cannot open " + (tree.root / "dev/sdb").string() +
                                       ": No such file or directory (there is no such device "
                                       "file)");
    EXPECT_EQ(OpenError(other, "/dev/hdb"), ENOENT);
}

TEST_F(HostMachineTest, AllDisksThatCannotBeOpenedAreNamed) {
    tree.Write("sys/block/sdb/size", "2\n");
    tree.Write("sys/block/sdc/size", "2\n");
    sim::Machine machine;
    const auto ways = Build(machine);
    EXPECT_EQ(ways[3].note, "hda is sda, hdb is sdb, hdc is sdc");
    EXPECT_EQ(ways[3].unopened, Path("dev/sdb") + ", " + Path("dev/sdc"));
    EXPECT_EQ(ways[3].whyUnopened, "cannot open " + Path("dev/sdb") + ", " + Path("dev/sdc") +
                                       ": No such file or directory (there is no such device "
                                       "file)");
}

TEST_F(HostMachineTest, BlockDeviceWithoutASizeIsNoDisk) {
    tree.Write("sys/block/sdb/device/model", "DISK\n");
    sim::Machine machine;
    EXPECT_EQ(Build(machine)[3].note, "hda is sda");
}

TEST_F(HostMachineTest, DriveWithoutAMediumIsNoDisk) {
    tree.Write("sys/block/sdb/size", "0\n");
    sim::Machine machine;
    EXPECT_EQ(Build(machine)[3].note, "hda is sda");
}

TEST_F(HostMachineTest, LoadIsThatOfTheSystem) {
    sim::Machine machine;
    const auto ways = Build(machine);
    EXPECT_TRUE(ways[4].isDirect);
    EXPECT_EQ(Contents(machine, "/proc/stat"), "cpu 1 2 3 4\n");
    EXPECT_TRUE(machine.GetFreeProgram().IsRunBy("free | awk"));
    EXPECT_EQ(machine.GetFreeProgram().DefineBefore("free -k"), "free -k");
}

TEST_F(HostMachineTest, MissingTableIsExplainedAndMemoryRefused) {
    std::filesystem::remove_all(tree.root / "sys/firmware");
    sim::Machine machine;
    EXPECT_EQ(Build(machine)[0].problem,
              "cannot open " + Path("sys/firmware/dmi/tables/smbios_entry_point") +
                  ": No such file or directory (the firmware has no SMBIOS table, or the kernel "
                  "does not show it)");
    EXPECT_EQ(OpenError(machine, "/dev/mem"), ENOENT);
}

TEST_F(HostMachineTest, TableThatCannotBeReadIsExplainedAndMemoryRefused) {
    std::filesystem::remove(tree.root / "sys/firmware/dmi/tables/DMI");
    std::filesystem::create_directory(tree.root / "sys/firmware/dmi/tables/DMI");
    sim::Machine machine;
    EXPECT_EQ(Build(machine)[0].problem,
              "cannot open " + Path("sys/firmware/dmi/tables/DMI") + ": Is a directory");
    EXPECT_EQ(OpenError(machine, "/dev/mem"), EISDIR);
}

TEST_F(HostMachineTest, UnknownEntryPointIsExplained) {
    tree.Write("sys/firmware/dmi/tables/smbios_entry_point", "nonsense");
    sim::Machine machine;
    EXPECT_THAT(Build(machine)[0].problem, HasSubstr("the entry point is none of _SM_"));
    EXPECT_EQ(OpenError(machine, "/dev/mem"), EIO);
}

TEST_F(HostMachineTest, MissingBmcIsExplainedAndItsDeviceRefused) {
    sim::Machine machine;
    EXPECT_EQ(Build(machine)[1].problem,
              "cannot open " + Path("dev/ipmi0") +
                  ": No such device (no BMC, or its driver is not loaded: modprobe ipmi_si "
                  "ipmi_devintf)");
    EXPECT_EQ(OpenError(machine, "/dev/ipmi"), ENODEV);
    (void)machine.SetPrivilege(3);
    EXPECT_EQ(machine.PortIn(0xCA3, 1), 0xFFu) << "no system interface";
}

TEST_F(HostMachineTest, BmcHasASystemInterfaceThatIsIdle) {
    tree.Write("dev/ipmi0", "");
    sim::Machine machine;
    EXPECT_EQ(Build(machine)[1].problem, "");
    (void)machine.SetPrivilege(3);
    EXPECT_EQ(machine.PortIn(0xCA3, 1), 0u);
    EXPECT_EQ(machine.PortIn(0xCAA, 1), 0xFFu);
    EXPECT_EQ(OpenError(machine, "/dev/ipmi"), 0);
}

TEST_F(HostMachineTest, MissingFoldersAreExplained) {
    std::filesystem::remove_all(tree.root / "sys");
    EXPECT_THAT(ProblemOf(2), HasSubstr("(no PCI bus)"));
    EXPECT_THAT(ProblemOf(3), HasSubstr("(no disks)"));
    sim::Machine machine;
    (void)Build(machine);
    EXPECT_EQ(machine.OpenDirectory("", "/proc/ide")->error, ENOENT);
}

TEST_F(HostMachineTest, DirectAreasAreTheSystemsOwnDevices) {
    tree.Write("dev/mem", "memory");
    tree.Write("dev/ipmi", "device");
    tree.Write("proc/ide/ide0/hda/media", "disk\n");
    tree.Write("dev/hda", "sectors");
    sim::Machine machine;
    const auto ways = Build(machine, {"smbios", "bmc", "drives"});
    for (const std::size_t i : {0u, 1u, 3u}) EXPECT_TRUE(ways[i].isDirect);
    EXPECT_FALSE(ways[2].isDirect);
    EXPECT_EQ(ways[0].from, "/dev/mem");
    EXPECT_EQ(Contents(machine, "/dev/mem"), "memory");
    EXPECT_EQ(Contents(machine, "/dev/ipmi"), "device");
    EXPECT_EQ(Contents(machine, "/dev/hda"), "sectors");
    EXPECT_EQ(Contents(machine, "/proc/ide/ide0/hda/media"), "disk\n");
    EXPECT_TRUE(machine.OpenDirectory("", "/proc/ide/ide0/hda/")->Ok());
    EXPECT_EQ(machine.OpenDirectory("", "/proc/ide/ide1")->error, ENOENT);
    EXPECT_EQ(OpenError(machine, "/dev/hdb"), ENOENT);
}

TEST_F(HostMachineTest, DirectPciIsReadThroughItsPorts) {
    sim::Machine machine;
    const auto ways = Build(machine, {"pci"});
    EXPECT_TRUE(ways[2].isDirect);
    EXPECT_EQ(ways[2].from, "ports 0xCF8 and 0xCFC");
    EXPECT_EQ(ways[2].problem, "");
    EXPECT_FALSE(ways[0].isDirect);
}

TEST(RealPortsTest, PortsThatTheKernelRefusesReadAllOnesAndIgnoreWrites) {
    if (syscall(SYS_iopl, 3) == 0) {
        (void)syscall(SYS_iopl, 0);
        GTEST_SKIP() << "this process may use ports";
    }
    sim::RealPorts ports;
    ports.Out(0x80, 1, 0);
    EXPECT_EQ(ports.In(0x80, 1), 0xFFu);
    EXPECT_EQ(ports.In(0x80, 2), 0xFFFFu);
    EXPECT_EQ(ports.In(0x80, 4), 0xFFFFFFFFu);
}

TEST_F(HostMachineTest, RealFileIsNeverOpenedForWriting) {
    tree.Write("dev/mem", "memory");
    sim::Machine machine;
    (void)Build(machine, {"smbios"});
    const auto opened = machine.Open("", "/dev/mem", O_RDWR | O_TRUNC);
    ASSERT_TRUE(opened->Ok());
    const auto file = static_cast<int>(opened->value);
    EXPECT_EQ(write(file, "x", 1), -1);
    (void)machine.Close("", file);
    EXPECT_EQ(Contents(machine, "/dev/mem"), "memory");
}

TEST_F(HostMachineTest, RealFileSeeks) {
    tree.Write("dev/mem", "memory");
    sim::Machine machine;
    (void)Build(machine, {"smbios"});
    const auto file = static_cast<int>(machine.Open("", "/dev/mem", O_RDONLY)->value);
    EXPECT_EQ(machine.Seek("", file, 3, SEEK_SET)->value, 3);
    char rest[3] = "";
    EXPECT_EQ(machine.Read("", file, rest, 3)->value, 3);
    EXPECT_EQ(std::string(rest, 3), "ory");
    EXPECT_EQ(machine.Seek("", file, -1, SEEK_SET)->error, EINVAL);
    EXPECT_EQ(machine.Ioctl("", file, 0x301, rest)->error, ENOTTY);
    (void)machine.Close("", file);
}

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

Result RunHost(const std::string& arguments) {
    return Shell(TALVANE_HOST " " + arguments);
}

class HostProgramTest : public HostMachineTest {};

TEST_F(HostProgramTest, ProgramSeesTheTree) {
    const Result result =
        RunHost("--root " + tree.root.string() + " --log " + Path("log") + " -- " READER);
    EXPECT_THAT(result.output,
                StartsWith("talvane-host: cannot open " + Path("dev/ipmi0") + ": No such device"));
    EXPECT_THAT(result.output, HasSubstr("\nanchor _SM_, port 0xFF\n"));
    EXPECT_TRUE(std::filesystem::exists(Path("log")));
}

TEST_F(HostProgramTest, WaysAreShownWhenAskedFor) {
    const Result result = RunHost("--verbose --root " + tree.root.string() + " -- " READER);
    EXPECT_THAT(result.output,
                HasSubstr("talvane-host: smbios: " + Path("sys/firmware/dmi/tables") + "\n"));
    EXPECT_THAT(result.output,
                HasSubstr("talvane-host: bmc: " + Path("dev/ipmi0") + ": not read\n"));
    EXPECT_THAT(result.output,
                HasSubstr("talvane-host: drives: " + Path("sys/block") + " (hda is sda)\n"));
}

TEST_F(HostProgramTest, SystemItselfIsReadWhereNoTreeIsGiven) {
    const Result result = RunHost("--verbose -- no-such-program");
    EXPECT_THAT(result.output, HasSubstr("talvane-host: smbios: /sys/firmware/dmi/tables"));
    EXPECT_THAT(result.output, HasSubstr("talvane-host: load: /proc/stat\n"));
    EXPECT_EQ(result.status, 2);
}

TEST_F(HostProgramTest, AreasToReadDirectlyAreThoseOfTheVariable) {
    tree.Write("dev/mem", std::string(0xF0010, '\0') + "_OWN");
    const Result result = Shell(
        "ASAN_OPTIONS=$ASAN_OPTIONS:verify_asan_link_order=0 TALVANE_HOST=" + tree.root.string() +
        " TALVANE_HOST_DIRECT=load,smbios LD_PRELOAD=" PRELOAD_LIBRARY " " READER);
    EXPECT_EQ(result.output, "anchor _OWN, port 0xFF\n");
    EXPECT_EQ(result.status, 0);
}

TEST_F(HostProgramTest, DiskThatCannotBeOpenedIsReported) {
    tree.Write("sys/block/sdb/size", "2\n");
    EXPECT_THAT(RunHost("--root " + tree.root.string() + " -- " READER).output,
                HasSubstr("talvane-host: cannot open " + Path("dev/sdb") + ": No such file"));
}

TEST_F(HostProgramTest, UsageErrorsExitWithTwo) {
    EXPECT_EQ(RunHost("").output,
              "talvane-host: -- PROGRAM is required\nRun talvane-host --help for its options.\n");
    EXPECT_EQ(RunHost("").status, 2);
    EXPECT_EQ(RunHost("--root /nowhere -- " READER).status, 2);
    EXPECT_THAT(RunHost("--root /nowhere -- " READER).output,
                StartsWith("talvane-host: --root: Directory does not exist: /nowhere\n"));
    EXPECT_THAT(RunHost("program -- " READER).output,
                StartsWith("talvane-host: The following argument was not expected: program\n"));
    EXPECT_THAT(RunHost("--verbose --log").output,
                StartsWith("talvane-host: --log: 1 required FILE missing\n"));
    const Result result = RunHost("--root " + tree.root.string() + " -- no-such-program");
    EXPECT_THAT(result.output,
                HasSubstr("talvane-host: no-such-program: No such file or directory\n"));
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(RunHost("--help").status, 0);
    EXPECT_EQ(RunHost("--version").output, "talvane-host " TALVANE_VERSION "\n");
}

}  // namespace
