// SPDX-License-Identifier: MIT
//
// The calls and what the kernel may answer them, and how each fault is set.
#include "faults/Fault.h"

#include <cerrno>
#include <cstring>

#include "faults/LibraryCalls.h"
#include "simulator/machine/Machine.h"

namespace faults {

const std::vector<Call>& Calls() {
    static const std::vector<Call> calls = {
        {"open", {EACCES, EPERM, ENOENT, ENXIO, EBUSY, EINTR, EMFILE, ENFILE, ENOMEM}},
        {"lseek", {EINVAL, ESPIPE, EOVERFLOW}},
        {"_llseek", {EINVAL, ESPIPE}},
        {"read", {EIO, EFAULT, EINTR, EPERM, EAGAIN}},
        {kShortRead, {0, 1, 5, 15, 100, 4096}},
        {"close", {EINTR, EIO}},
        {"ioctl", {EIO, EINVAL, ENOTTY, ENODEV, EBUSY, EINTR, ETIMEDOUT}},
        {"iopl", {EPERM, ENOSYS, EINVAL}},
        {"opendir", {EACCES, ENOENT, ENOTDIR, EMFILE, ENOMEM}},
        {"closedir", {EBADF, EINTR}},
        // A sleep that every signal cuts short before a second has passed has no end.
        {"sleep", {EINTR}, false},
        {"system", {EAGAIN, ENOMEM}},
        {"fopen", {EACCES, ENOENT, EMFILE, ENOSPC}},
        {"fgets", {EIO}},
        {"remove", {EACCES, EROFS}},
        {kAllocation, {ENOMEM}},
    };
    return calls;
}

std::string Fault::Text() const {
    return std::string(call) + " " + std::to_string(nth) + (IsForEver() ? " for ever: " : ": ") +
           (Is(kShortRead) ? std::to_string(value) + " bytes" : std::strerror(value));
}

void Set(sim::SimulatedServer& server, const Fault& fault) {
    sim::CallFaults& machine = server.GetMachine().GetFaults();
    if (fault.Is(kAllocation))
        machine.FailAllocation(fault.nth, fault.strikes);
    else if (fault.Is(kShortRead))
        machine.ShortRead(fault.nth, static_cast<std::size_t>(fault.value), fault.strikes);
    else if (IsLibraryCall(fault.call))
        FailLibraryCall(fault.call, fault.nth, fault.value, fault.strikes);
    else
        machine.Fail(fault.call, fault.nth, fault.value, fault.strikes);
}

void Clear(sim::SimulatedServer& server) {
    server.GetMachine().GetFaults().Clear();
    server.GetLog().Clear();
    ClearLibraryCalls();
}

int Uses::Of(std::string_view call) const {
    if (call == kAllocation) return static_cast<int>(server_.Allocations() - allocations_);
    if (IsLibraryCall(call)) return static_cast<int>(LibraryCallsOf(call));
    return static_cast<int>(server_.GetLog().Count(call == kShortRead ? "read" : call));
}

}  // namespace faults
