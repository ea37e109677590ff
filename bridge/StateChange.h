// SPDX-License-Identifier: MIT
//
// Which requests are worth a line in the journal with the name of who sent them.
#ifndef TALVANE_BRIDGE_STATECHANGE_H
#define TALVANE_BRIDGE_STATECHANGE_H

#include <cstdint>

namespace bridge {

// Whether the command may change a setting or the state of the BMC or of the machine. True for
// every command that is not known to read only, those of manufacturers among them.
[[nodiscard]] bool MayChangeState(std::uint8_t netFn, std::uint8_t command);

}  // namespace bridge

#endif
