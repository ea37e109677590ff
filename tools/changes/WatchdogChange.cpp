// SPDX-License-Identifier: MIT
//
// Each change reads the timer again afterwards, since the library ignores what the BMC answers.

#include "tools/changes/WatchdogChange.h"

#include <unistd.h>

#include "Talvane.h"
#include "tools/base/Layout.h"
#include "tools/base/Source.h"
#include "tools/records/Watchdog.h"

namespace tool {
namespace {

// The library ignores the answers to these requests. It reports success once they are sent.
constexpr const char* kNotTaken = "the BMC did not take the watchdog's settings";

Json StateJson(const std::optional<Watchdog>& watchdog) {
    return watchdog ? ToJson(*watchdog) : Json();
}

Outcome Unreachable() {
    return {"", Json(), kBmc.whyNotRead()};
}

// The timer as it is now, and why nothing was changed.
Outcome Unchanged(const std::string& problem) {
    const auto now = ReadWatchdog();
    return {now ? ToText(*now) : "", StateJson(now), problem};
}

// The timer after a change that the library answered with `result`. It should now have the expected
// settings.
Outcome Changed(int result, const WatchdogOrder& expected) {
    const auto now = ReadWatchdog();
    const bool taken =
        result == 0 && now && now->action == expected.action && now->timeout == expected.timeout;
    return {now ? ToText(*now) : "", StateJson(now), taken ? "" : kNotTaken};
}

// Whether the timer runs. The library does not report it, but a running timer has less time left a
// second later.
bool CountsDown() {
    const auto before = ReadWatchdog();
    (void)sleep(1);  // result not used: the BMC counts tenths, so a shorter wait is enough
    const auto after = ReadWatchdog();
    return before && after && after->left < before->left;
}

std::string Confirmation(const std::string& what) {
    return what + "; nothing was changed, --yes does it";
}

// The BMC counts in tenths of a second.
int Counted(int milliseconds) {
    constexpr int kTenth = 100;
    return milliseconds / kTenth * kTenth;
}

}  // namespace

Outcome SetWatchdog(const Order& order) {
    if (IsIpmiSupport() == 0) return Unreachable();
    const WatchdogOrder& watchdog = order.watchdog;
    if (watchdog.action != kNoAction && !order.confirmed)
        return Unchanged(Confirmation("this would start a timer that does a " +
                                      ActionText(watchdog.action) + " of this machine after " +
                                      SecondsText(watchdog.timeout)));
    const int result = SetWatchDogTimer(watchdog.action, watchdog.timeout);
    return Changed(result, {watchdog.action, Counted(watchdog.timeout)});
}

Outcome ResetWatchdog(const Order& order) {
    if (IsIpmiSupport() == 0) return Unreachable();
    const auto before = ReadWatchdog();
    if (!before) return Unreachable();
    if (before->timeout == 0) return Unchanged("the watchdog has not been set: nothing to start");
    if (!order.confirmed)
        return Unchanged(Confirmation("this would start the timer over, whose action is " +
                                      ActionText(before->action)));
    const int result = ResetWatchDogTimer();
    return Changed(result, {before->action, before->timeout});
}

Outcome StopWatchdog(const Order&) {
    if (IsIpmiSupport() == 0) return Unreachable();
    constexpr WatchdogOrder kStopOrder = {kNoAction, 180000};  // how the library stops the timer
    const Outcome stopped = Changed(StopWatchDogTimer(), kStopOrder);
    if (!stopped.problem.empty() || !CountsDown()) return stopped;
    return Unchanged("the BMC did not stop the timer: it counts on, though without an action");
}

}  // namespace tool
