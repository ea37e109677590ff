// SPDX-License-Identifier: MIT
//
// Functions of the C library in front of the real ones, for calls that come from the library under
// test and that the simulated server leaves alone: fopen, fgets, remove and _llseek can fail, and
// the library's delete is counted. Calls of other modules go on to the real functions.
#ifndef TALVANE_TESTS_FAULTS_LIBRARYCALLS_H
#define TALVANE_TESTS_FAULTS_LIBRARYCALLS_H

#include <cstddef>
#include <string_view>

#include "simulator/machine/CallFaults.h"

namespace faults {

// Whether the call is one of those above.
bool IsLibraryCall(std::string_view call);

// The nth call from now on fails with the errno; n counts from 1.
void FailLibraryCall(std::string_view call, int nth, int error, sim::Strikes strikes);

// No call fails any more, and all counts are 0 again.
void ClearLibraryCalls();

// How often the call has been made since then.
std::size_t LibraryCallsOf(std::string_view call);

// How many blocks the library's own code has released so far.
std::size_t LibraryDeletes();

}  // namespace faults

#endif
