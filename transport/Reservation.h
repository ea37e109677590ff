// SPDX-License-Identifier: MIT
//
// The reservation of the BMC's sensor data repository that all sessions share when they read
// records. A BMC keeps only the latest reservation, so sessions with their own would cancel each
// other's.
#ifndef TALVANE_TRANSPORT_RESERVATION_H
#define TALVANE_TRANSPORT_RESERVATION_H

#include <cstdint>
#include <mutex>
#include <optional>

#include "transport/Message.h"

namespace transport {

// Whether the request is Reserve SDR Repository.
[[nodiscard]] bool AsksForReservation(const Request& request);

class Reservation {
public:
    // Asks `bmc` for a reservation unless there is one. `id` is 0 for a BMC that grants none.
    // Returns 0 or an errno.
    [[nodiscard]] int Get(Controller& bmc, Deadline deadline, std::uint16_t& id);

    // To be called when someone else has reserved the repository since `id` was granted.
    void Cancelled(std::uint16_t id);

    // To be called when a caller has asked for a reservation and got this response. Its reservation
    // replaces the one before. Asking for another would cancel the caller's.
    void GrantedToCaller(const Response& response);

private:
    [[nodiscard]] std::optional<std::uint16_t> Known();
    void Keep(std::uint16_t id);

    std::timed_mutex asking_;  // held while the BMC is asked
    std::mutex access_;        // to id_, held for single accesses only
    std::optional<std::uint16_t> id_;
};

}  // namespace transport

#endif
