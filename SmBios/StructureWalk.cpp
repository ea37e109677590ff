// SPDX-License-Identifier: MIT
//
// The steps of the walk. The build optimises this file for speed, because of the loop in
// EndOfStringSet.

#include "SmBios/StructureWalk.h"

#include <new>

namespace talvane {
namespace {

// Offsets in the header of a structure (SMBIOS 6.1.2).
constexpr std::size_t kHeaderType = 0;
constexpr std::size_t kHeaderLength = 1;
constexpr std::size_t kHeaderHandle = 2;

constexpr int kMaxOfAType = 255;

}  // namespace

HEADER HeaderOf(const unsigned char* structure) {
    const ByteView bytes(structure, sizeof(HEADER));
    return {bytes[kHeaderType], bytes[kHeaderLength], Le16(bytes, kHeaderHandle)};
}

ByteView FormattedAreaOf(const unsigned char* structure) {
    return ByteView(structure, structure[kHeaderLength]);
}

unsigned char* EndOfStringSet(unsigned char* structure) {
    unsigned char* at = structure + structure[kHeaderLength];
    // A byte that is not zero cannot end a pair, so most of a text is passed in steps of two.
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
    : position_(table),
      tableEnd_(table + length),
      unvisited_(count),
      undelivered_(kMaxOfAType),
      wantedType_(type) {}

unsigned char* StructureWalk::Next() {
    while (unvisited_ != 0 && undelivered_ != 0 && position_ < tableEnd_) {
        unsigned char* structure = position_;
        --unvisited_;
        position_ = EndOfStringSet(structure) + kEndOfStringSet;
        if (structure[kHeaderType] != wantedType_) continue;
        --undelivered_;
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

}  // namespace talvane
