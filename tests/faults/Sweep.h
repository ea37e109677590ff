// SPDX-License-Identifier: MIT
//
// Runs an operation of the library once for every call that it makes of the machine, with that call
// failing, and checks after each run what must hold whatever fails.
#ifndef TALVANE_TESTS_FAULTS_SWEEP_H
#define TALVANE_TESTS_FAULTS_SWEEP_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "faults/Fault.h"

namespace faults {

// What `Operation::run` answers when std::bad_alloc left it.
inline constexpr int kThrew = 0x7B0A;

struct Operation {
    std::string name;
    std::size_t recordSize = 0;
    std::function<int(void* record)> run;

    // The array of elements in the record, so that what is written of one may be written of all.
    std::size_t firstElement = 0;
    std::size_t elementSize = 0;

    // Fields of an element that are written only after a fault, by their offset in the element.
    struct Field {
        std::size_t offset;
        std::size_t size;
    };
    std::vector<Field> otherFields;

    // Which results the fault may have, besides the one of a run without a fault.
    std::function<bool(const Fault& fault, int result)> mayAnswer;

    // Whether a run that does not answer 0 leaves the whole record as it was.
    bool failureLeavesRecord = true;

    // A run takes long: each use fails in one way, and there is no last run without a fault.
    bool slow = false;

    // Brings the library back to where it was before the first run.
    std::function<void()> restart;

    // Called with the fault: how many descriptors may stay open, and whether the call after the
    // faulty one, without a fault, may answer so. Empty: none, and the result and the record are
    // those of a run without a fault.
    std::function<int(const Fault& fault)> descriptorsLeft;
    std::function<bool(const Fault& fault, int result)> mayAnswerNext;

    // Each run gets a process of its own, since the library remembers it. Then `mayEnd` says with
    // which faults the program may end in which way, as waitpid states it.
    bool ownProcess = false;
    std::function<bool(const Fault& fault, int status)> mayEnd;
};

struct SweepResult {
    int runs = 0;
    std::vector<std::string> complaints;  // what did not hold, with operation and fault
};

// Adds to `result`. The library's diagnostics must be caught by the caller.
void Sweep(sim::SimulatedServer& server, const Operation& operation, SweepResult& result);

}  // namespace faults

#endif
