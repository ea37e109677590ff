// SPDX-License-Identifier: MIT
//
// The signals that end the bridge, as a descriptor.
#ifndef TALVANE_BRIDGE_STOPSIGNALS_H
#define TALVANE_BRIDGE_STOPSIGNALS_H

#include <csignal>

namespace bridge {

// While it exists, SIGTERM, SIGINT and SIGHUP interrupt neither the thread that has made it nor the
// threads that this one starts.
class StopSignals {
public:
    // Throws std::system_error when the process can have no more descriptors.
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    // Readable when one of them has come.
    [[nodiscard]] int Descriptor() const { return descriptor_; }

private:
    sigset_t before_;
    int descriptor_;
};

}  // namespace bridge

#endif
