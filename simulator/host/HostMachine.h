// SPDX-License-Identifier: MIT
//
// The running system as a machine: what the library asks for in ways that today's kernels no longer
// offer is answered through those that they do offer. Nothing of the system is changed.
#ifndef TALVANE_SIMULATOR_HOST_HOSTMACHINE_H
#define TALVANE_SIMULATOR_HOST_HOSTMACHINE_H

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "simulator/host/Ways.h"

namespace sim {

class Machine;

struct HostOptions {
    std::filesystem::path root = "/";   // of the tree with sys, proc and dev
    std::set<std::string> direct = {};  // the areas to read through the devices that agents know
    bool mayChangeBmc = false;          // pass commands on that can change the controller
};

// Turns a new machine into the running system. Returns how each area is read, in the order of
// kAreas. An area that cannot be read has a problem, and its devices refuse to be opened.
std::vector<AreaWay> BuildHostMachine(const HostOptions& options, Machine& machine);

}  // namespace sim

#endif
