// SPDX-License-Identifier: MIT
//
// Gives up the rights that serving requests does not need.
#ifndef TALVANE_BRIDGE_RIGHTS_H
#define TALVANE_BRIDGE_RIGHTS_H

#include <string>

namespace bridge {

// Becomes `user`, with the groups of that user; an empty `user` changes nobody. Then gives up all
// capabilities for good. Both hold for the calling thread and the threads that it starts. Files
// that belong to the resulting user, such as the IPMI device, can still be opened. Returns 0 or an
// errno: ENOENT for a user that does not exist.
[[nodiscard]] int DropRights(const std::string& user);

}  // namespace bridge

#endif
