// SPDX-License-Identifier: MIT
//
// What a simulated server does without a file: I/O privilege, port accesses and time.

#include <cerrno>
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
    else if (level > privilege_ && portError_ != 0)
        answer = Answer::Failed(portError_);
    else
        privilege_ = level;
    return LogAnswer("iopl", std::to_string(level), answer, "0");
}

// A fault interrupts the sleep at once, so all of its seconds are left. Unlike other calls, an
// interrupted sleep answers a number and sets errno, too.
Answer Machine::Sleep(unsigned seconds) {
    const std::optional<int> fault = faults_.Enter("sleep");
    errno = 0;
    const unsigned left = fault ? seconds : sleeper_ != nullptr ? sleeper_(seconds) : 0;
    const int error = fault.value_or(errno);
    clock_ += std::chrono::seconds(seconds - left);
    Answer answer = LogAnswer("sleep", std::to_string(seconds), {left}, std::to_string(left));
    answer.error = error;
    return answer;
}

template <typename Describe>
PortDevice& Machine::FindPort(std::uint16_t port, unsigned width, Describe describe) const {
    if (privilege_ < kPortPrivilege)
        AbortOnViolation(describe() + " at I/O privilege level " + std::to_string(privilege_) +
                         ", which needs iopl(3)");
    PortDevice* const device = ports_.Find(port, width);
    if (device == nullptr) AbortOnViolation(describe() + ", which this machine does not have");
    return *device;
}

std::uint32_t Machine::PortIn(std::uint16_t port, unsigned width) {
    // Only for the action that waits for it: an instruction cannot fail.
    (void)faults_.Enter("in");
    PortDevice& device = FindPort(
        port, width, [=] { return "in of " + ByteCount(width) + " from port " + Hex(port); });
    const std::uint32_t value = device.In(port, width);
    log_.Add(PortTransfer{.direction = PortTransfer::Direction::kIn,
                          .width = static_cast<std::uint8_t>(width),
                          .port = port,
                          .value = value});
    return value;
}

void Machine::PortOut(std::uint16_t port, unsigned width, std::uint32_t value) {
    (void)faults_.Enter("out");
    PortDevice& device = FindPort(port, width, [=] {
        return "out of " + Hex(value) + ", " + ByteCount(width) + ", to port " + Hex(port);
    });
    device.Out(port, width, value);
    log_.Add(PortTransfer{.direction = PortTransfer::Direction::kOut,
                          .width = static_cast<std::uint8_t>(width),
                          .port = port,
                          .value = value});
}

}  // namespace sim
