// SPDX-License-Identifier: MIT
//
// Long reads from BMCs that refuse them. Callers ask for a whole sensor data record or FRU area in
// one request; the buffers of many BMCs are too small for it, and they answer completion code 0xCA.
// The same bytes are then read in pieces and handed over as one response.
#ifndef TALVANE_BRIDGE_WHOLEREADS_H
#define TALVANE_BRIDGE_WHOLEREADS_H

#include <cstdint>
#include <optional>

#include "Message.h"

namespace bridge {

class WholeReads : public Controller {
public:
    explicit WholeReads(Controller& bmc) : bmc_(bmc) {}

    // Answers a long read as the BMC would if its buffers had room for it; everything else passes.
    [[nodiscard]] int Exchange(const Request& request, Deadline deadline,
                               Response& response) override;

private:
    // Reads a record in pieces, again when the reservation is cancelled.
    [[nodiscard]] int ReadRecord(const Request& request, Deadline deadline, Response& response);

    // Sees to it that there is a reservation; a BMC that grants none is read without.
    [[nodiscard]] int Reserve(Deadline deadline, Response& response);

    Controller& bmc_;
    bool recordsRefused_ = false;  // whole ones: asking again would be in vain
    bool inventoryRefused_ = false;
    std::optional<std::uint16_t> reservation_;
};

}  // namespace bridge

#endif
