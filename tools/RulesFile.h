// SPDX-License-Identifier: MIT
//
// The file of --rules.
#ifndef TALVANE_TOOLS_RULESFILE_H
#define TALVANE_TOOLS_RULESFILE_H

#include <filesystem>

#include "tools/sensors/Rules.h"

namespace tool {

// The rules of a file; none for an empty path. Throws std::runtime_error, which says which file is
// wrong and why.
Rules RulesIn(const std::filesystem::path& file);

}  // namespace tool

#endif
