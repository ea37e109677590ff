// SPDX-License-Identifier: MIT
//
// A caller's record with bytes after it, all of them marked before a call, so that a test sees what
// was written.
#ifndef TALVANE_TESTS_SUPPORT_GUARDEDRECORD_H
#define TALVANE_TESTS_SUPPORT_GUARDEDRECORD_H

#include <cstddef>
#include <cstring>

template <typename Record>
struct GuardedRecord {
    Record info;
    unsigned char guard[64];
};

template <typename Record>
GuardedRecord<Record> Marked() {
    constexpr unsigned char kMark = 0xA5;
    GuardedRecord<Record> record;
    std::memset(&record, kMark, sizeof record);
    return record;
}

// Whether a text ends within its field.
inline bool Terminated(const char* field, std::size_t size) {
    return std::memchr(field, '\0', size) != nullptr;
}

#endif
