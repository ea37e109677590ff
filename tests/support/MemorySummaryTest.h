// SPDX-License-Identifier: MIT
//
// Fixture of the tests of the memory summary.
#ifndef TALVANE_TESTS_SUPPORT_MEMORYSUMMARYTEST_H
#define TALVANE_TESTS_SUPPORT_MEMORYSUMMARYTEST_H

#include <cstring>

#include "support/MemoryTest.h"

class MemorySummaryTest : public MemoryTest {
protected:
    // The summary of the table; the record is full of marks before.
    int Summarise() {
        Open();
        std::memset(&info, 0xA5, sizeof info);
        return reader->GetMemoryInformation(&info);
    }

    void ExpectZeroFrom(int bank) {
        static const BankInfo zero{};
        for (int i = bank; i < 16; ++i)
            EXPECT_EQ(std::memcmp(&info.bank[i], &zero, sizeof zero), 0) << i;
    }

    LocalMemInfo info;
};

#endif
