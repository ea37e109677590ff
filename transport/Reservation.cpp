// SPDX-License-Identifier: MIT
//
// Asks for the reservation with Reserve SDR Repository (IPMI 2.0, 33.11).

#include "transport/Reservation.h"

#include <cerrno>

#include "transport/IpmiCodes.h"

namespace transport {
namespace {

std::optional<std::uint16_t> GrantedBy(const Response& response) {
    if (response.completion != kDone || response.data.size() < 2) return std::nullopt;
    return static_cast<std::uint16_t>(response.data[0] | response.data[1] << 8);
}

}  // namespace

bool AsksForReservation(const Request& request) {
    return request.netFn == kStorage && request.lun == kBmcLun &&
           request.command == kReserveRepository;
}

int Reservation::Get(Controller& bmc, Deadline deadline, std::uint16_t& id) {
    const std::unique_lock<std::timed_mutex> lock(asking_, deadline);
    if (!lock) return ETIMEDOUT;
    std::optional<std::uint16_t> known = Known();
    if (!known) {
        Response response;
        const Request request{kStorage, kBmcLun, kReserveRepository, {}};
        if (const int error = bmc.Exchange(request, deadline, response)) return error;
        known = GrantedBy(response).value_or(0);
        Keep(*known);
    }
    id = *known;
    return 0;
}

void Reservation::Cancelled(std::uint16_t id) {
    const std::lock_guard<std::mutex> lock(access_);
    if (id_ == id) id_.reset();  // otherwise another session has reported it before
}

void Reservation::GrantedToCaller(const Response& response) {
    if (const std::optional<std::uint16_t> id = GrantedBy(response)) Keep(*id);
}

std::optional<std::uint16_t> Reservation::Known() {
    const std::lock_guard<std::mutex> lock(access_);
    return id_;
}

void Reservation::Keep(std::uint16_t id) {
    const std::lock_guard<std::mutex> lock(access_);
    id_ = id;
}

}  // namespace transport
