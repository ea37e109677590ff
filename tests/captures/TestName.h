// SPDX-License-Identifier: MIT
//
// Names of machines as names of tests, where only letters, digits and underscores may stand.
#ifndef TALVANE_TESTS_TESTNAME_H
#define TALVANE_TESTS_TESTNAME_H

#include <string>

namespace captures {

inline std::string TestName(std::string machine) {
    for (char& c : machine)
        if (c == '-' || c == '.') c = '_';
    return machine;
}

}  // namespace captures

#endif
