// SPDX-License-Identifier: MIT
//
// The walk over the structure table (SMBIOS 6.1): header and formatted area, string set, next.
#ifndef TALVANE_SMBIOS_STRUCTUREWALK_H
#define TALVANE_SMBIOS_STRUCTUREWALK_H

#include <memory>

#include "SmBios/BiosDataItem.h"
#include "base/Bytes.h"

// Zero bytes behind the copy of the table. A damaged structure that starts on the table's last
// bytes finds its header, the longest formatted area and the two bytes that end its string set
// there, so no walk leaves the copy.
constexpr std::size_t kZeroBytesBehindTable = 255 + 2;

[[nodiscard]] HEADER HeaderOf(const unsigned char* structure);

// The formatted area, as long as the header says.
[[nodiscard]] talvane::ByteView FormattedAreaOf(const unsigned char* structure);

// The first of the two zero bytes that end the structure. Relies on the zero bytes behind a table.
[[nodiscard]] unsigned char* EndOfStringSet(unsigned char* structure);

// Visits the structures of one type in table order, 255 at most: getters number them with a byte.
class StructureWalk {
public:
    // Borrows the table, which kZeroBytesBehindTable zero bytes follow. `count` is the number of
    // structures that the entry point states. Kept: the end-of-table structure does not end a walk,
    // the count and the table's length do.
    StructureWalk(unsigned char* table, std::size_t length, unsigned count, unsigned char type);

    // The next structure of the type, or null.
    [[nodiscard]] unsigned char* Next();

private:
    unsigned char* position;
    const unsigned char* tableEnd;
    unsigned unvisited;
    int undelivered;
    unsigned char wanted;
};

// The structures that are left in a walk, counted no further than `limit`.
[[nodiscard]] int CountUpTo(int limit, StructureWalk walk);

// The next structure of the walk with this handle; null when there is none.
[[nodiscard]] std::unique_ptr<BiosDataItem> ItemWithHandle(unsigned handle, StructureWalk walk);

#endif
