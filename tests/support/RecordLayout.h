// SPDX-License-Identifier: MIT
//
// The layout of a record, from the widths of its fields in order: no holes, and the stated size.
#ifndef TALVANE_TESTS_SUPPORT_RECORDLAYOUT_H
#define TALVANE_TESTS_SUPPORT_RECORDLAYOUT_H

#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

struct Field {
    std::size_t offset;
    std::size_t width;
};

inline void ExpectLayout(const char* record, std::size_t size, const std::vector<Field>& fields,
                         std::size_t expectedSize) {
    std::size_t offset = 0;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        EXPECT_EQ(fields[i].offset, offset) << record << ", field " << i;
        offset += fields[i].width;
    }
    EXPECT_EQ(offset, expectedSize) << record;
    EXPECT_EQ(size, expectedSize) << record;
}

#endif
