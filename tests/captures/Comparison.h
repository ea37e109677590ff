// SPDX-License-Identifier: MIT
//
// The comparison with dmidecode, which this folder holds: the library's answers for a captured
// machine against those expected from dmidecode's text. It says what is equal, what differs by
// which rule (Rules.h) and what nothing explains.
#ifndef TALVANE_TESTS_COMPARISON_H
#define TALVANE_TESTS_COMPARISON_H

#include <map>
#include <string>
#include <vector>

#include "Answers.h"
#include "ExpectedField.h"

namespace captures {

struct Comparison {
    unsigned fields = 0;
    unsigned equal = 0;                    // to dmidecode's meaning
    std::map<Rule, unsigned> byRule;       // a field that took two rules counts under both
    std::vector<std::string> unexplained;  // one sentence each

    unsigned Ruled() const { return fields - equal - static_cast<unsigned>(unexplained.size()); }
};

// Answers without an expectation must be unwritten ("" or "0") and then are not counted, or else
// have the rule that leaves them open.
Comparison Compare(const ExpectedFields& expected, const Answers& answers);

}  // namespace captures

#endif
