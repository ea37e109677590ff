// SPDX-License-Identifier: MIT
//
// Faults of the program's calls: which call is to fail, which read is to be short, which allocation
// is to be refused; and actions to run inside calls. A fault counts calls from the moment it is
// set, and strikes once. Faults of the controller are in bmc/BmcFaults.cpp.
#ifndef TALVANE_SIMULATOR_MACHINE_CALLFAULTS_H
#define TALVANE_SIMULATOR_MACHINE_CALLFAULTS_H

#include <cstddef>
#include <list>
#include <optional>
#include <string>
#include <string_view>

namespace sim {

class CallFaults {
public:
    // `nth` counts from 1. std::invalid_argument for nth below 1 and for a call that the server
    // does not answer.
    void Fail(std::string_view call, int nth, int error);
    void ShortRead(int nth, std::size_t bytes);
    void FailAllocation(int nth);
    void During(std::string_view call, void (*action)());

    // Runs the action that waits for `call`, then counts the call. Returns the errno that it is to
    // fail with, or nothing when it is to succeed.
    std::optional<int> Enter(std::string_view call);

    // Counts a read. Returns the number of bytes that it may deliver, at most `size`.
    std::size_t ReadSize(std::size_t size);

    // Counts an allocation. Returns whether it is to fail.
    bool AllocationFails();

private:
    struct Fault {
        std::string call;
        int left;
        int error;
    };
    struct CutRead {
        int left;
        std::size_t bytes;
    };
    struct Action {
        std::string call;
        void (*run)();
    };
    std::list<Fault> faults_;
    std::list<CutRead> shortReads_;
    std::list<int> allocations_;
    std::list<Action> actions_;
};

}  // namespace sim

#endif
