// SPDX-License-Identifier: MIT
//
// The short name by which tests of the tool's sensors write "no value".
#ifndef TALVANE_TESTS_TOOLS_NOVALUE_H
#define TALVANE_TESTS_TOOLS_NOVALUE_H

#include <optional>

namespace tool {

inline constexpr std::nullopt_t kNoValue = std::nullopt;

}  // namespace tool

#endif
