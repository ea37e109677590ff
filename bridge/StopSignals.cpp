// SPDX-License-Identifier: MIT
//
// Blocked signals, which a descriptor of the kernel hands out.

#include "bridge/StopSignals.h"

#include <pthread.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace bridge {

StopSignals::StopSignals() {
    sigset_t signals;
    (void)sigemptyset(&signals);
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) (void)sigaddset(&signals, number);
    descriptor_ = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
    if (descriptor_ < 0) throw std::system_error(errno, std::generic_category(), "signalfd");
    (void)pthread_sigmask(SIG_BLOCK, &signals, &before_);  // result not used: it cannot fail
}

// Takes those that have come, so that none ends the process when they are let through again.
StopSignals::~StopSignals() {
    signalfd_siginfo signal;
    while (read(descriptor_, &signal, sizeof(signal)) > 0) continue;
    (void)pthread_sigmask(SIG_SETMASK, &before_, nullptr);  // result not used, as above
    (void)close(descriptor_);                               // result not used: nothing is buffered
}

}  // namespace bridge
