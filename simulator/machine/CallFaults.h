// SPDX-License-Identifier: MIT
//
// Calls that are to fail, and actions to run inside them. Counts run from the moment a fault is
// asked for; each fault strikes once.
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
    // std::invalid_argument for calls that the server does not answer and for nth below 1.
    void Fail(std::string_view call, int nth, int error);
    void ShortRead(int nth, std::size_t bytes);
    void FailAllocation(int nth);
    void During(std::string_view call, void (*action)());

    // Runs the action that waits for `call`, then counts the call: the errno it is to fail with.
    std::optional<int> Enter(std::string_view call);

    // The size that this read is cut to, at most `size`.
    std::size_t ReadSize(std::size_t size);

    // Whether this allocation is to fail.
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
