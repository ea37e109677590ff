// SPDX-License-Identifier: MIT
//
// The requests for the inventory of the BMC (IPMI 2.0, 34.2).
#ifndef TALVANE_TOOLS_CAPTURE_FRUREQUESTS_H
#define TALVANE_TOOLS_CAPTURE_FRUREQUESTS_H

#include <functional>

#include "tools/capture/MachineCapture.h"

namespace tool {

inline constexpr const char* kReadFruData = "Read FRU Data";

// Sends a Read FRU Data with this data: device, offset in two bytes, count.
using ReadFru = std::function<BmcExchange(const CapturedBytes& data)>;

// The inventory, in pieces that every BMC gives, as far as it can be read. `info` is the answer to
// Get FRU Inventory Area Info, none when there is no inventory.
CapturedBytes ReadFruImage(const CapturedBytes& info, const ReadFru& read);

// What the library sends: the header, and each of three areas in one piece.
std::vector<BmcExchange> FruRequestsOfLibrary(const ReadFru& read);

// What a simulated BMC with this inventory answers to a Read FRU Data with this data.
CapturedBytes AnswerFromFruImage(const CapturedBytes& image, const CapturedBytes& data);

}  // namespace tool

#endif
