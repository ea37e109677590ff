// SPDX-License-Identifier: MIT
//
// A server that exists only in this process. While one lives, the libc calls and port instructions
// by which libTalvane touches the machine are answered by it instead: physical memory behind
// /dev/mem, I/O privilege, virtual time. It needs no root, and nothing it is asked for reaches the
// real machine.
//
// Hermetic: a path, request or port that the server does not have is reported on standard error
// with what was asked, and the process is aborted. A device that a server could have but this one
// has not (no /dev/ipmi, say) is answered with the errno that the kernel would give.
//
// Calls of other modules of the process (GoogleTest, the C library itself) for other paths go to
// the real machine. One server at a time.
#ifndef TALVANE_SIMULATOR_SIMULATEDSERVER_H
#define TALVANE_SIMULATOR_SIMULATEDSERVER_H

#include <cerrno>
#include <chrono>
#include <cstddef>
#include <filesystem>
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

    // The server described in a machine folder (docs/machine-format.md). Throws MachineError, whose
    // text names file and line, when the description cannot be used.
    explicit SimulatedServer(const std::filesystem::path& machineFolder);

    ~SimulatedServer();
    SimulatedServer(const SimulatedServer&) = delete;
    SimulatedServer& operator=(const SimulatedServer&) = delete;

    PhysicalMemory& GetMemory();
    PciBus& GetPci();

    // The management controller; the first call gives the server one, with a KCS interface.
    Bmc& GetBmc();
    ProcStat& GetStat();            // the first call gives the server a /proc/stat
    FreeProgram& GetFreeProgram();  // what `free` prints in a shell of the library

    // Every access so far, in order.
    AccessLog& GetLog();

    // Faults. `nth` counts from 1, from the moment of this call on.
    void Fail(std::string_view call, int nth,
              int error = EIO);                  // "open", "lseek", "read", "iopl" ...
    void ShortRead(int nth, std::size_t bytes);  // the read delivers at most so many bytes
    void FailAllocation(int nth);                // an allocation made by the library

    // Allocations (operator new) made by the library's own code so far; what the C++ runtime
    // allocates on its behalf is not counted.
    std::size_t Allocations() const;

    // Opening `path` fails with `error` from now on.
    void Refuse(const std::string& path, int error = EACCES);

    // Seconds that the program has slept so far.
    std::chrono::seconds Clock() const;

    // Called inside the next simulated call named `call`, before it is answered: a place from
    // which a test enters the library again.
    void During(std::string_view call, void (*action)());

    // Also treats modules whose file name begins with `library` as the library under observation,
    // as it does those of libTalvane.so: they have nothing but this server.
    void Observe(const std::string& library);

    // The machine itself, for installing devices.
    Machine& GetMachine();

private:
    class State;
    std::unique_ptr<State> state_;
};

}  // namespace sim

#endif
