// SPDX-License-Identifier: MIT
//
// Replaces control characters, in UTF-8 too.

#include "simulator/description/MachineError.h"

#include <cstdio>
#include <string_view>

namespace sim {
namespace {

// C0 and DEL are one byte, C1 are C2 followed by 80 to 9F.
bool IsControl(std::string_view text, std::size_t at) {
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char byte = byteAt(at);
    if (byte < 0x20 || byte == 0x7F) return true;
    return byte == 0xC2 && at + 1 < text.size() && byteAt(at + 1) >= 0x80 && byteAt(at + 1) < 0xA0;
}

std::string WithoutControls(std::string_view text) {
    std::string shown;
    for (std::size_t at = 0; at < text.size(); ++at) {
        char escaped[8];
        std::snprintf(escaped, sizeof escaped, "\\x%02X", static_cast<unsigned char>(text[at]));
        shown += IsControl(text, at) ? escaped : std::string(1, text[at]);
    }
    return shown;
}

}  // namespace

MachineError::MachineError(const std::string& text) : std::runtime_error(WithoutControls(text)) {}

}  // namespace sim
