// SPDX-License-Identifier: MIT
//
// Loud on purpose: a request that slips through to the real machine, or is answered by a guess,
// would make every later result worthless.

#include "simulator/machine/Violation.h"

#include <cstdio>
#include <cstdlib>

namespace sim {

void AbortOnViolation(const std::string& what) {
    std::fprintf(stderr, "simulated server: %s\n", what.c_str());
    std::abort();
}

}  // namespace sim
