// SPDX-License-Identifier: MIT
//
// Runs the checks, and writes what they find.

#include "tools/DoctorCommand.h"

#include <cstring>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tools/base/Layout.h"
#include "tools/base/Text.h"
#include "tools/doctor/Checks.h"

namespace tool {
namespace {

std::string ShownBy(const Finding& finding) {
    if (finding.error == 0) return finding.call;
    return finding.call + ": " + strerrorname_np(finding.error) + ", " +
           std::strerror(finding.error);
}

std::string ToText(const Check& check, const Finding& finding) {
    std::vector<Fact> facts = {{"Finding", finding.text}};
    if (!finding.call.empty()) facts.push_back({"Shown by", ShownBy(finding)});
    facts.push_back({"Stops", finding.stopsTool ? "talvane and agents"
                                                : "agents that talvane-host does not start"});
    facts.push_back({"Remedy", finding.remedy});
    return Section(check.name, {FactBlock(facts)});
}

Json TextOrNull(const std::string& text) {
    return text.empty() ? Json() : Json(Utf8(text));
}

Json ToJson(const Check& check, const std::optional<Finding>& finding) {
    Json json = {{"name", check.name}, {"passed", !finding}, {"finding", Json()}};
    if (finding)
        json["finding"] = {
            {"text", Utf8(finding->text)},
            {"stopsTool", finding->stopsTool},
            {"call", TextOrNull(finding->call)},
            {"errno", finding->error == 0 ? Json() : Json(strerrorname_np(finding->error))},
            {"remedy", Utf8(finding->remedy)}};
    return json;
}

}  // namespace

bool ShowDoctor(const Facts& facts, Format format, std::ostream& out) {
    bool isWell = true;
    std::vector<std::string> sections;
    Json checks = Json::array();
    std::size_t passed = 0;
    for (const Check& check : Checks()) {
        const auto finding = check.find(facts);
        checks.push_back(ToJson(check, finding));
        if (!finding) {
            ++passed;
            continue;
        }
        sections.push_back(ToText(check, *finding));
        isWell = isWell && !finding->stopsTool;
    }
    if (format != Format::kText) {
        DumpJson({{"schema", kJsonSchema},
                  {kDoctor, {{"well", isWell}, {"checks", checks}}},
                  {"errors", Json::array()}},
                 out);
        return isWell;
    }
    const std::string count =
        std::to_string(passed) + " of " + std::to_string(Checks().size()) + " checks passed";
    sections.push_back(Section(
        "Doctor",
        {NoteBlock(count + (isWell ? "; nothing stops talvane" : "; something stops talvane"))}));
    out << Page(sections);
    return isWell;
}

}  // namespace tool
