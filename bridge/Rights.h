// SPDX-License-Identifier: MIT
//
// Giving up what serving requests does not take.
#ifndef TALVANE_BRIDGE_RIGHTS_H
#define TALVANE_BRIDGE_RIGHTS_H

#include <string>

namespace bridge {

// Becomes `user` with that one's groups, or stays who it is where `user` is empty, and gives up all
// capabilities and the way back to them. Holds for the calling thread and those it starts. Files of
// the user that is left, such as the IPMI device, can still be opened. Returns 0 or an errno,
// ENOENT for a user that does not exist.
[[nodiscard]] int DropRights(const std::string& user);

}  // namespace bridge

#endif
