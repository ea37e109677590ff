// SPDX-License-Identifier: MIT
//
// The name in a sensor data record (IPMI 2.0, 43.15).
#ifndef TALVANE_TOOLS_SENSORS_IDSTRING_H
#define TALVANE_TOOLS_SENSORS_IDSTRING_H

#include <string>

#include "base/Bytes.h"

namespace tool {

// The text whose type/length byte is at `offset`, decoded from its encoding, up to a NUL and
// without surrounding blanks.
std::string IdString(talvane::ByteView record, std::size_t offset);

}  // namespace tool

#endif
