// SPDX-License-Identifier: MIT
//
// Aborts on purpose: a request that reached the real machine, or was answered by a guess, would
// make every later result worthless.

#include "simulator/machine/Violation.h"

#include <cstdio>
#include <cstdlib>

namespace sim {

void AbortOnViolation(const std::string& what) {
    std::fprintf(stderr, "simulated server: %s\n", what.c_str());
    std::abort();
}

}  // namespace sim
