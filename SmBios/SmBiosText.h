// SPDX-License-Identifier: MIT
//
// What the getters share: taking a structure's bytes and strings, and writing text answers.
#ifndef TALVANE_SMBIOS_SMBIOSTEXT_H
#define TALVANE_SMBIOS_SMBIOSTEXT_H

#include <memory>

#include "SmBios/BiosDataItem.h"
#include "base/Bytes.h"

// The formatted area of an item; empty for a null item.
[[nodiscard]] talvane::ByteView FormattedArea(const std::unique_ptr<BiosDataItem>& item);

// The string whose number stands at `offset`, or null when the item or the string is missing.
[[nodiscard]] char* StringAt(const std::unique_ptr<BiosDataItem>& item, std::size_t offset);

// Copies at most size - 1 characters and no terminator. Returns 0, or -1 for a null text.
int CopyText(const char* text, char* buf, unsigned size);

// CopyText of the string whose number stands at `offset`.
int CopyStringAt(const std::unique_ptr<BiosDataItem>& item, std::size_t offset, char* buf,
                 unsigned size);

// Writes the number and the unit behind it, terminated.
void WriteNumber(char* buf, int value, const char* unit);

#endif
