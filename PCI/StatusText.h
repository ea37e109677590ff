// SPDX-License-Identifier: MIT
//
// What the status register of a PCI function says, in words.
#ifndef TALVANE_PCI_STATUSTEXT_H
#define TALVANE_PCI_STATUSTEXT_H

#include <cstddef>

// Room for every text at once, terminator included.
constexpr std::size_t kStatusTextSize = 256;

// Appends one text per set bit, each ended by a semicolon, to the terminated `text`.
// REQUIRES: `text` is an empty text of kStatusTextSize bytes.
void AppendStatusTexts(unsigned short status, char* text);

#endif
