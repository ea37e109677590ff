// SPDX-License-Identifier: MIT
//
// Counts how many messages may still pass; each interval adds one.

#include "bridge/LimitedLog.h"

#include <algorithm>

namespace bridge {

bool LimitedLog::Pass(Clock::time_point now, unsigned long& dropped) {
    const std::lock_guard<std::mutex> lock(access_);
    const auto intervals = now > counted_ ? (now - counted_) / interval_ : 0;
    if (intervals >= static_cast<Clock::rep>(burst_ - left_)) {
        left_ = burst_;
        counted_ = std::max(counted_, now);
    } else {
        left_ += static_cast<unsigned>(intervals);
        counted_ += intervals * interval_;
    }
    if (left_ == 0) {
        ++dropped_;
        return false;
    }
    --left_;
    dropped = dropped_;
    dropped_ = 0;
    return true;
}

void LimitedLog::Log(Priority priority, std::string_view message, Clock::time_point now) {
    unsigned long dropped = 0;
    if (priority != Priority::kDebug && !Pass(now, dropped)) return;
    if (dropped != 0)
        bridge::Log(priority, std::to_string(dropped) + " messages like the next were left out");
    bridge::Log(priority, message);
}

void Outcomes::Log(const std::string& what, int error) {
    const int before = last_.exchange(error);
    if (error == 0) return log_.Log(Priority::kDebug, what + ": done");
    log_.Log(error == before ? Priority::kDebug : Priority::kWarning, WithReason(what, error));
}

}  // namespace bridge
