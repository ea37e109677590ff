// SPDX-License-Identifier: MIT
//
// The rows of all changes, and how the outcome of one is written.

#include "tools/Changes.h"

#include "tools/base/JsonValue.h"
#include "tools/base/SourceProblem.h"
#include "tools/changes/ThresholdChange.h"
#include "tools/changes/WatchdogChange.h"

namespace tool {
namespace {

constexpr Change kChanges[] = {
    {"threshold set", "threshold", SetThreshold},
    {"watchdog set", "watchdog", SetWatchdog},
    {"watchdog reset", "watchdog", ResetWatchdog},
    {"watchdog stop", "watchdog", StopWatchdog},
};

}  // namespace

std::span<const Change> Changes() {
    return kChanges;
}

bool Make(const Change& change, const Order& order, const std::vector<Way>& ways, Format format,
          std::ostream& out, std::ostream& err) {
    const auto problem = AreaProblem(kBmc, ways);
    const Outcome outcome = problem ? Outcome{"", Json(), problem->message} : change.make(order);
    const bool done = outcome.problem.empty();
    if (format == Format::kJson) {
        Json json = {
            {"schema", kJsonSchema}, {change.member, outcome.json}, {"errors", Json::array()}};
        if (!done) json["errors"].push_back(ErrorJson(change.name, outcome.problem));
        DumpJson(json, out);
    } else {
        out << outcome.text;
    }
    if (!done) err << "talvane: " << outcome.problem << '\n';
    return done;
}

}  // namespace tool
