// SPDX-License-Identifier: MIT
//
// The status register of a PCI function in words.
#ifndef TALVANE_PCI_STATUSTEXT_H
#define TALVANE_PCI_STATUSTEXT_H

#include <cstddef>

namespace talvane {

// Room for all texts at once, terminator included.
constexpr std::size_t kStatusTextSize = 256;

// Appends one text per set bit and one for the timing to the NUL-terminated `text`. Each ends in a
// semicolon. REQUIRES: `text` is empty and has room for kStatusTextSize bytes.
void AppendStatusTexts(unsigned short status, char* text);

}  // namespace talvane

#endif
