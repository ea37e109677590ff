// SPDX-License-Identifier: MIT
//
// /dev/ipmi as a character device in userspace (CUSE).
#ifndef TALVANE_BRIDGE_CHARACTERDEVICE_H
#define TALVANE_BRIDGE_CHARACTERDEVICE_H

#include <string>

namespace bridge {

struct DeviceNames {
    std::string kernel;    // path of the device that requests go to
    std::string provided;  // name below /dev of the device that callers open
};

// Provides the device until a signal ends the process. Serves as `user`, or as the user who started
// the process when `user` is empty. Returns the process's exit status.
int ServeDevice(const DeviceNames& names, const std::string& user);

}  // namespace bridge

#endif
