// SPDX-License-Identifier: MIT
//
// What one open file of /dev/ipmi does: it turns its caller's records into requests to the BMC, and
// what becomes of them into the bytes that the caller gets back. One request at a time; waiting for
// that is part of the request's time-out.
#ifndef TALVANE_BRIDGE_SESSION_H
#define TALVANE_BRIDGE_SESSION_H

#include <cstdint>
#include <mutex>
#include <span>

#include "bridge/Message.h"
#include "bridge/Reservation.h"
#include "bridge/WholeReads.h"

namespace bridge {

class Session {
public:
    Session(Controller& bmc, Reservation& reservation) : reads_(bmc, reservation) {}

    // Carries out the request of a record (32 bytes) whose data follow it in `call`. Returns 0 and
    // the record with its result, followed by the response, in `answer`; or an errno.
    [[nodiscard]] int Serve(std::span<const std::uint8_t> call, Bytes& answer);

    [[nodiscard]] unsigned long Served() const { return served_; }

private:
    std::timed_mutex oneAtATime_;
    WholeReads reads_;
    unsigned long served_ = 0;
};

}  // namespace bridge

#endif
