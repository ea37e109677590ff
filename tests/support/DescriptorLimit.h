// SPDX-License-Identifier: MIT
//
// A process that runs out of descriptors.
#ifndef TALVANE_TESTS_SUPPORT_DESCRIPTORLIMIT_H
#define TALVANE_TESTS_SUPPORT_DESCRIPTORLIMIT_H

#include <sys/resource.h>
#include <unistd.h>

// Whether the checks of UndefinedBehaviorSanitizer are built in. They look at an exception's memory
// through a pipe, and end the program when it can have none.
#ifdef __SANITIZE_ADDRESS__
inline constexpr bool kChecksNeedDescriptors = true;
#else
inline constexpr bool kChecksNeedDescriptors = false;
#endif

// While it exists, the process can open this many files more, 0 or 1. Later opens fail with EMFILE.
class DescriptorLimit {
public:
    explicit DescriptorLimit(rlim_t more) {
        (void)getrlimit(RLIMIT_NOFILE, &before_);
        const int next = dup(0);
        (void)close(next);
        const rlimit limit{static_cast<rlim_t>(next) + more, before_.rlim_max};
        (void)setrlimit(RLIMIT_NOFILE, &limit);
    }
    ~DescriptorLimit() { (void)setrlimit(RLIMIT_NOFILE, &before_); }
    DescriptorLimit(const DescriptorLimit&) = delete;
    DescriptorLimit& operator=(const DescriptorLimit&) = delete;

private:
    rlimit before_{};
};

#endif
