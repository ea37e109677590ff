// SPDX-License-Identifier: MIT
//
// Collects, counts and lists accesses.

#include "simulator/base/AccessLog.h"

#include <algorithm>
#include <ostream>

namespace sim {

void AccessLog::Add(Access access) {
    if (copy_ != nullptr)
        *copy_ << access.Text() << std::endl;  // flushed: the process may end here
    accesses_.push_back(std::move(access));
}

std::size_t AccessLog::Count(std::string_view call) const {
    return static_cast<std::size_t>(
        std::count_if(accesses_.begin(), accesses_.end(),
                      [call](const Access& access) { return access.call == call; }));
}

std::vector<std::string> AccessLog::Lines() const {
    std::vector<std::string> texts;
    for (const Access& access : accesses_) texts.push_back(access.Text());
    return texts;
}

}  // namespace sim
