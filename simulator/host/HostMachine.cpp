// SPDX-License-Identifier: MIT
//
// Area by area: what answers the library's paths and ports, directly or through the kernel's own
// interfaces.

#include "simulator/host/HostMachine.h"

#include <unistd.h>

#include <cerrno>
#include <stdexcept>

#include "simulator/host/Disks.h"
#include "simulator/host/HostFiles.h"
#include "simulator/host/HostIpmi.h"
#include "simulator/host/PciFolder.h"
#include "simulator/host/SmbiosFiles.h"
#include "simulator/machine/IpmiDevice.h"
#include "simulator/machine/Machine.h"
#include "simulator/machine/RealPorts.h"

namespace sim {
namespace {

constexpr const char* kTables = "sys/firmware/dmi/tables";
constexpr const char* kPciDevices = "sys/bus/pci/devices";
constexpr const char* kBlockDevices = "sys/block";
constexpr const char* kKernelIpmi = "dev/ipmi0";

constexpr std::size_t kMaxEntryPoint = 32;
constexpr std::size_t kMaxTableFile = 16u << 20;  // far more than any firmware has

// The errno that agents get for a disk; 0 when they can open it.
int ErrorOfOpening(const DiskImage& image) {
    const int descriptor = image.Open();
    if (descriptor < 0) return errno;
    (void)close(descriptor);  // result not used: nothing was written
    return 0;
}

// Builds one machine and keeps what all areas need for it.
class Builder {
public:
    Builder(const HostOptions& options, Machine& machine)
        : options_(options), files_(options.root), machine_(machine) {}

    std::vector<AreaWay> Build() { return {Smbios(), Bmc(), Pci(), Drives(), Load()}; }

private:
    bool IsDirect(const char* area) const { return options_.direct.contains(area); }

    // The path of the real system that a machine path stands for.
    void UseReal(const std::string& path) { machine_.UseReal(path, files_.Path(path.substr(1))); }

    static AreaWay Direct(const char* area, const char* from) { return {area, true, from, "", ""}; }
    AreaWay Host(const char* area, const char* from) const {
        return {area, false, files_.Path(from), "", ""};
    }

    // The area cannot be read: its device refuses to be opened for the same reason.
    void Miss(AreaWay& way, const std::string& device, const HostFileError& error,
              const char* whyAbsent) {
        way.problem = CannotOpen(error.path, error.error, whyAbsent);
        machine_.Refuse(device, error.error);
    }

    AreaWay Smbios();
    AreaWay Bmc();
    AreaWay Pci();
    AreaWay Drives();
    AreaWay Load();

    const HostOptions& options_;
    HostFiles files_;
    Machine& machine_;
};

AreaWay Builder::Smbios() {
    constexpr const char* kMemory = "/dev/mem";
    if (IsDirect(kSmbiosArea)) {
        UseReal(kMemory);
        return Direct(kSmbiosArea, kMemory);
    }
    AreaWay way = Host(kSmbiosArea, kTables);
    try {
        const std::string folder = kTables;
        const Bytes entryPoint = files_.Read(folder + "/smbios_entry_point", kMaxEntryPoint);
        const Bytes table = files_.Read(folder + "/DMI", kMaxTableFile);
        const auto kept = WholeStructures(table, kMaxSmbiosTable);
        if (kept.size() < table.size())
            way.note = "the table of " + std::to_string(table.size()) + " bytes is cut to " +
                       std::to_string(kept.size());
        machine_.GetMemory().PlaceDump(SmbiosDump(entryPoint, kept));
    } catch (const HostFileError& error) {
        Miss(way, kMemory, error,
             "the firmware has no SMBIOS table, or the kernel does not show it");
    } catch (const std::runtime_error& error) {
        way.problem = files_.Path(kTables) + ": " + error.what();
        machine_.Refuse(kMemory, EIO);
    }
    return way;
}

AreaWay Builder::Bmc() {
    constexpr const char* kDevice = "/dev/ipmi";
    if (IsDirect(kBmcArea)) {
        UseReal(kDevice);
        const auto ports = std::make_shared<RealPorts>();
        machine_.Ports().Install(kKcsStatusPort, 1, ports);
        machine_.Ports().Install(kSmicFlagsPort, 1, ports);
        return Direct(kBmcArea, kDevice);
    }
    AreaWay way = Host(kBmcArea, kKernelIpmi);
    const HostIpmi::Connect connect = ThroughKernel(files_.Path(kKernelIpmi));
    int error = 0;
    if (connect(error) == nullptr) {
        way.problem = CannotOpen(files_.Path(kKernelIpmi), error,
                                 "no BMC, or its driver is not loaded: modprobe ipmi_si "
                                 "ipmi_devintf");
        machine_.Refuse(kDevice, error);
        return way;
    }
    machine_.Install(kDevice, std::make_unique<HostIpmi>(connect, options_.mayChangeBmc));
    // Agents look for a system interface. That of the kernel's driver is idle between requests,
    // whatever its kind and place.
    constexpr std::uint8_t kIdle = 0x00;
    machine_.Ports().Install(kKcsStatusPort, 1, std::make_shared<InterfaceRegister>(kIdle));
    return way;
}

AreaWay Builder::Pci() {
    if (IsDirect(kPciArea)) {
        machine_.Ports().Install(PciBus::kFirstPort, PciBus::kPorts, std::make_shared<RealPorts>());
        return Direct(kPciArea, "ports 0xCF8 and 0xCFC");
    }
    AreaWay way = Host(kPciArea, kPciDevices);
    try {
        std::size_t outOfReach = 0;
        for (const std::string& name : files_.List(kPciDevices)) {
            const auto location = PciLocationOf(name);
            if (!location || location->bus > kLastPciBus) {
                ++outOfReach;
                continue;
            }
            machine_.GetPci().Set(*location,
                                  files_.Read(std::string(kPciDevices) + "/" + name + "/config",
                                              PciBus::kConfigurationSize));
        }
        if (outOfReach != 0)
            way.note =
                std::to_string(outOfReach) + " outside of buses 0 to 10 of domain 0 left out";
    } catch (const HostFileError& error) {
        way.problem = CannotOpen(error.path, error.error, "no PCI bus");
    }
    return way;
}

AreaWay Builder::Drives() {
    constexpr const char* kFolder = "/proc/ide";
    constexpr const char* kFirstDevices = "/dev/hd";
    if (IsDirect(kDrivesArea)) {
        UseReal(kFolder);
        for (char letter = 'a'; letter <= 'd'; ++letter)
            UseReal(std::string(kFirstDevices) + letter);
        return Direct(kDrivesArea, kFolder);
    }
    AreaWay way = Host(kDrivesArea, kBlockDevices);
    try {
        std::vector<std::string> names;
        for (const std::string& name : files_.List(kBlockDevices)) {
            // A drive without a medium has no size.
            const std::string size = files_.Text(std::string(kBlockDevices) + "/" + name + "/size");
            if (!size.empty() && size != "0") names.push_back(name);
        }
        machine_.InstallDirectory(kFolder);
        std::vector<UnopenedDisk> unopened;
        for (const auto& [letter, name] : ChooseDisks(names)) {
            const IdeDrive drive = DiskAsDrive(files_, name);
            if (const int error = ErrorOfOpening(*drive.image))
                unopened.push_back({files_.Path("dev/" + name), error});
            InstallDrive(machine_, letter, drive);
            way.note += std::string(way.note.empty() ? "" : ", ") + "hd" + letter + " is " + name;
        }
        for (const UnopenedDisk& disk : unopened)
            way.unopened += (way.unopened.empty() ? "" : ", ") + disk.path;
        way.whyUnopened = CannotOpenDisks(unopened);
    } catch (const HostFileError& error) {
        Miss(way, kFolder, error, "no disks");
    }
    return way;
}

AreaWay Builder::Load() {
    UseReal("/proc/stat");
    machine_.GetFreeProgram().UseReal();
    return Direct(kLoadArea, "/proc/stat");
}

}  // namespace

std::vector<AreaWay> BuildHostMachine(const HostOptions& options, Machine& machine) {
    return Builder(options, machine).Build();
}

}  // namespace sim
