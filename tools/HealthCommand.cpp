// SPDX-License-Identifier: MIT
//
// Reads rules and sensors, and writes the verdict in the form that is asked for.

#include "tools/HealthCommand.h"

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

#include "tools/RulesFile.h"
#include "tools/base/JsonValue.h"
#include "tools/base/SourceProblem.h"
#include "tools/health/HealthText.h"
#include "tools/records/Sensors.h"

namespace tool {
namespace {

int ShowProblem(const std::string& source, const std::string& problem, const HealthOrder& order,
                Format format, std::ostream& out, std::ostream& err) {
    if (order.isNagios)
        out << "SENSORS UNKNOWN - " << problem << '\n';
    else if (format == Format::kJson)
        DumpJson({{"schema", kJsonSchema},
                  {kHealth, Json()},
                  {"errors", Json::array({ErrorJson(source, problem)})}},
                 out);
    err << "talvane: " << problem << '\n';
    return kHealthUnknown;
}

}  // namespace

int ShowHealth(const HealthOrder& order, const std::vector<Way>& ways, Format format,
               std::ostream& out, std::ostream& err) {
    if (order.showStates) {
        if (format == Format::kJson)
            DumpJson(
                {{"schema", kJsonSchema}, {"states", StateTableJson()}, {"errors", Json::array()}},
                out);
        else
            out << StateTableText();
        return 0;
    }
    Rules rules;
    try {
        rules = RulesIn(order.rules);
    } catch (const std::runtime_error& error) {
        return ShowProblem("rules", error.what(), order, format, out, err);
    }
    const auto sensors = ReadSensors();
    if (!sensors) {
        const SourceProblem problem = ProblemOf(kBmc, ways);
        return ShowProblem(problem.source, problem.message, order, format, out, err);
    }
    const Health health = Judge(*sensors, rules);
    if (order.isNagios)
        out << ToNagios(health);
    else if (format == Format::kJson)
        DumpJson({{"schema", kJsonSchema}, {kHealth, ToJson(health)}, {"errors", Json::array()}},
                 out);
    else
        out << ToText(health);
    return static_cast<int>(health.verdict);
}

}  // namespace tool
