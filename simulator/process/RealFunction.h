// SPDX-License-Identifier: MIT
//
// Finds the real function that an interposed one replaces.
#ifndef TALVANE_SIMULATOR_PROCESS_REALFUNCTION_H
#define TALVANE_SIMULATOR_PROCESS_REALFUNCTION_H

#include <dlfcn.h>

namespace sim {

// The next definition of `name` after this module's, usually that of libc; null when there is none.
template <typename Function>
Function* RealFunction(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace sim

#endif
