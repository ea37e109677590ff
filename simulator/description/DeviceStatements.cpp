// SPDX-License-Identifier: MIT
//
// The statements about devices that cannot be opened, and about how a captured machine was read:
// without, way.

#include <algorithm>
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

// What is shown on terminals holds no control character.
std::string TakePlainText(MachineLine& line, const char* what) {
    const std::string text = line.TakeText(what);
    if (!std::all_of(text.begin(), text.end(), [](char c) { return c >= 0x20 && c < 0x7F; }))
        line.Fail(std::string(what) + " is not plain ASCII");
    return text;
}

void ReadWay(MachineLine& line, MachineDraft& draft) {
    AreaWay way;
    way.area = line.TakeWord("the area");
    if (std::find(kAreas.begin(), kAreas.end(), way.area) == kAreas.end())
        line.Fail("\"" + way.area + "\" is no area of a machine");
    for (const AreaWay& known : draft.ways)
        if (known.area == way.area) line.Fail("the way of " + way.area + " was given already");
    way.isDirect = line.TakeIf("direct");
    if (!way.isDirect) line.ExpectWord("host");
    way.from = TakePlainText(line, "the source");
    if (line.TakeIf("note")) way.note = TakePlainText(line, "the note");
    if (line.TakeIf("problem")) way.problem = TakePlainText(line, "the problem");
    if (line.TakeIf("unopened")) {
        way.unopened = TakePlainText(line, "the disks");
        way.whyUnopened = TakePlainText(line, "why they cannot be opened");
    }
    draft.ways.push_back(way);
}

constexpr MachineStatement kDeviceStatements[] = {{"without", ReadWithout}, {"way", ReadWay}};

}  // namespace

std::span<const MachineStatement> DeviceStatements() {
    return kDeviceStatements;
}

}  // namespace sim
