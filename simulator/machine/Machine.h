// SPDX-License-Identifier: MIT
//
// The simulated server itself: devices by path, open files by descriptor, I/O ports, privilege,
// time, faults and the log. How calls reach it is not its business. Each call returns what libc is
// to return, or nothing when the real function is to be called instead.
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

// Who made a call: the name of the observed library, or empty for any other module. An observed
// library can reach nothing but this machine; other modules can reach the real one, too.
using Caller = std::string_view;

class Machine {
public:
    // A machine with 64 MiB of memory, readable in /dev/mem, and a PCI bus without functions.
    Machine();

    PhysicalMemory& GetMemory() { return memory_; }
    AccessLog& GetLog() { return log_; }
    CallFaults& GetFaults() { return faults_; }
    PortMap& Ports() { return ports_; }
    PciBus& GetPci() { return *pci_; }
    FreeProgram& GetFreeProgram() { return free_; }
    ProcStat& GetStat();

    // The management controller. The first call creates it, at /dev/ipmi and with a KCS interface.
    // GiveBmc, called before that, creates it with the interfaces that it names; std::logic_error
    // when there is one already.
    Bmc& GetBmc();
    void GiveBmc(bool kcs, bool smic);
    bool HasBmc() const { return bmc_ != nullptr; }

    std::chrono::seconds Clock() const { return clock_; }

    // From now on a sleep takes as long as this function does, which returns the seconds left.
    void SleepBy(unsigned (*sleeper)(unsigned)) { sleeper_ = sleeper; }

    // Whether a server could have something at this path.
    static bool IsMachinePath(std::string_view path);

    // Puts a device at a path. std::invalid_argument when IsMachinePath is false.
    void Install(const std::string& path, std::unique_ptr<Device> device);

    // Creates a directory in /proc/ide, with its parents. The directories of devices exist anyway.
    void InstallDirectory(const std::string& path);

    // From now on everything at this path and below it is that of the real system at `file`, for
    // reading, in place of a device that was installed there before.
    // std::invalid_argument when IsMachinePath is false.
    void UseReal(const std::string& path, const std::string& file);

    // Opening the path fails with this errno from now on.
    void Refuse(const std::string& path, int error);

    // How the machine was read when it was captured, as EncodeWays writes it; empty for any other.
    void SetWays(std::string ways) { ways_ = std::move(ways); }
    const std::string& Ways() const { return ways_; }

    // Raising the I/O privilege fails with this errno from now on.
    void RefusePorts(int error) { portError_ = error; }

    std::optional<Answer> Open(Caller caller, const char* path, int flags);
    std::optional<Answer> Seek(Caller caller, int descriptor, std::int64_t offset, int whence);
    std::optional<Answer> Read(Caller caller, int descriptor, void* out, std::size_t size);
    std::optional<Answer> Ioctl(Caller caller, int descriptor, unsigned long request,
                                void* argument);
    std::optional<Answer> Close(Caller caller, int descriptor);

    // When a directory can be opened, the caller creates the handle and registers it by
    // DirectoryOpened.
    std::optional<Answer> OpenDirectory(Caller caller, const char* path);
    void DirectoryOpened(const void* handle, const char* path);
    std::optional<Answer> CloseDirectory(Caller caller, const void* handle);

    // Runs a shell command by the real function `run`, with this machine's programs in place of the
    // real ones.
    std::optional<Answer> System(Caller caller, const char* command, int (*run)(const char*));

    Answer SetPrivilege(int level);
    Answer Sleep(unsigned seconds);
    std::uint32_t PortIn(std::uint16_t port, unsigned width);
    void PortOut(std::uint16_t port, unsigned width, std::uint32_t value);

    // Counts an allocation of the observed library. Returns whether it is to fail.
    bool AllocationFails();
    std::size_t Allocations() const { return allocations_; }

private:
    struct OpenedFile {
        std::string path;
        std::unique_ptr<OpenFile> file;
        std::uint64_t device;  // identity of the real file: differs after the descriptor
        std::uint64_t inode;   // was closed and reused for another file
    };

    Answer FindDirectory(const std::string& path) const;
    std::optional<std::string> RealPath(const std::string& path) const;
    std::unique_ptr<OpenFile> OpenDeviceOrFile(const std::string& path, int flags, int& error);
    OpenedFile* Find(int descriptor);
    std::optional<Answer> RefuseUnopened(Caller caller, const std::string& call);
    Answer OpenPath(const std::string& path, int flags);
    Answer LogAnswer(std::string call, std::string what, Answer answer, std::string shown);

    // The device that answers a port access. Ends the process when the program lacks the privilege
    // or the machine has no such port; only then is the access described, as `describe` returns it.
    template <typename Describe>
    PortDevice& FindPort(std::uint16_t port, unsigned width, Describe describe) const;

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
    std::map<std::string, std::string, std::less<>> real_;  // paths of the real system, by path
    std::map<int, OpenedFile> opened_;
    std::set<std::string, std::less<>> directories_;
    std::map<const void*, std::string> openedDirectories_;
    std::chrono::seconds clock_{0};
    unsigned (*sleeper_)(unsigned) = nullptr;
    int privilege_ = 0;
    int portError_ = 0;  // 0: the program may raise its privilege
    std::size_t allocations_ = 0;
    std::string ways_;
};

}  // namespace sim

#endif
