// SPDX-License-Identifier: MIT
//
// Which way each area of this machine is read: directly, through the devices that agents know, or
// through the interfaces of today's kernels. For the latter the tool starts itself anew.
#ifndef TALVANE_TOOLS_WAYS_H
#define TALVANE_TOOLS_WAYS_H

#include <vector>

#include "tools/CommandLine.h"

namespace tool {

// The areas that a command reads.
std::vector<std::string> AreasOf(const Options& options);

// The ways of the areas that the command reads: of a capture, those of its machine, and none on any
// other simulated server. Where the options leave
// the choice, an area is read directly if the kernel grants that. Where an area is not read
// directly, the function does not return: it replaces this process by another one with the same
// command, in which all areas can be read. Exceptions are those of sim::RunOnHost.
std::vector<Way> WaysOrRestart(const Options& options);

}  // namespace tool

#endif
