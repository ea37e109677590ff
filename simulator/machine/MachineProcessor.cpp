// SPDX-License-Identifier: MIT
//
// What a simulated server does without a file: I/O privilege, port instructions and time.

#include <cerrno>
#include <stdexcept>

#include "simulator/base/CallText.h"
#include "simulator/machine/Machine.h"
#include "simulator/machine/Violation.h"

namespace sim {
namespace {

constexpr int kPortPrivilege = 3;

std::string bytes(unsigned width) {
    return std::to_string(width) + (width == 1 ? " byte" : " bytes");
}

}  // namespace

Answer Machine::setPrivilege(int level) {
    const std::optional<int> fault = faults_.enter("iopl");
    Answer answer;
    if (fault)
        answer = Answer::failed(*fault);
    else if (level < 0 || level > kPortPrivilege)
        answer = Answer::failed(EINVAL);
    else
        privilege_ = level;
    return logged("iopl", std::to_string(level), answer, "0");
}

// A fault means an interrupted sleep: the seconds left are returned, here all of them. Unlike other
// calls an interrupted sleep answers a number and sets errno, too.
Answer Machine::sleep(unsigned seconds) {
    const std::optional<int> fault = faults_.enter("sleep");
    errno = 0;
    const unsigned left = fault ? seconds : sleeper_ != nullptr ? sleeper_(seconds) : 0;
    const int error = fault.value_or(errno);
    clock_ += std::chrono::seconds(seconds - left);
    Answer answer = logged("sleep", std::to_string(seconds), {left}, std::to_string(left));
    answer.error = error;
    return answer;
}

void Machine::requirePrivilege(const std::string& instruction) const {
    if (privilege_ < kPortPrivilege)
        violation(instruction + " at I/O privilege level " + std::to_string(privilege_) +
                  ", which needs iopl(3)");
}

std::uint32_t Machine::portIn(std::uint16_t port, unsigned width) {
    const std::string what = hex(port) + " " + std::to_string(width);
    const std::string instruction = "in of " + bytes(width) + " from port " + hex(port);
    (void)faults_.enter("in");  // runs the action that waits for it; instructions do not fail
    requirePrivilege(instruction);
    PortDevice* const device = ports_.find(port, width);
    if (device == nullptr) violation(instruction + ", which this machine does not have");
    const std::uint32_t value = device->in(port, width);
    log_.add({"in", what, hex(value)});
    return value;
}

void Machine::portOut(std::uint16_t port, unsigned width, std::uint32_t value) {
    const std::string what = hex(port) + " " + std::to_string(width) + " " + hex(value);
    const std::string instruction =
        "out of " + hex(value) + ", " + bytes(width) + ", to port " + hex(port);
    (void)faults_.enter("out");
    requirePrivilege(instruction);
    PortDevice* const device = ports_.find(port, width);
    if (device == nullptr) violation(instruction + ", which this machine does not have");
    device->out(port, width, value);
    log_.add({"out", what, "ok"});
}

}  // namespace sim
