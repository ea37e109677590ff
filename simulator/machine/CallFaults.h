// SPDX-License-Identifier: MIT
//
// Faults of the program's calls: which call is to fail, which read is to be short, which allocation
// is to be refused; and actions to run inside calls. A fault counts calls from the moment it is
// set. It strikes once, or every time from the nth call on. Faults of the controller are in
// bmc/BmcFaults.cpp.
#ifndef TALVANE_SIMULATOR_MACHINE_CALLFAULTS_H
#define TALVANE_SIMULATOR_MACHINE_CALLFAULTS_H

#include <cstddef>
#include <list>
#include <optional>
#include <string>
#include <string_view>

namespace sim {

// How often a fault strikes.
enum class Strikes { kOnce, kForEver };

class CallFaults {
public:
    // `nth` counts from 1. std::invalid_argument for nth below 1 and for a call that the server
    // does not answer.
    void Fail(std::string_view call, int nth, int error, Strikes strikes = Strikes::kOnce);
    void ShortRead(int nth, std::size_t bytes, Strikes strikes = Strikes::kOnce);
    void FailAllocation(int nth, Strikes strikes = Strikes::kOnce);
    void During(std::string_view call, void (*action)());

    // Forgets the faults that are set; actions stay.
    void Clear();

    // Runs the action that waits for `call`, then counts the call. Returns the errno that it is to
    // fail with, or nothing when it is to succeed.
    std::optional<int> Enter(std::string_view call);

    // Counts a read. Returns the number of bytes that it may deliver, at most `size`.
    std::size_t ReadSize(std::size_t size);

    // Counts an allocation. Returns whether it is to fail.
    bool AllocationFails();
    std::size_t RefusedAllocations() const { return refusedAllocations_; }

private:
    // Counts the calls that a fault waits for.
    class Countdown {
    public:
        Countdown(int nth, Strikes strikes) : left_(nth), strikes_(strikes) {}

        // Counts a call. Returns whether the fault strikes it.
        bool StrikesNow() { return left_ == 0 || --left_ == 0; }
        bool IsOver() const { return left_ == 0 && strikes_ == Strikes::kOnce; }

    private:
        int left_;
        Strikes strikes_;
    };
    struct Fault {
        std::string call;
        Countdown countdown;
        int error;
    };
    struct CutRead {
        Countdown countdown;
        std::size_t bytes;
    };
    struct Action {
        std::string call;
        void (*run)();
    };
    std::list<Fault> faults_;
    std::list<CutRead> shortReads_;
    std::list<Countdown> allocations_;
    std::size_t refusedAllocations_ = 0;
    std::list<Action> actions_;
};

}  // namespace sim

#endif
