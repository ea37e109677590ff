// SPDX-License-Identifier: MIT
//
// The expected names of codes: the known ones by row, one fallback for all others.
#ifndef TALVANE_TESTS_SUPPORT_CODETEXTS_H
#define TALVANE_TESTS_SUPPORT_CODETEXTS_H

#include <map>
#include <string>

struct CodeTexts {
    std::map<int, std::string> known;
    std::string fallback;

    const std::string& Of(int code) const {
        const auto row = known.find(code);
        return row == known.end() ? fallback : row->second;
    }
};

#endif
