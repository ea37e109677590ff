// SPDX-License-Identifier: MIT
//
// Giving up what serving requests does not take.
#ifndef TALVANE_BRIDGE_RIGHTS_H
#define TALVANE_BRIDGE_RIGHTS_H

namespace bridge {

// Gives up all capabilities and the way back to them, for the calling thread and those it starts.
// Files of the own user, such as the IPMI device, can still be opened. Returns 0 or an errno.
[[nodiscard]] int DropRights();

}  // namespace bridge

#endif
