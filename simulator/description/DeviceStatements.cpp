// SPDX-License-Identifier: MIT
//
// The statement about devices that cannot be opened: without.

#include <cerrno>

#include "simulator/base/CallText.h"
#include "simulator/description/MachineDraft.h"
#include "simulator/machine/Machine.h"

namespace sim {
namespace {

// The errors with which opening a device can fail.
constexpr int kOpenErrors[] = {ENOENT, EACCES, EPERM, ENXIO, ENODEV, EBUSY, EIO};

constexpr const char* kPorts = "ports";  // the I/O privilege

int TakeOpenError(MachineLine& line) {
    const std::string name = line.TakeWord("the error");
    std::string known;
    for (const int error : kOpenErrors) {
        if (ErrorName(error) == name) return error;
        known += " " + ErrorName(error);
    }
    line.Fail("the error \"" + name + "\" is none of" + known);
}

void ReadWithout(MachineLine& line, MachineDraft& draft) {
    const std::string device = line.TakeWord("the device");
    if (device != kPorts && !Machine::IsMachinePath(device))
        line.Fail("no server has a device " + device);
    const int error = line.HasMore() ? TakeOpenError(line) : ENOENT;
    if (!draft.without.emplace(device, error).second)
        line.Fail("the machine is without " + device + " already");
}

constexpr MachineStatement kDeviceStatements[] = {{"without", ReadWithout}};

}  // namespace

std::span<const MachineStatement> DeviceStatements() {
    return kDeviceStatements;
}

}  // namespace sim
