// SPDX-License-Identifier: MIT
//
// Reserve SDR Repository (IPMI 2.0, 33.11).

#include "Reservation.h"

#include <cerrno>

namespace bridge {
namespace {

constexpr std::uint8_t kStorage = 0x0A;  // network function
constexpr std::uint8_t kReserveRepository = 0x22;
constexpr std::uint8_t kDone = 0x00;

}  // namespace

int Reservation::Get(Controller& bmc, Deadline deadline, std::uint16_t& id) {
    const std::unique_lock<std::timed_mutex> lock(asking_, deadline);
    if (!lock) return ETIMEDOUT;
    if (!id_) {
        Response response;
        const Request request{kStorage, 0, kReserveRepository, {}};
        if (const int error = bmc.Exchange(request, deadline, response)) return error;
        const bool granted = response.completion == kDone && response.data.size() >= 2;
        const unsigned low = granted ? response.data[0] : 0;
        const unsigned high = granted ? response.data[1] : 0;
        id_ = static_cast<std::uint16_t>(low + 256U * high);
    }
    id = *id_;
    return 0;
}

void Reservation::Cancelled(std::uint16_t id) {
    const std::lock_guard<std::timed_mutex> lock(asking_);
    if (id_ == id) id_.reset();  // otherwise another session has found out before
}

}  // namespace bridge
