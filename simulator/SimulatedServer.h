// SPDX-License-Identifier: MIT
//
// A server that exists only in this process. While it lives, it answers the libc calls and port
// accesses by which libTalvane touches the machine: physical memory (/dev/mem), I/O privilege,
// virtual time and so on. It needs no root, and no request reaches the real machine.
//
// It is hermetic: when the library asks for a path, request or port that no server has, the request
// is reported on standard error and the process aborts. A device that a server could have but this
// one lacks, such as /dev/ipmi, fails with the errno that the kernel would give.
//
// Calls of other modules of the process (GoogleTest, the C library itself) for other paths go to
// the real machine. Only one server can exist at a time.
#ifndef TALVANE_SIMULATOR_SIMULATEDSERVER_H
#define TALVANE_SIMULATOR_SIMULATEDSERVER_H

#include <cerrno>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "simulator/base/AccessLog.h"
#include "simulator/bmc/Bmc.h"
#include "simulator/machine/FreeProgram.h"
#include "simulator/machine/PciBus.h"
#include "simulator/machine/PhysicalMemory.h"
#include "simulator/machine/ProcStat.h"

namespace sim {

class Machine;

class SimulatedServer {
public:
    // A server with 64 MiB of zeroed memory and no device but /dev/mem.
    SimulatedServer();

    // The server that a machine folder or an archive of one describes (docs/machine-format.md).
    // Throws MachineError, whose text names file and line, when the description cannot be used.
    explicit SimulatedServer(const std::filesystem::path& machine);

    // The server that `build` makes of a new machine, before it answers anything.
    explicit SimulatedServer(const std::function<void(Machine&)>& build);

    ~SimulatedServer();
    SimulatedServer(const SimulatedServer&) = delete;
    SimulatedServer& operator=(const SimulatedServer&) = delete;

    PhysicalMemory& GetMemory();
    PciBus& GetPci();

    // The management controller. The first call creates it, with a KCS interface.
    Bmc& GetBmc();
    ProcStat& GetStat();            // the first call creates /proc/stat
    FreeProgram& GetFreeProgram();  // what `free` prints in a shell of the library

    // Every access so far, in order.
    AccessLog& GetLog();

    // Faults. `nth` counts from 1 and starts to count at this call.
    void Fail(std::string_view call, int nth,
              int error = EIO);                  // "open", "lseek", "read", "iopl" ...
    void ShortRead(int nth, std::size_t bytes);  // the read delivers at most this many bytes
    void FailAllocation(int nth);                // an allocation made by the library

    // How many allocations (operator new) the library's own code has made so far. Allocations by
    // the C++ runtime on its behalf do not count.
    std::size_t Allocations() const;

    // Opening `path` fails with `error` from now on.
    void Refuse(const std::string& path, int error = EACCES);

    // The time that the program has slept so far.
    std::chrono::seconds Clock() const;

    // Runs `action` once, inside the next simulated call named `call` and before its answer. There
    // a test can enter the library again.
    void During(std::string_view call, void (*action)());

    // Also observes modules whose file name begins with `library`, as it does libTalvane.so: they
    // can reach nothing but this server.
    void Observe(const std::string& library);

    // The machine itself, on which devices can be installed.
    Machine& GetMachine();

private:
    class State;
    std::unique_ptr<State> state_;
};

}  // namespace sim

#endif
