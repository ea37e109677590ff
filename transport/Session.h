// SPDX-License-Identifier: MIT
//
// What one open file of /dev/ipmi does. It turns its caller's records into requests to the BMC, and
// the results into the bytes that the caller gets back. It carries out one request at a time. The
// time-out of a request includes the wait for requests before it.
#ifndef TALVANE_TRANSPORT_SESSION_H
#define TALVANE_TRANSPORT_SESSION_H

#include <cstdint>
#include <mutex>
#include <optional>
#include <span>

#include "transport/Message.h"
#include "transport/Reservation.h"
#include "transport/WholeReads.h"

namespace transport {

class Session {
public:
    Session(Controller& bmc, Reservation& reservation) : reads_(bmc, reservation) {}

    // Carries out the request in `call`: a record of 32 bytes, then the request's data. Returns 0
    // or an errno. On 0 `answer` holds the record with its result, then the response. Waits until
    // `stated`, or as long as the record's time-out when there is none.
    [[nodiscard]] int Serve(std::span<const std::uint8_t> call, Bytes& answer,
                            std::optional<Deadline> stated = std::nullopt);

    // Requests that got an answer.
    [[nodiscard]] unsigned long Served() const { return served_; }

private:
    std::timed_mutex oneAtATime_;
    WholeReads reads_;
    unsigned long served_ = 0;
};

}  // namespace transport

#endif
