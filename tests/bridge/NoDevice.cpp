// SPDX-License-Identifier: MIT
//
// In place of the bridge's device, which needs libfuse: prints what it would serve, and as whom.

#include <cstdio>

#include "bridge/CharacterDevice.h"

namespace bridge {

int ServeDevice(const DeviceNames& names, const std::string& user) {
    (void)std::printf("%s as %s for '%s'\n", names.kernel.c_str(), names.provided.c_str(),
                      user.c_str());
    return 0;
}

}  // namespace bridge
