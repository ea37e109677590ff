// SPDX-License-Identifier: MIT
//
// Aborts on purpose: a request that reached the real machine, or was answered by a guess, would
// make every later result worthless.

#include "simulator/machine/Violation.h"

#include <cstdio>
#include <cstdlib>

namespace sim {
namespace {

const char* serverName = "simulated server";

}  // namespace

void NameServer(const char* name) {
    serverName = name;
}

void AbortOnViolation(const std::string& what) {
    std::fprintf(stderr, "%s: %s\n", serverName, what.c_str());
    std::abort();
}

}  // namespace sim
