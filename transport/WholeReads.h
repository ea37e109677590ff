// SPDX-License-Identifier: MIT
//
// Long reads from BMCs that refuse them. Callers ask for a whole sensor data record or FRU area in
// one request. The buffers of many BMCs are too small for it, and they answer completion code 0xCA.
// This class then reads the same bytes in pieces and returns them as one response.
#ifndef TALVANE_TRANSPORT_WHOLEREADS_H
#define TALVANE_TRANSPORT_WHOLEREADS_H

#include "transport/Message.h"
#include "transport/Reservation.h"

namespace transport {

class WholeReads : public Controller {
public:
    WholeReads(Controller& bmc, Reservation& reservation) : bmc_(bmc), reservation_(reservation) {}

    // Answers such a read as the BMC would with larger buffers. All other requests pass unchanged.
    [[nodiscard]] int Exchange(const Request& request, Deadline deadline,
                               Response& response) override;

private:
    [[nodiscard]] int Pass(const Request& request, Deadline deadline, Response& response);

    // Reads a record in pieces. Reads it again when the reservation is cancelled.
    [[nodiscard]] int ReadRecord(const Request& request, Deadline deadline, Response& response);

    Controller& bmc_;
    Reservation& reservation_;
    bool recordsRefused_ = false;  // the BMC has refused a whole record and would again
    bool inventoryRefused_ = false;
};

}  // namespace transport

#endif
