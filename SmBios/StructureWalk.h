// SPDX-License-Identifier: MIT
//
// The walk over the structure table (SMBIOS 6.1): header and formatted area, string set, and then
// the next structure.
#ifndef TALVANE_SMBIOS_STRUCTUREWALK_H
#define TALVANE_SMBIOS_STRUCTUREWALK_H

#include <memory>

#include "SmBios/BiosDataItem.h"
#include "base/Bytes.h"

namespace talvane {

// The two zero bytes that end a string set.
constexpr std::size_t kEndOfStringSet = 2;

// Zero bytes after the copy of the table. A damaged structure that starts on the table's last bytes
// finds its header, the longest formatted area and the end of its string set there, so no walk
// leaves the copy.
constexpr std::size_t kZeroBytesAfterTable = 255 + kEndOfStringSet;

[[nodiscard]] HEADER HeaderOf(const unsigned char* structure);

// The formatted area, as long as the header says.
[[nodiscard]] ByteView FormattedAreaOf(const unsigned char* structure);

// The first of the two zero bytes that end the structure. Relies on the zero bytes after the table.
[[nodiscard]] unsigned char* EndOfStringSet(unsigned char* structure);

// Visits the structures of one type in the order of the table, at most 255: getters number them
// with a byte.
class StructureWalk {
public:
    // Borrows the table, which kZeroBytesAfterTable zero bytes follow. `count` is the number of
    // structures that the entry point states. Kept: an end-of-table structure does not end a walk;
    // the count and the table's length do.
    StructureWalk(unsigned char* table, std::size_t length, unsigned count, unsigned char type);

    // The next structure of the type, or null.
    [[nodiscard]] unsigned char* Next();

private:
    unsigned char* position_;
    const unsigned char* tableEnd_;
    unsigned unvisited_;
    int undelivered_;
    unsigned char wantedType_;
};

// How many structures are left in a walk, counted up to `limit`.
[[nodiscard]] int CountUpTo(int limit, StructureWalk walk);

// The next structure of the walk with this handle, or null.
[[nodiscard]] std::unique_ptr<BiosDataItem> ItemWithHandle(unsigned handle, StructureWalk walk);

}  // namespace talvane

#endif
