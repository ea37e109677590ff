// SPDX-License-Identifier: MIT
//
// An area that cannot be read has its reason already, and so have disks that cannot be opened.

#include "tools/base/SourceProblem.h"

namespace tool {

std::optional<SourceProblem> AreaProblem(const Source& source, const std::vector<Way>& ways) {
    for (const Way& way : ways)
        if (way.area == source.area && !way.problem.empty())
            return SourceProblem{way.from, way.problem};
    return std::nullopt;
}

SourceProblem ProblemOf(const Source& source, const std::vector<Way>& ways) {
    if (auto problem = AreaProblem(source, ways)) return *problem;
    if (&source == &kDisks)
        for (const Way& way : ways)
            if (!way.whyUnopened.empty()) return {way.unopened, way.whyUnopened};
    return {source.name, source.whyNotRead()};
}

}  // namespace tool
