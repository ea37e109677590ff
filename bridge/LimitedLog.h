// SPDX-License-Identifier: MIT
//
// Messages that callers can cause at will, limited so that they do not fill the journal. Any thread
// may use these classes.
#ifndef TALVANE_BRIDGE_LIMITEDLOG_H
#define TALVANE_BRIDGE_LIMITEDLOG_H

#include <atomic>
#include <chrono>
#include <mutex>
#include <string>
#include <string_view>

#include "bridge/Log.h"

namespace bridge {

class LimitedLog {
public:
    using Clock = std::chrono::steady_clock;

    // Lets `burst` messages through at once, and one more after each interval. When one gets
    // through after others did not, their number is logged before it. Debug messages are not
    // limited: they are logged only when asked for.
    LimitedLog(unsigned burst, Clock::duration interval)
        : burst_(burst), interval_(interval), left_(burst) {}

    void Log(Priority priority, std::string_view message, Clock::time_point now = Clock::now());

private:
    // Whether a message may pass. `dropped` is how many before it were not let through.
    bool Pass(Clock::time_point now, unsigned long& dropped);

    const unsigned burst_;
    const Clock::duration interval_;
    std::mutex access_;  // to what follows
    unsigned left_;
    Clock::time_point counted_{};  // up to when intervals have been added to `left_`
    unsigned long dropped_ = 0;
};

// The outcomes of something that agents try again and again. The first of several equal failures in
// a row is a warning, the others are debug messages.
class Outcomes {
public:
    explicit Outcomes(LimitedLog& log) : log_(log) {}

    // `error` is an errno, or 0.
    void Log(const std::string& what, int error);

private:
    LimitedLog& log_;
    std::atomic<int> last_ = 0;
};

}  // namespace bridge

#endif
