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
#include "simulator/machine/Device.h"
#include "simulator/machine/Faults.h"
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

    PhysicalMemory& memory() { return memory_; }
    AccessLog& log() { return log_; }
    Faults& faults() { return faults_; }
    PortMap& ports() { return ports_; }
    PciBus& pci() { return *pci_; }
    FreeProgram& freeProgram() { return free_; }
    ProcStat& stat();
    // The management controller. The first call gives the machine one, behind /dev/ipmi, with a KCS
    // interface; giveBmc before it says which interfaces answer.
    Bmc& bmc();
    void giveBmc(bool kcs, bool smic);
    bool hasBmc() const { return bmc_ != nullptr; }

    std::chrono::seconds clock() const { return clock_; }

    // From now on a sleep lasts as long as this function does, which answers the seconds left.
    void sleepBy(unsigned (*sleeper)(unsigned)) { sleeper_ = sleeper; }

    // Whether a server could have something at this path.
    static bool isMachinePath(std::string_view path);

    // A path that can be opened from now on. std::invalid_argument when isMachinePath is false.
    void install(const std::string& path, std::unique_ptr<Device> device);

    // A directory below /proc/ide; those above it are there, too, and so are those of devices.
    void installDirectory(const std::string& path);

    // Opening the path fails with this errno from now on.
    void refuse(const std::string& path, int error);

    std::optional<Answer> open(Caller caller, const char* path, int flags);
    std::optional<Answer> seek(Caller caller, int descriptor, std::int64_t offset, int whence);
    std::optional<Answer> read(Caller caller, int descriptor, void* out, std::size_t size);
    std::optional<Answer> ioctl(Caller caller, int descriptor, unsigned long request,
                                void* argument);
    std::optional<Answer> close(Caller caller, int descriptor);

    // A directory that can be opened gets its handle from the caller, who says which it became.
    std::optional<Answer> openDirectory(Caller caller, const char* path);
    void directoryOpened(const void* handle, const char* path);
    std::optional<Answer> closeDirectory(Caller caller, const void* handle);

    // Runs a command of the shell with this machine's programs in front of the real ones, by the
    // real function.
    std::optional<Answer> system(Caller caller, const char* command, int (*run)(const char*));

    Answer setPrivilege(int level);
    Answer sleep(unsigned seconds);
    std::uint32_t portIn(std::uint16_t port, unsigned width);
    void portOut(std::uint16_t port, unsigned width, std::uint32_t value);

    // An allocation of the observed library; whether it is to fail.
    bool allocate();
    std::size_t allocations() const { return allocations_; }

private:
    struct Open {
        std::string path;
        std::unique_ptr<OpenFile> file;
        std::uint64_t device;  // identity of the real file behind the descriptor, which tells
        std::uint64_t inode;   // a descriptor that was closed and given out again elsewhere
    };

    Answer findDirectory(const std::string& path) const;
    Open* find(int descriptor);
    std::optional<Answer> notOpen(Caller caller, const std::string& call);
    Answer openFile(const std::string& path, int flags);
    Answer logged(std::string call, std::string what, Answer answer, std::string shown);
    void requirePrivilege(const std::string& instruction) const;

    PhysicalMemory memory_;
    AccessLog log_;
    Faults faults_;
    PortMap ports_;
    std::shared_ptr<PciBus> pci_ = std::make_shared<PciBus>();
    std::shared_ptr<ProcStat> stat_;
    FreeProgram free_;
    std::shared_ptr<Bmc> bmc_;
    std::map<std::string, std::unique_ptr<Device>, std::less<>> devices_;
    std::map<std::string, int, std::less<>> refused_;
    std::map<int, Open> opened_;
    std::set<std::string, std::less<>> directories_;
    std::map<const void*, std::string> openedDirectories_;
    std::chrono::seconds clock_{0};
    unsigned (*sleeper_)(unsigned) = nullptr;
    int privilege_ = 0;
    std::size_t allocations_ = 0;
};

}  // namespace sim

#endif
