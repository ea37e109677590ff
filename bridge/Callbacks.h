// SPDX-License-Identifier: MIT
//
// What libfuse calls when the kernel has passed something that a caller of the device wants. None
// of the callbacks waits for anything.
#ifndef TALVANE_BRIDGE_CALLBACKS_H
#define TALVANE_BRIDGE_CALLBACKS_H

#include "bridge/CharacterDevice.h"
#include "bridge/OpenFiles.h"

struct cuse_lowlevel_ops;

namespace bridge {

// What the callbacks work on: libfuse passes it on as user data.
struct Device {
    DeviceNames names;
    OpenFiles files;
};

[[nodiscard]] cuse_lowlevel_ops Callbacks();

}  // namespace bridge

#endif
