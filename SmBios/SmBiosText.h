// SPDX-License-Identifier: MIT
//
// What the getters share: they take a structure's bytes and strings and write text answers.
#ifndef TALVANE_SMBIOS_SMBIOSTEXT_H
#define TALVANE_SMBIOS_SMBIOSTEXT_H

#include <memory>

#include "SmBios/BiosDataItem.h"
#include "base/Bytes.h"

namespace talvane {

// The number of a structure's first string.
constexpr unsigned char kFirstString = 1;

// The formatted area of an item; empty for a null item.
[[nodiscard]] ByteView FormattedArea(const std::unique_ptr<BiosDataItem>& item);

// The string whose number is the byte at `offset`, or null when the item or the string is missing.
[[nodiscard]] char* StringAt(const std::unique_ptr<BiosDataItem>& item, std::size_t offset);

// Copies at most size - 1 characters and no terminator. Returns 0, or -1 for a null text.
int CopyText(const char* text, char* buf, unsigned size);

// CopyText of the string whose number is the byte at `offset`.
int CopyStringAt(const std::unique_ptr<BiosDataItem>& item, std::size_t offset, char* buf,
                 unsigned size);

// Writes the number in decimal and then the unit, NUL-terminated.
void WriteNumber(char* buf, int value, const char* unit);

// Writes "Unknown", NUL-terminated, for a value that the structure leaves open. Returns -1.
[[nodiscard]] int WriteUnknown(char* buf);

// Writes, NUL-terminated, that the structure is too short to have the value. Returns -1.
[[nodiscard]] int WriteNotSupplied(char* buf);

}  // namespace talvane

#endif
