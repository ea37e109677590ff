// SPDX-License-Identifier: MIT
//
// Reads sectors of a disk from text. Each line holds one sector: its number in decimal, a blank,
// and its 512 bytes in hexadecimal. Sectors without a line are zero.
#ifndef TALVANE_SIMULATOR_DESCRIPTION_SECTORTEXT_H
#define TALVANE_SIMULATOR_DESCRIPTION_SECTORTEXT_H

#include <cstdint>
#include <map>
#include <string_view>

#include "simulator/base/Bytes.h"

namespace sim {

// The sectors by number; none for an empty text. std::runtime_error, which names the line, for any
// other text.
std::map<std::uint64_t, Bytes> ReadSectorText(std::string_view text);

}  // namespace sim

#endif
