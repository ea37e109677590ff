// SPDX-License-Identifier: MIT
//
// Which commands to a BMC only read.
#ifndef TALVANE_TRANSPORT_READINGCOMMANDS_H
#define TALVANE_TRANSPORT_READINGCOMMANDS_H

#include <cstdint>

namespace transport {

// Whether the command is known to change nothing that outlives it. A reservation does not count:
// the BMC drops it by itself.
bool OnlyReads(std::uint8_t netFn, std::uint8_t command);

}  // namespace transport

#endif
