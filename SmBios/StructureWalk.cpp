// SPDX-License-Identifier: MIT
//
// The steps of the walk. The build optimises this file for speed, because of the loop in
// PassStringSet.

#include "SmBios/StructureWalk.h"

#include <new>

namespace talvane {
namespace {

// Offsets in the header of a structure (SMBIOS 6.1.2).
constexpr std::size_t kHeaderType = 0;
constexpr std::size_t kHeaderLength = 1;
constexpr std::size_t kHeaderHandle = 2;

constexpr int kMaxOfAType = 255;

// The first of the two zero bytes at or after `at`. A byte that is not zero cannot end a pair, so
// most of a text is passed in steps of two, four of them in a round.
[[gnu::always_inline]] inline unsigned char* PassStringSet(unsigned char* at) {
    for (;;) {
        while (at[1] != 0) {
            if (at[3] == 0) {
                at += 2;
                break;
            }
            if (at[5] == 0) {
                at += 4;
                break;
            }
            if (at[7] == 0) {
                at += 6;
                break;
            }
            at += 8;
        }
        if (at[0] == 0) return at;
        ++at;
    }
}

}  // namespace

HEADER HeaderOf(const unsigned char* structure) {
    const ByteView bytes(structure, sizeof(HEADER));
    return {bytes[kHeaderType], bytes[kHeaderLength], Le16(bytes, kHeaderHandle)};
}

ByteView FormattedAreaOf(const unsigned char* structure) {
    return ByteView(structure, structure[kHeaderLength]);
}

unsigned char* EndOfStringSet(unsigned char* structure) {
    return PassStringSet(structure + structure[kHeaderLength]);
}

StructureWalk::StructureWalk(unsigned char* table, std::size_t length, unsigned count,
                             unsigned char type)
    : position_(table),
      tableEnd_(table + length),
      unvisited_(count),
      undelivered_(kMaxOfAType),
      wantedType_(type) {}

unsigned char* StructureWalk::Next() {
    if (undelivered_ == 0) return nullptr;
    unsigned char* next = position_;
    unsigned unvisited = unvisited_;
    while (unvisited != 0 && next < tableEnd_) {
        unsigned char* const structure = next;
        --unvisited;
        next = PassStringSet(structure + structure[kHeaderLength]) + kEndOfStringSet;
        if (structure[kHeaderType] != wantedType_) continue;
        --undelivered_;
        unvisited_ = unvisited;
        position_ = next;
        return structure;
    }
    unvisited_ = 0;
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
