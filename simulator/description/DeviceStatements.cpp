// SPDX-License-Identifier: MIT
//
// The statement about devices that cannot be opened: without.

#include <cerrno>

#include "simulator/base/CallText.h"
#include "simulator/description/MachineDraft.h"
#include "simulator/machine/Machine.h"

namespace sim {
namespace {

// What opening a device can be refused with.
constexpr int kErrors[] = {ENOENT, EACCES, EPERM, ENXIO, ENODEV, EBUSY, EIO};

int errorNamed(MachineLine& line) {
    const std::string name = line.word("the error");
    std::string known;
    for (const int error : kErrors) {
        if (errorName(error) == name) return error;
        known += " " + errorName(error);
    }
    line.fail("the error \"" + name + "\" is none of" + known);
}

void readWithout(MachineLine& line, MachineDraft& draft) {
    const std::string device = line.word("the device");
    if (!Machine::isMachinePath(device)) line.fail("no server has a device " + device);
    const int error = line.more() ? errorNamed(line) : ENOENT;
    if (!draft.without.emplace(device, error).second)
        line.fail("the machine is without " + device + " already");
}

constexpr MachineStatement kStatements[] = {{"without", readWithout}};

}  // namespace

std::span<const MachineStatement> deviceStatements() {
    return kStatements;
}

}  // namespace sim
