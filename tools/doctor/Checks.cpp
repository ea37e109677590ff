// SPDX-License-Identifier: MIT
//
// Judges the facts. Where one reason explains what others show, only that one is a finding.

#include "tools/doctor/Checks.h"

#include <cerrno>

namespace tool {
namespace {

using Result = std::optional<Finding>;

constexpr std::size_t kMaxListedFunctions = 64;  // of the library's record

constexpr const char* kThroughKernel = "talvane-host -- AGENT";
constexpr bool kStopsTool = true;
constexpr bool kStopsAgents = false;

Result CheckRights(const Facts& facts) {
    if (facts.isRoot) return std::nullopt;
    return Finding{kStopsTool, "not run as root: memory, ports, BMC and disks take root", "geteuid",
                   0, "sudo talvane doctor"};
}

Result CheckLockdown(const Facts& facts) {
    if (facts.lockdown.empty() || facts.lockdown == "none") return std::nullopt;
    return Finding{kStopsAgents,
                   "the kernel is locked down (" + facts.lockdown +
                       "): it refuses /dev/mem and iopl to everybody",
                   "", 0, kThroughKernel};
}

Result CheckMemoryDevice(const Facts& facts) {
    if (facts.openMemory.Succeeded() || !facts.isRoot) return std::nullopt;
    return Finding{
        kStopsAgents, "/dev/mem cannot be opened", "open(/dev/mem)", facts.openMemory.error,
        facts.openMemory.error == ENOENT ? "mknod -m 600 /dev/mem c 1 1" : kThroughKernel};
}

Result CheckMemoryRead(const Facts& facts) {
    if (!facts.openMemory.Succeeded() || facts.readMemory.Succeeded()) return std::nullopt;
    return Finding{kStopsAgents,
                   "the kernel refuses the read of a mebibyte that agents make in /dev/mem "
                   "(STRICT_DEVMEM)",
                   "read(/dev/mem)", facts.readMemory.error, kThroughKernel};
}

Result CheckUefi(const Facts& facts) {
    if (!facts.hasUefi) return std::nullopt;
    return Finding{kStopsAgents,
                   "the machine was booted by UEFI: its firmware keeps no SMBIOS anchor where "
                   "agents look",
                   "", 0, kThroughKernel};
}

Result CheckTables(const Facts& facts) {
    if (facts.openTables.Succeeded() || !facts.isRoot) return std::nullopt;
    const bool isDirect = facts.openMemory.Succeeded() && facts.readMemory.Succeeded();
    return Finding{!isDirect, "the kernel does not show the SMBIOS table",
                   "open(/sys/firmware/dmi/tables/DMI)", facts.openTables.error,
                   "mount -t sysfs sys /sys"};
}

Result Check32BitPrograms(const Facts& facts) {
    if (facts.refuses32Bit)
        return Finding{kStopsTool, "the kernel was started without programs of 32 bits", "execve",
                       ENOEXEC, "grubby --update-kernel=ALL --remove-args=ia32_emulation"};
    if (!facts.isEmulated) return std::nullopt;
    return Finding{kStopsAgents,
                   "programs of 32 bits are emulated by QEMU here: they are slow, and get no ports",
                   "", 0, "echo 0 >/proc/sys/fs/binfmt_misc/qemu-i386"};
}

Result CheckPorts(const Facts& facts) {
    if (facts.portAccess.Succeeded() || !facts.isRoot) return std::nullopt;
    return Finding{kStopsAgents, "the kernel does not grant I/O ports", "iopl",
                   facts.portAccess.error, kThroughKernel};
}

Result CheckPciFolder(const Facts& facts) {
    if (facts.listPci.Succeeded()) return std::nullopt;
    return Finding{!facts.portAccess.Succeeded(), "the kernel shows no PCI functions",
                   "opendir(/sys/bus/pci/devices)", facts.listPci.error, "mount -t sysfs sys /sys"};
}

Result CheckPciCount(const Facts& facts) {
    if (facts.pciFunctions <= kMaxListedFunctions) return std::nullopt;
    return Finding{kStopsTool,
                   "there are " + std::to_string(facts.pciFunctions) +
                       " PCI functions on buses 0 to 10; the library lists none when there are "
                       "more than 64",
                   "", 0, "lspci"};
}

Result CheckInterfaceDriver(const Facts& facts) {
    if (facts.hasInterfaceDriver) return std::nullopt;
    return Finding{kStopsTool, "no driver of a BMC's interface is loaded", "", 0,
                   "modprobe ipmi_si"};
}

Result CheckDeviceDriver(const Facts& facts) {
    if (facts.hasDeviceDriver) return std::nullopt;
    return Finding{kStopsTool, "the driver of /dev/ipmi0 is not loaded", "", 0,
                   "modprobe ipmi_devintf"};
}

Result CheckKernelIpmi(const Facts& facts) {
    const bool isExplained = !facts.hasInterfaceDriver || !facts.hasDeviceDriver;
    if (facts.openKernelIpmi.Succeeded() || isExplained || !facts.isRoot) return std::nullopt;
    return Finding{kStopsTool, "the kernel's IPMI device cannot be opened", "open(/dev/ipmi0)",
                   facts.openKernelIpmi.error, "dmesg | grep -i ipmi"};
}

Result CheckBmc(const Facts& facts) {
    if (!facts.openKernelIpmi.Succeeded() || facts.askBmc.Succeeded()) return std::nullopt;
    return Finding{kStopsTool, "the BMC does not answer", "ioctl(IPMICTL_SEND_COMMAND)",
                   facts.askBmc.error, "ipmitool mc reset cold"};
}

Result CheckBridge(const Facts& facts) {
    if (facts.openBridge.Succeeded() || !facts.isRoot) return std::nullopt;
    return Finding{kStopsAgents, "there is no /dev/ipmi", "open(/dev/ipmi)", facts.openBridge.error,
                   "systemctl enable --now talvane-ipmi-bridge"};
}

Result CheckOtherPrograms(const Facts& facts) {
    if (facts.otherIpmiPrograms.size() < 2) return std::nullopt;
    std::string names;
    for (const std::string& name : facts.otherIpmiPrograms)
        names += (names.empty() ? "" : ", ") + name;
    return Finding{
        kStopsAgents,
        "several programs use the BMC and take its reservation from each other: " + names, "", 0,
        "fuser -v /dev/ipmi /dev/ipmi0"};
}

Result CheckIde(const Facts& facts) {
    if (facts.listIde.Succeeded()) return std::nullopt;
    return Finding{kStopsAgents, "there is no /proc/ide, which ended with Linux 5.14",
                   "opendir(/proc/ide)", facts.listIde.error, kThroughKernel};
}

Result CheckDisks(const Facts& facts) {
    if (facts.listDisks.Succeeded() && !facts.firstDisk.empty()) return std::nullopt;
    return Finding{!facts.listIde.Succeeded(), "the kernel shows no disk", "opendir(/sys/block)",
                   facts.listDisks.error, "lsblk"};
}

Result CheckDiskAccess(const Facts& facts) {
    if (facts.firstDisk.empty() || facts.openDisk.Succeeded() || !facts.isRoot) return std::nullopt;
    return Finding{kStopsTool, facts.firstDisk + " cannot be opened, so partitions are not read",
                   "open(" + facts.firstDisk + ")", facts.openDisk.error,
                   "ls -l " + facts.firstDisk};
}

Result CheckStat(const Facts& facts) {
    if (facts.openStat.Succeeded()) return std::nullopt;
    return Finding{kStopsTool, "the load of processors cannot be read", "open(/proc/stat)",
                   facts.openStat.error, "mount -t proc proc /proc"};
}

Result CheckFree(const Facts& facts) {
    if (facts.hasFree) return std::nullopt;
    return Finding{kStopsTool, "the command free is not in PATH, so the use of memory is not read",
                   "access(free)", ENOENT, "apt-get install procps"};
}

Result CheckAwk(const Facts& facts) {
    if (facts.hasAwk) return std::nullopt;
    return Finding{kStopsTool, "the command awk is not in PATH, so the use of memory is not read",
                   "access(awk)", ENOENT, "apt-get install mawk"};
}

Result CheckWorkingDirectory(const Facts& facts) {
    if (facts.writeHere.Succeeded()) return std::nullopt;
    return Finding{kStopsAgents,
                   "agents write the file Memusage_dat into the working directory, and cannot",
                   "access(.)", facts.writeHere.error, "cd /root"};
}

Result CheckLibrary(const Facts& facts) {
    if (facts.meantLibrary.empty() || facts.library == facts.meantLibrary) return std::nullopt;
    return Finding{kStopsTool,
                   "the library in use is " + facts.library + ", not " + facts.meantLibrary, "", 0,
                   "unset LD_LIBRARY_PATH LD_PRELOAD"};
}

Result CheckPreloadLibrary(const Facts& facts) {
    if (facts.hasPreloadLibrary) return std::nullopt;
    return Finding{kStopsTool,
                   "libtalvane-sim.so, which reads through the kernel's own interfaces, is missing",
                   "access(libtalvane-sim.so)", ENOENT, "apt-get install --reinstall talvane"};
}

constexpr Check kChecks[] = {
    {"rights", "run as root", CheckRights},
    {"32-bit", "the kernel runs programs of 32 bits", Check32BitPrograms},
    {"library", "the library is the one that belongs to the tool", CheckLibrary},
    {"preload", "the library that reads through the kernel is there", CheckPreloadLibrary},
    {"lockdown", "the kernel is not locked down", CheckLockdown},
    {"memory-device", "/dev/mem can be opened", CheckMemoryDevice},
    {"memory-read", "/dev/mem can be read as agents do", CheckMemoryRead},
    {"uefi", "the machine was booted by a BIOS", CheckUefi},
    {"smbios-table", "the kernel shows the SMBIOS table", CheckTables},
    {"ports", "the kernel grants I/O ports", CheckPorts},
    {"pci-functions", "the kernel shows PCI functions", CheckPciFolder},
    {"pci-count", "the library has room for all PCI functions", CheckPciCount},
    {"ipmi-interface", "a driver of a BMC's interface is loaded", CheckInterfaceDriver},
    {"ipmi-device", "the driver of /dev/ipmi0 is loaded", CheckDeviceDriver},
    {"ipmi-open", "/dev/ipmi0 can be opened", CheckKernelIpmi},
    {"bmc", "the BMC answers", CheckBmc},
    {"bridge", "/dev/ipmi can be opened", CheckBridge},
    {"ipmi-programs", "no two programs use the BMC", CheckOtherPrograms},
    {"proc-ide", "there is /proc/ide", CheckIde},
    {"disks", "the kernel shows disks", CheckDisks},
    {"disk-open", "disks can be opened", CheckDiskAccess},
    {"proc-stat", "/proc/stat can be read", CheckStat},
    {"free", "the command free is there", CheckFree},
    {"awk", "the command awk is there", CheckAwk},
    {"working-directory", "the working directory can be written to", CheckWorkingDirectory},
};

}  // namespace

std::span<const Check> Checks() {
    return kChecks;
}

}  // namespace tool
