// SPDX-License-Identifier: MIT
//
// Sectors of a disk as text: a line each, its number in decimal, a blank and its 512 bytes in
// hexadecimal. Sectors that are not there are zero.
#ifndef TALVANE_SIMULATOR_DESCRIPTION_SECTORTEXT_H
#define TALVANE_SIMULATOR_DESCRIPTION_SECTORTEXT_H

#include <cstdint>
#include <map>
#include <string_view>

#include "simulator/base/Bytes.h"

namespace sim {

// By number. std::runtime_error, which names the line, for text of another kind.
std::map<std::uint64_t, Bytes> ReadSectorText(std::string_view text);

}  // namespace sim

#endif
