// SPDX-License-Identifier: MIT
//
// The rules file: verdicts that replace those of the table, and sensors that are left out.
//
//   # the chassis of this rack is open
//   sensor "Intrusion"             state "chassis intrusion"  ok
//   sensor "CPU* VRD Hot"          state "state asserted"     critical
//   entity "power supply 2"                                   ignore
//   type "memory"                  state "correctable error"  ok
//   sensor 0x30                    state "no reading"         ignore
//
// One rule a line; '#' starts a comment. The last rule that fits a sensor and its state counts.
#ifndef TALVANE_TOOLS_SENSORS_RULES_H
#define TALVANE_TOOLS_SENSORS_RULES_H

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tools/sensors/SensorRecord.h"
#include "tools/sensors/Verdict.h"

namespace tool {

struct Rule {
    std::string name;  // pattern with * and ?; empty for any
    std::optional<int> number;
    std::optional<int> entity;
    std::optional<int> instance;
    std::optional<int> type;
    std::string state;               // empty for any
    std::optional<Verdict> verdict;  // nothing: the state is left out
};

using Rules = std::vector<Rule>;

// A mistake in a rules file; what() is "LINE: what is wrong".
struct RulesError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The rules of a file's text. Throws RulesError.
Rules ParseRules(std::string_view text);

// The rule that counts for a sensor in a state; null when no rule fits.
const Rule* RuleFor(const Rules& rules, const SensorRecord& record, const std::string& state);

}  // namespace tool

#endif
