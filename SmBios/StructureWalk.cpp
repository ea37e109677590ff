// SPDX-License-Identifier: MIT

#include "SmBios/StructureWalk.h"

#include <new>

using namespace talvane;

namespace {

// Header fields (SMBIOS 6.1.2).
constexpr std::size_t kType = 0;
constexpr std::size_t kLength = 1;
constexpr std::size_t kHandle = 2;

constexpr int kMostOfAType = 255;

}  // namespace

HEADER HeaderOf(const unsigned char* structure) {
    const ByteView bytes(structure, sizeof(HEADER));
    return {bytes[kType], bytes[kLength], Le16(bytes, kHandle)};
}

ByteView FormattedAreaOf(const unsigned char* structure) {
    return ByteView(structure, structure[kLength]);
}

unsigned char* EndOfStringSet(unsigned char* structure) {
    unsigned char* at = structure + structure[kLength];
    // A byte that is not zero ends no pair, so most of a text is passed in steps of two.
    for (;;) {
        if (at[1] != 0)
            at += 2;
        else if (at[0] != 0)
            ++at;
        else
            return at;
    }
}

StructureWalk::StructureWalk(unsigned char* table, std::size_t length, unsigned count,
                             unsigned char type)
    : position(table),
      tableEnd(table + length),
      unvisited(count),
      undelivered(kMostOfAType),
      wanted(type) {}

unsigned char* StructureWalk::Next() {
    while (unvisited != 0 && undelivered != 0 && position < tableEnd) {
        unsigned char* structure = position;
        --unvisited;
        position = EndOfStringSet(structure) + 2;
        if (structure[kType] != wanted) continue;
        --undelivered;
        return structure;
    }
    return nullptr;
}

int CountUpTo(int limit, StructureWalk walk) {
    int count = 0;
    while (count < limit && walk.Next() != nullptr) ++count;
    return count;
}

std::unique_ptr<BiosDataItem> ItemWithHandle(unsigned handle, StructureWalk walk) {
    while (unsigned char* structure = walk.Next())
        if (HeaderOf(structure).handle == handle)
            return std::unique_ptr<BiosDataItem>(new (std::nothrow) BiosDataItem(structure));
    return nullptr;
}
