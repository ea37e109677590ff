// SPDX-License-Identifier: MIT
//
// The doctor: each finding for the facts that mean it, and the facts of trees of files.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/support/HostTree.h"
#include "tools/DoctorCommand.h"
#include "tools/doctor/Checks.h"

namespace tool {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// A server on which nothing is missing.
Facts SoundFacts() {
    Facts facts;
    facts.lockdown = "none";
    facts.pciFunctions = 64;
    facts.firstDisk = "/dev/sda";
    facts.library = facts.meantLibrary = "/usr/lib/libTalvane.so.1";
    return facts;
}

std::vector<std::string> FindingsOf(const Facts& facts) {
    std::vector<std::string> names;
    for (const Check& check : Checks())
        if (check.find(facts)) names.emplace_back(check.name);
    return names;
}

TEST(DoctorTest, SoundServerHasNoFinding) {
    EXPECT_THAT(FindingsOf(SoundFacts()), IsEmpty());
}

TEST(DoctorTest, ThereAreAtLeast18Checks) {
    EXPECT_GE(Checks().size(), 18u);
}

struct Ill {
    const char* check;  // the only one that finds something
    void (*harm)(Facts&);
    bool stopsTool;
    int error;
};

void PrintTo(const Ill& ill, std::ostream* out) {
    *out << ill.check;
}

class DoctorFindingTest : public testing::TestWithParam<Ill> {};

TEST_P(DoctorFindingTest, IsMadeWithErrnoAndRemedy) {
    Facts facts = SoundFacts();
    GetParam().harm(facts);
    EXPECT_THAT(FindingsOf(facts), ElementsAre(GetParam().check));
    for (const Check& check : Checks()) {
        const auto finding = check.find(facts);
        if (!finding) continue;
        EXPECT_EQ(finding->stopsTool, GetParam().stopsTool);
        EXPECT_EQ(finding->error, GetParam().error);
        EXPECT_NE(finding->text, "");
        EXPECT_NE(finding->remedy, "");
        EXPECT_EQ(finding->error != 0 && finding->call.empty(), false);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Doctor, DoctorFindingTest,
    testing::Values(
        Ill{"rights", [](Facts& f) { f.isRoot = false; }, true, 0},
        Ill{"32-bit", [](Facts& f) { f.refuses32Bit = true; }, true, ENOEXEC},
        Ill{"32-bit", [](Facts& f) { f.isEmulated = true; }, false, 0},
        Ill{"library", [](Facts& f) { f.library = "/opt/libTalvane.so.1"; }, true, 0},
        Ill{"preload", [](Facts& f) { f.hasPreloadLibrary = false; }, true, ENOENT},
        Ill{"lockdown", [](Facts& f) { f.lockdown = "integrity"; }, false, 0},
        Ill{"memory-device", [](Facts& f) { f.openMemory.error = f.readMemory.error = ENOENT; },
            false, ENOENT},
        Ill{"memory-read", [](Facts& f) { f.readMemory.error = EPERM; }, false, EPERM},
        Ill{"uefi", [](Facts& f) { f.hasUefi = true; }, false, 0},
        Ill{"smbios-table", [](Facts& f) { f.openTables.error = ENOENT; }, false, ENOENT},
        Ill{"ports", [](Facts& f) { f.portAccess.error = EPERM; }, false, EPERM},
        Ill{"pci-functions", [](Facts& f) { f.listPci.error = ENOENT; }, false, ENOENT},
        Ill{"pci-count", [](Facts& f) { f.pciFunctions = 65; }, true, 0},
        Ill{"ipmi-interface",
            [](Facts& f) {
                f.hasInterfaceDriver = false;
                f.openKernelIpmi.error = f.askBmc.error = ENOENT;
            },
            true, 0},
        Ill{"ipmi-device",
            [](Facts& f) {
                f.hasDeviceDriver = false;
                f.openKernelIpmi.error = f.askBmc.error = ENOENT;
            },
            true, 0},
        Ill{"ipmi-open", [](Facts& f) { f.openKernelIpmi.error = f.askBmc.error = ENODEV; }, true,
            ENODEV},
        Ill{"bmc", [](Facts& f) { f.askBmc.error = ETIMEDOUT; }, true, ETIMEDOUT},
        Ill{"bridge", [](Facts& f) { f.openBridge.error = ENOENT; }, false, ENOENT},
        Ill{"ipmi-programs",
            [](Facts& f) {
                f.otherIpmiPrograms = {"talvane-ipmi-br", "ipmitool"};
            },
            false, 0},
        Ill{"proc-ide", [](Facts& f) { f.listIde.error = ENOENT; }, false, ENOENT},
        Ill{"disks", [](Facts& f) { f.firstDisk = ""; }, false, 0},
        Ill{"disk-open", [](Facts& f) { f.openDisk.error = EPERM; }, true, EPERM},
        Ill{"proc-stat", [](Facts& f) { f.openStat.error = ENOENT; }, true, ENOENT},
        Ill{"free", [](Facts& f) { f.hasFree = false; }, true, ENOENT},
        Ill{"awk", [](Facts& f) { f.hasAwk = false; }, true, ENOENT},
        Ill{"working-directory", [](Facts& f) { f.writeHere.error = EACCES; }, false, EACCES}),
    [](const auto& ill) {
        std::string name = ill.param.check;
        std::erase(name, '-');
        return name + std::to_string(ill.index);
    });

TEST(DoctorTest, TwoReasonsAgainstOneAreaStopTheTool) {
    Facts facts = SoundFacts();
    facts.openTables.error = ENOENT;
    facts.readMemory.error = EPERM;
    std::ostringstream out;
    EXPECT_FALSE(ShowDoctor(facts, Format::kText, out));
    facts = SoundFacts();
    facts.listPci.error = ENOENT;
    facts.portAccess.error = EPERM;
    EXPECT_FALSE(ShowDoctor(facts, Format::kText, out));
    facts = SoundFacts();
    facts.listIde.error = ENOENT;
    facts.firstDisk = "";
    EXPECT_FALSE(ShowDoctor(facts, Format::kText, out));
}

TEST(DoctorTest, WithoutRootMissingRightsAreTheOnlyFindingOfDevices) {
    Facts facts = SoundFacts();
    facts.isRoot = false;
    facts.openMemory.error = facts.readMemory.error = facts.openTables.error = EACCES;
    facts.openKernelIpmi.error = facts.askBmc.error = facts.openBridge.error = EACCES;
    facts.openDisk.error = EACCES;
    facts.portAccess.error = EPERM;
    EXPECT_THAT(FindingsOf(facts), ElementsAre("rights"));
}

TEST(DoctorTest, FactsThatAreNotKnownAreNoFindings) {
    Facts facts = SoundFacts();
    facts.lockdown = "";
    facts.meantLibrary = "";
    EXPECT_THAT(FindingsOf(facts), IsEmpty());
}

TEST(DoctorTest, SmbiosTableAndMemoryThatCannotBeOpenedStopTheTool) {
    Facts facts = SoundFacts();
    facts.openTables.error = facts.openMemory.error = facts.readMemory.error = ENOENT;
    std::ostringstream out;
    EXPECT_FALSE(ShowDoctor(facts, Format::kText, out));
}

TEST(DoctorTest, MemoryDeviceThatRootMayNotOpenIsReadThroughTheKernel) {
    Facts facts = SoundFacts();
    facts.openMemory.error = facts.readMemory.error = EPERM;
    std::ostringstream out;
    EXPECT_TRUE(ShowDoctor(facts, Format::kText, out));
    EXPECT_THAT(out.str(), HasSubstr("  Shown by  open(/dev/mem): EPERM, Operation not permitted\n"
                                     "  Stops     agents that talvane-host does not start\n"
                                     "  Remedy    talvane-host -- AGENT\n"));
    facts.openMemory.error = facts.readMemory.error = ENOENT;
    EXPECT_TRUE(ShowDoctor(facts, Format::kText, out));
    EXPECT_THAT(out.str(), HasSubstr("  Remedy    mknod -m 600 /dev/mem c 1 1\n"));
}

TEST(DoctorTest, FolderOfDisksThatCannotBeReadIsFoundWithItsErrno) {
    Facts facts = SoundFacts();
    facts.listDisks.error = ENOENT;
    facts.firstDisk = "";
    std::ostringstream out;
    EXPECT_TRUE(ShowDoctor(facts, Format::kText, out));
    EXPECT_THAT(out.str(), HasSubstr("opendir(/sys/block): ENOENT, No such file or directory\n"));
}

TEST(DoctorTest, FindingWithoutACallHasNoLineForItAndNullInJson) {
    Facts facts = SoundFacts();
    facts.pciFunctions = 65;
    std::ostringstream text;
    EXPECT_FALSE(ShowDoctor(facts, Format::kText, text));
    EXPECT_EQ(text.str(),
              "pci-count\n"
              "---------\n"
              "  Finding  there are 65 PCI functions on buses 0 to 10; the library lists none when "
              "there are more than 64\n"
              "  Stops    talvane and agents\n"
              "  Remedy   lspci\n"
              "\n"
              "Doctor\n"
              "------\n"
              "  24 of 25 checks passed; something stops talvane\n");
    std::ostringstream json;
    EXPECT_FALSE(ShowDoctor(facts, Format::kJson, json));
    const auto document = nlohmann::json::parse(json.str());
    for (const auto& check : document.at("doctor").at("checks"))
        if (check.at("name") == "pci-count") {
            EXPECT_TRUE(check.at("finding").at("call").is_null());
            EXPECT_TRUE(check.at("finding").at("errno").is_null());
        }
}

TEST(DoctorTest, ToolIsStoppedAlsoWhenALaterFindingDoesNotStopIt) {
    Facts facts = SoundFacts();
    facts.hasFree = facts.hasAwk = false;
    facts.writeHere.error = EACCES;
    std::ostringstream out;
    EXPECT_FALSE(ShowDoctor(facts, Format::kText, out));
    EXPECT_THAT(out.str(), HasSubstr("  22 of 25 checks passed; something stops talvane\n"));
}

TEST(DoctorTest, TextShowsFindingCallErrorAndRemedy) {
    Facts facts = SoundFacts();
    facts.readMemory.error = EPERM;
    std::ostringstream out;
    EXPECT_TRUE(ShowDoctor(facts, Format::kText, out));
    EXPECT_EQ(out.str(),
              "memory-read\n"
              "-----------\n"
              "  Finding   the kernel refuses the read of a mebibyte that agents make in /dev/mem "
              "(STRICT_DEVMEM)\n"
              "  Shown by  read(/dev/mem): EPERM, Operation not permitted\n"
              "  Stops     agents that talvane-host does not start\n"
              "  Remedy    talvane-host -- AGENT\n"
              "\n"
              "Doctor\n"
              "------\n"
              "  24 of 25 checks passed; nothing stops talvane\n");
}

TEST(DoctorTest, JsonHasEveryCheck) {
    Facts facts = SoundFacts();
    facts.askBmc.error = ETIMEDOUT;
    std::ostringstream out;
    EXPECT_FALSE(ShowDoctor(facts, Format::kJson, out));
    const auto json = nlohmann::json::parse(out.str()).at("doctor");
    EXPECT_EQ(json.at("well"), false);
    EXPECT_EQ(json.at("checks").size(), Checks().size());
    for (const auto& check : json.at("checks")) {
        EXPECT_EQ(check.at("passed"), check.at("finding").is_null());
        if (check.at("name") == "bmc") {
            EXPECT_EQ(check.at("finding").at("errno"), "ETIMEDOUT");
            EXPECT_EQ(check.at("finding").at("stopsTool"), true);
        }
    }
}

class DoctorFactsTest : public testing::Test {
protected:
    Facts Read() const { return ReadFacts(tree.root); }
    std::string Path(const std::string& name) const { return (tree.root / name).string(); }
    // With one file open.
    void WriteProcess(const std::string& id, const std::string& name,
                      const std::string& file) const {
        const std::filesystem::path folder = tree.root / "proc" / id;
        tree.Write("proc/" + id + "/comm", name + '\n');
        std::filesystem::create_directories(folder / "fd");
        std::filesystem::create_symlink(file, folder / "fd/3");
    }

    HostTree tree;
};

TEST_F(DoctorFactsTest, EmptyTreeHasNothing) {
    const Facts facts = Read();
    for (const Attempt& attempt :
         {facts.openMemory, facts.readMemory, facts.openTables, facts.listPci, facts.openKernelIpmi,
          facts.openBridge, facts.listIde, facts.listDisks, facts.openStat})
        EXPECT_EQ(attempt.error, ENOENT);
    EXPECT_FALSE(facts.hasUefi);
    EXPECT_EQ(facts.lockdown, "");
    EXPECT_EQ(facts.pciFunctions, 0u);
    EXPECT_FALSE(facts.hasInterfaceDriver);
    EXPECT_FALSE(facts.hasDeviceDriver);
    EXPECT_EQ(facts.firstDisk, "");
}

TEST_F(DoctorFactsTest, FilesOfATreeAreFound) {
    tree.Write("sys/firmware/efi/runtime", "");
    tree.Write("sys/kernel/security/lockdown", "none [integrity] confidentiality\n");
    tree.Write("proc/sys/fs/binfmt_misc/qemu-i386", "enabled\ninterpreter /usr/bin/qemu\n");
    tree.Write("proc/cmdline", "quiet ia32_emulation=0\n");
    tree.Write("proc/stat", "cpu 1 2 3 4\n");
    tree.Write("sys/firmware/dmi/tables/DMI", "");
    tree.Write("dev/mem", "");
    tree.Write("sys/bus/pci/devices/0000:00:1f.0/config", "");
    tree.Write("sys/bus/pci/devices/0000:0a:00.0/config", "");
    tree.Write("sys/bus/pci/devices/0000:0b:00.0/config", "");
    tree.Write("sys/bus/pci/devices/0001:00:00.0/config", "");
    tree.Write("sys/block/loop0/size", "0");
    tree.Write("sys/block/nvme0n1/size", "8");
    tree.Write("dev/nvme0n1", "");
    tree.Write("sys/module/ipmi_si/refcnt", "0");
    const Facts facts = Read();
    EXPECT_TRUE(facts.hasUefi);
    EXPECT_EQ(facts.lockdown, "integrity");
    EXPECT_TRUE(facts.isEmulated);
    EXPECT_TRUE(facts.refuses32Bit);
    EXPECT_TRUE(facts.openStat.Succeeded());
    EXPECT_TRUE(facts.openTables.Succeeded());
    EXPECT_TRUE(facts.openMemory.Succeeded());
    EXPECT_TRUE(facts.readMemory.Succeeded());
    EXPECT_EQ(facts.pciFunctions, 2u);
    EXPECT_EQ(facts.firstDisk, Path("dev/nvme0n1"));
    EXPECT_TRUE(facts.openDisk.Succeeded());
    EXPECT_TRUE(facts.hasInterfaceDriver);
    EXPECT_FALSE(facts.hasDeviceDriver);
}

TEST_F(DoctorFactsTest, MemoryThatIsOpenedButNotReadHasItsErrno) {
    std::filesystem::create_directories(tree.root / "dev/mem");
    const Facts facts = Read();
    EXPECT_TRUE(facts.openMemory.Succeeded());
    EXPECT_EQ(facts.readMemory.error, EISDIR);
}

TEST_F(DoctorFactsTest, LockdownWithoutAWordInBracketsIsNotKnown) {
    for (const char* text : {"none integrity\n", "none [integrity\n", "integrity] [none\n"}) {
        tree.Write("sys/kernel/security/lockdown", text);
        EXPECT_EQ(Read().lockdown, "") << text;
    }
}

TEST_F(DoctorFactsTest, PciNamesWithoutABusAreNotCounted) {
    tree.Write("sys/bus/pci/devices/0000:/config", "");
    tree.Write("sys/bus/pci/devices/0000:zz:00.0/config", "");
    tree.Write("sys/bus/pci/devices/0000:01:00.0/config", "");
    EXPECT_EQ(Read().pciFunctions, 1u);
}

TEST_F(DoctorFactsTest, ParameterOffRefusesProgramsOf32Bits) {
    tree.Write("proc/cmdline", "quiet ia32_emulation=on\n");
    EXPECT_FALSE(Read().refuses32Bit);
    tree.Write("proc/cmdline", "quiet ia32_emulation=off\n");
    EXPECT_TRUE(Read().refuses32Bit);
}

TEST_F(DoctorFactsTest, ModulesOfSsifAndOfTheDeviceAreDrivers) {
    tree.Write("sys/module/ipmi_ssif/refcnt", "0");
    EXPECT_TRUE(Read().hasInterfaceDriver);
    EXPECT_FALSE(Read().hasDeviceDriver);
    tree.Write("sys/module/ipmi_devintf/refcnt", "0");
    EXPECT_TRUE(Read().hasDeviceDriver);
}

TEST_F(DoctorFactsTest, DeviceThatIsNoIpmiDeviceDoesNotAnswer) {
    tree.Write("dev/ipmi0", "");
    const Facts facts = Read();
    EXPECT_TRUE(facts.openKernelIpmi.Succeeded());
    EXPECT_TRUE(facts.hasInterfaceDriver) << "the drivers are part of the kernel";
    EXPECT_FALSE(facts.askBmc.Succeeded());
}

TEST_F(DoctorFactsTest, ProgramsWithTheDeviceOpenAreNamed) {
    WriteProcess("123", "ipmitool", Path("dev/ipmi0"));
    WriteProcess("124", "other", "/dev/null");
    EXPECT_THAT(Read().otherIpmiPrograms, ElementsAre("ipmitool"));
}

TEST_F(DoctorFactsTest, AgentIsNamedAndThisProcessIsNot) {
    WriteProcess("123", "agent", Path("dev/ipmi"));
    WriteProcess(std::to_string(getpid()), "talvane", Path("dev/ipmi"));
    EXPECT_THAT(Read().otherIpmiPrograms, ElementsAre("agent"));
}

TEST_F(DoctorFactsTest, ProgramsAreLookedForInPath) {
    setenv("PATH", Path("bin").c_str(), 1);
    EXPECT_FALSE(Read().hasFree);
    tree.Write("bin/free", "");
    std::filesystem::permissions(tree.root / "bin/free", std::filesystem::perms::owner_all);
    EXPECT_TRUE(Read().hasFree);
    EXPECT_FALSE(Read().hasAwk);
}

TEST_F(DoctorFactsTest, WithoutPathNoProgramIsFound) {
    unsetenv("PATH");
    EXPECT_FALSE(Read().hasFree);
    EXPECT_FALSE(Read().hasAwk);
}

TEST_F(DoctorFactsTest, LibraryOfThisProcessIsNamed) {
    EXPECT_THAT(Read().library, HasSubstr("libTalvane.so"));
}

}  // namespace
}  // namespace tool
