// SPDX-License-Identifier: MIT
//
// The one reservation of the BMC's sensor data repository that all sessions read records under. A
// BMC keeps only the latest: sessions with reservations of their own would cancel one another's.
#ifndef TALVANE_BRIDGE_RESERVATION_H
#define TALVANE_BRIDGE_RESERVATION_H

#include <cstdint>
#include <mutex>
#include <optional>

#include "bridge/Message.h"

namespace bridge {

[[nodiscard]] bool AsksForReservation(const Request& request);

class Reservation {
public:
    // Asks `bmc` for a reservation unless there is one. A BMC that grants none is read with 0.
    // Returns 0 or an errno.
    [[nodiscard]] int Get(Controller& bmc, Deadline deadline, std::uint16_t& id);

    // Someone else has reserved the repository since `id` was granted.
    void Cancelled(std::uint16_t id);

    // A caller has asked for a reservation itself, and got it with this response. It has cancelled
    // the one before; asking for another would cancel that of the caller.
    void GrantedToCaller(const Response& response);

private:
    [[nodiscard]] std::optional<std::uint16_t> Known();
    void Keep(std::uint16_t id);

    std::timed_mutex asking_;  // held while the BMC is asked
    std::mutex access_;        // to what follows, and held for that only
    std::optional<std::uint16_t> id_;
};

}  // namespace bridge

#endif
