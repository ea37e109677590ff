// SPDX-License-Identifier: MIT
//
// Bytes that a part of the simulated server owns: a table, a record, a request's data.
#ifndef TALVANE_SIMULATOR_BASE_BYTES_H
#define TALVANE_SIMULATOR_BASE_BYTES_H

#include <cstdint>
#include <vector>

namespace sim {

using Bytes = std::vector<std::uint8_t>;

}  // namespace sim

#endif
