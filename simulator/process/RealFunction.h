// SPDX-License-Identifier: MIT
//
// The function that an interposed one stands in front of.
#ifndef TALVANE_SIMULATOR_PROCESS_REALFUNCTION_H
#define TALVANE_SIMULATOR_PROCESS_REALFUNCTION_H

#include <dlfcn.h>

namespace sim {

// The next definition of `name` after this module's, usually libc's.
template <typename Function>
Function* RealFunction(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace sim

#endif
