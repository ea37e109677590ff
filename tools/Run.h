// SPDX-License-Identifier: MIT
//
// Carries out what the command line asks for.
#ifndef TALVANE_TOOLS_RUN_H
#define TALVANE_TOOLS_RUN_H

#include "tools/CommandLine.h"

namespace tool {

// Writes to standard output and standard error; returns the exit status. std::runtime_error when
// standard output cannot be written.
int Run(const Options& options);

}  // namespace tool

#endif
