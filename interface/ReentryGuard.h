// SPDX-License-Identifier: MIT
//
// A flag that says "this function is in progress", so that a nested call (from a signal handler, a
// callback) can be refused. A plain integer on purpose: it guards one thread against itself and is
// no lock.
#ifndef TALVANE_INTERFACE_REENTRYGUARD_H
#define TALVANE_INTERFACE_REENTRYGUARD_H

// Sets the flag and clears it again on every way out, exceptions included.
class ReentryGuard {
public:
    explicit ReentryGuard(int& inProgress) : flag(&inProgress) { *flag = 1; }
    ~ReentryGuard() {
        if (flag != nullptr) *flag = 0;
    }
    ReentryGuard(const ReentryGuard&) = delete;
    ReentryGuard& operator=(const ReentryGuard&) = delete;

    // For the ways out that are meant to leave the flag set.
    void LeaveSet() { flag = nullptr; }

private:
    int* flag;
};

#endif
