// SPDX-License-Identifier: MIT
//
// A flag that says "this function is in progress", so that a nested call (from a signal handler or
// a callback) can be refused. A plain integer on purpose: it guards one thread against itself and
// is not a lock.
#ifndef TALVANE_INTERFACE_REENTRYGUARD_H
#define TALVANE_INTERFACE_REENTRYGUARD_H

namespace talvane {

// Sets the flag, and clears it on every way out, exceptions included.
class ReentryGuard {
public:
    explicit ReentryGuard(int& inProgress) : flag_(&inProgress) { *flag_ = 1; }
    ~ReentryGuard() {
        if (flag_ != nullptr) *flag_ = 0;
    }
    ReentryGuard(const ReentryGuard&) = delete;
    ReentryGuard& operator=(const ReentryGuard&) = delete;

    // For the ways out that must leave the flag set.
    void LeaveSet() { flag_ = nullptr; }

private:
    int* flag_;
};

}  // namespace talvane

#endif
