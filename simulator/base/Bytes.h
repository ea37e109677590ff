// SPDX-License-Identifier: MIT
//
// A sequence of bytes that its holder owns: a table, a record, the data of a request.
#ifndef TALVANE_SIMULATOR_BASE_BYTES_H
#define TALVANE_SIMULATOR_BASE_BYTES_H

#include <cstdint>
#include <vector>

namespace sim {

using Bytes = std::vector<std::uint8_t>;

}  // namespace sim

#endif
