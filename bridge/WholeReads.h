// SPDX-License-Identifier: MIT
//
// Long reads from BMCs that refuse them. Callers ask for a whole sensor data record or FRU area in
// one request; the buffers of many BMCs are too small for it, and they answer completion code 0xCA.
// The same bytes are then read in pieces and handed over as one response.
#ifndef TALVANE_BRIDGE_WHOLEREADS_H
#define TALVANE_BRIDGE_WHOLEREADS_H

#include "bridge/Message.h"
#include "bridge/Reservation.h"

namespace bridge {

class WholeReads : public Controller {
public:
    WholeReads(Controller& bmc, Reservation& reservation) : bmc_(bmc), reservation_(reservation) {}

    // Answers such a read as the BMC would if its buffers had room for it; everything else passes.
    [[nodiscard]] int Exchange(const Request& request, Deadline deadline,
                               Response& response) override;

private:
    [[nodiscard]] int Pass(const Request& request, Deadline deadline, Response& response);

    // Reads a record in pieces, again when the reservation is cancelled.
    [[nodiscard]] int ReadRecord(const Request& request, Deadline deadline, Response& response);

    Controller& bmc_;
    Reservation& reservation_;
    bool recordsRefused_ = false;  // whole ones: asking again would be in vain
    bool inventoryRefused_ = false;
};

}  // namespace bridge

#endif
