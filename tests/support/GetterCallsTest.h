// SPDX-License-Identifier: MIT
//
// Fixture of programs that put getters of their own in front of the library's: the calls of these
// getters while a command fills a record.
#ifndef TALVANE_TESTS_SUPPORT_GETTERCALLSTEST_H
#define TALVANE_TESTS_SUPPORT_GETTERCALLSTEST_H

#include <string>
#include <vector>

#include "SmBios/SmBios.h"
#include "support/InterfaceTest.h"

// The program's getters add to the first, and say by the second where in the record they write.
inline std::vector<std::string> calls;
inline const char* record = nullptr;  // being filled

class GetterCallsTest : public InterfaceTest {
protected:
    // The record after the command, of which the program's getters write only what they answer;
    // `calls` then holds what the command asked for.
    RecordImage Answer(unsigned long command, std::size_t size) {
        table.Add(SmBios::TYPE_OEM_STRINGS, 1, 4);
        Place();
        calls.clear();
        RecordImage image(size);
        record = static_cast<const char*>(image.Data());
        EXPECT_EQ(Get(command, image), 0);
        return image;
    }
};

#endif
