// SPDX-License-Identifier: MIT
//
// The simulated server itself, apart from how calls get here: devices by path, open files by
// descriptor, I/O ports, privilege, time, faults and the log. Each call answers what libc is to
// return, or nothing when the call is not this machine's business and the real function is to
// have it.
#ifndef TALVANE_SIMULATOR_MACHINE_MACHINE_H
#define TALVANE_SIMULATOR_MACHINE_MACHINE_H

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "simulator/base/AccessLog.h"
#include "simulator/bmc/Bmc.h"
#include "simulator/machine/CallFaults.h"
#include "simulator/machine/Device.h"
#include "simulator/machine/FreeProgram.h"
#include "simulator/machine/PciBus.h"
#include "simulator/machine/PhysicalMemory.h"
#include "simulator/machine/PortMap.h"
#include "simulator/machine/ProcStat.h"

namespace sim {

// Who made a call: the file name of the library under observation, or empty for any other module.
// The former has nothing but this machine; the latter keeps the real one beside it.
using Caller = std::string_view;

class Machine {
public:
    // 64 MiB of memory behind /dev/mem and a PCI bus without functions, nothing else.
    Machine();

    PhysicalMemory& GetMemory() { return memory_; }
    AccessLog& GetLog() { return log_; }
    CallFaults& GetFaults() { return faults_; }
    PortMap& Ports() { return ports_; }
    PciBus& GetPci() { return *pci_; }
    FreeProgram& GetFreeProgram() { return free_; }
    ProcStat& GetStat();
    // The management controller. The first call gives the machine one, behind /dev/ipmi, with a KCS
    // interface; giveBmc before it says which interfaces answer.
    Bmc& GetBmc();
    void GiveBmc(bool kcs, bool smic);
    bool HasBmc() const { return bmc_ != nullptr; }

    std::chrono::seconds Clock() const { return clock_; }

    // From now on a sleep lasts as long as this function does, which answers the seconds left.
    void SleepBy(unsigned (*sleeper)(unsigned)) { sleeper_ = sleeper; }

    // Whether a server could have something at this path.
    static bool IsMachinePath(std::string_view path);

    // A path that can be opened from now on. std::invalid_argument when isMachinePath is false.
    void Install(const std::string& path, std::unique_ptr<Device> device);

    // A directory below /proc/ide; those above it are there, too, and so are those of devices.
    void InstallDirectory(const std::string& path);

    // Opening the path fails with this errno from now on.
    void Refuse(const std::string& path, int error);

    std::optional<Answer> Open(Caller caller, const char* path, int flags);
    std::optional<Answer> Seek(Caller caller, int descriptor, std::int64_t offset, int whence);
    std::optional<Answer> Read(Caller caller, int descriptor, void* out, std::size_t size);
    std::optional<Answer> Ioctl(Caller caller, int descriptor, unsigned long request,
                                void* argument);
    std::optional<Answer> Close(Caller caller, int descriptor);

    // A directory that can be opened gets its handle from the caller, who says which it became.
    std::optional<Answer> OpenDirectory(Caller caller, const char* path);
    void DirectoryOpened(const void* handle, const char* path);
    std::optional<Answer> CloseDirectory(Caller caller, const void* handle);

    // Runs a command of the shell with this machine's programs in front of the real ones, by the
    // real function.
    std::optional<Answer> System(Caller caller, const char* command, int (*run)(const char*));

    Answer SetPrivilege(int level);
    Answer Sleep(unsigned seconds);
    std::uint32_t PortIn(std::uint16_t port, unsigned width);
    void PortOut(std::uint16_t port, unsigned width, std::uint32_t value);

    // An allocation of the observed library; whether it is to fail.
    bool AllocationFails();
    std::size_t Allocations() const { return allocations_; }

private:
    struct OpenedFile {
        std::string path;
        std::unique_ptr<OpenFile> file;
        std::uint64_t device;  // identity of the real file behind the descriptor, which tells
        std::uint64_t inode;   // a descriptor that was closed and given out again elsewhere
    };

    Answer FindDirectory(const std::string& path) const;
    OpenedFile* Find(int descriptor);
    std::optional<Answer> RefuseUnopened(Caller caller, const std::string& call);
    Answer OpenPath(const std::string& path, int flags);
    Answer LogAnswer(std::string call, std::string what, Answer answer, std::string shown);
    void RequirePrivilege(const std::string& instruction) const;

    PhysicalMemory memory_;
    AccessLog log_;
    CallFaults faults_;
    PortMap ports_;
    std::shared_ptr<PciBus> pci_ = std::make_shared<PciBus>();
    std::shared_ptr<ProcStat> stat_;
    FreeProgram free_;
    std::shared_ptr<Bmc> bmc_;
    std::map<std::string, std::unique_ptr<Device>, std::less<>> devices_;
    std::map<std::string, int, std::less<>> refused_;
    std::map<int, OpenedFile> opened_;
    std::set<std::string, std::less<>> directories_;
    std::map<const void*, std::string> openedDirectories_;
    std::chrono::seconds clock_{0};
    unsigned (*sleeper_)(unsigned) = nullptr;
    int privilege_ = 0;
    std::size_t allocations_ = 0;
};

}  // namespace sim

#endif
