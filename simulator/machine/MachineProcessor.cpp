// SPDX-License-Identifier: MIT
//
// What a simulated server does without a file: I/O privilege, port accesses and time.

#include <stdexcept>

#include "simulator/base/CallText.h"
#include "simulator/machine/Machine.h"
#include "simulator/machine/Violation.h"

namespace sim {
namespace {

constexpr int kPortPrivilege = 3;

std::string ByteCount(unsigned width) {
    return std::to_string(width) + (width == 1 ? " byte" : " bytes");
}

}  // namespace

Answer Machine::SetPrivilege(int level) {
    const std::optional<int> fault = faults_.Enter("iopl");
    Answer answer;
    if (fault)
        answer = Answer::Failed(*fault);
    else if (level < 0 || level > kPortPrivilege)
        answer = Answer::Failed(EINVAL);
    else
        privilege_ = level;
    return LogAnswer("iopl", std::to_string(level), answer, "0");
}

// A fault interrupts the sleep at once, so all of its seconds are left.
Answer Machine::Sleep(unsigned seconds) {
    const std::optional<int> fault = faults_.Enter("sleep");
    const unsigned left = fault ? seconds : sleeper_ != nullptr ? sleeper_(seconds) : 0;
    clock_ += std::chrono::seconds(seconds - left);
    return LogAnswer("sleep", std::to_string(seconds), {left}, std::to_string(left));
}

void Machine::RequirePrivilege(const std::string& instruction) const {
    if (privilege_ < kPortPrivilege)
        AbortOnViolation(instruction + " at I/O privilege level " + std::to_string(privilege_) +
                         ", which needs iopl(3)");
}

std::uint32_t Machine::PortIn(std::uint16_t port, unsigned width) {
    const std::string what = Hex(port) + " " + std::to_string(width);
    const std::string instruction = "in of " + ByteCount(width) + " from port " + Hex(port);
    (void)faults_.Enter("in");  // only for the action that waits for it: an instruction cannot fail
    RequirePrivilege(instruction);
    PortDevice* const device = ports_.Find(port, width);
    if (device == nullptr) AbortOnViolation(instruction + ", which this machine does not have");
    const std::uint32_t value = device->In(port, width);
    log_.Add({"in", what, Hex(value)});
    return value;
}

void Machine::PortOut(std::uint16_t port, unsigned width, std::uint32_t value) {
    const std::string what = Hex(port) + " " + std::to_string(width) + " " + Hex(value);
    const std::string instruction =
        "out of " + Hex(value) + ", " + ByteCount(width) + ", to port " + Hex(port);
    (void)faults_.Enter("out");
    RequirePrivilege(instruction);
    PortDevice* const device = ports_.Find(port, width);
    if (device == nullptr) AbortOnViolation(instruction + ", which this machine does not have");
    device->Out(port, width, value);
    log_.Add({"out", what, "ok"});
}

}  // namespace sim
