// SPDX-License-Identifier: MIT
//
// Why a source was not read, where its area is read through the kernel's own interfaces, too.
#ifndef TALVANE_TOOLS_BASE_SOURCEPROBLEM_H
#define TALVANE_TOOLS_BASE_SOURCEPROBLEM_H

#include <optional>
#include <string>
#include <vector>

#include "tools/base/Source.h"
#include "tools/base/Way.h"

namespace tool {

struct SourceProblem {
    std::string source;  // the file or folder that was to be read
    std::string message;
};

// What stands in the way of the source's whole area; nothing where nothing is known to do so.
std::optional<SourceProblem> AreaProblem(const Source& source, const std::vector<Way>& ways);

// The same, or else what the source itself says. Asked only after it failed.
SourceProblem ProblemOf(const Source& source, const std::vector<Way>& ways);

}  // namespace tool

#endif
