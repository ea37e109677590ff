// SPDX-License-Identifier: MIT
//
// Collects the answers first, so that each source that failed is named once.

#include "tools/Report.h"

#include <algorithm>
#include <ctime>
#include <string>
#include <vector>

#include "tools/base/JsonValue.h"
#include "tools/base/Layout.h"
#include "tools/base/SourceProblem.h"
#include "tools/base/Text.h"
#include "tools/base/WayFacts.h"

namespace tool {
namespace {

// A source that could not be read, and the commands that miss it.
struct Missing {
    const Source* source;
    SourceProblem problem;
    std::string commands;  // names, separated by commas
};

struct Answers {
    std::vector<std::string> sections;
    Json json = Json::object();
    std::vector<Missing> missing;
};

void Miss(std::vector<Missing>& missing, const Source* source, const char* command,
          const std::vector<Way>& ways) {
    const auto known = std::find_if(missing.begin(), missing.end(), [source](const Missing& entry) {
        return entry.source == source;
    });
    if (known == missing.end())
        missing.push_back({source, ProblemOf(*source, ways), command});
    else
        known->commands += std::string(", ") + command;
}

Answers AskAll(std::span<const Command> commands, const Settings& settings) {
    Answers answers;
    for (const Command& command : commands) {
        std::optional<Answer> answer;
        if (!AreaProblem(*command.source, settings.ways)) answer = command.ask(settings);
        answers.json[command.name] = answer ? answer->json : Json();
        if (!answer) {
            Miss(answers.missing, command.source, command.name, settings.ways);
            continue;
        }
        answers.sections.push_back(answer->text);
        for (const Source* source : answer->notRead)
            Miss(answers.missing, source, command.name, settings.ways);
    }
    return answers;
}

void WriteText(const Answers& answers, const std::vector<Way>& ways, std::ostream& out) {
    std::vector<std::string> sections = answers.sections;
    std::vector<Fact> notRead;
    for (const Missing& missing : answers.missing)
        notRead.push_back({missing.problem.source, missing.commands});
    if (!notRead.empty()) sections.push_back(Section("Not read", {FactBlock(notRead)}));
    if (!ways.empty()) sections.push_back(Section("Read from", {FactBlock(WayFacts(ways))}));
    out << Page(sections);
}

Json WaysJson(const std::vector<Way>& ways) {
    Json json = Json::object();
    for (const Way& way : ways)
        json[way.area] = {{"way", way.isDirect ? "direct" : "host"},
                          {"from", Utf8(way.from)},
                          {"note", way.note.empty() ? Json() : Json(Utf8(way.note))},
                          {"read", way.problem.empty()}};
    return json;
}

Json JsonOf(const Answers& answers, const std::vector<Way>& ways, bool withTime) {
    Json json = {{"schema", kJsonSchema}};
    if (withTime) json["time"] = TimeNow();
    json.update(answers.json);
    if (!ways.empty()) json["ways"] = WaysJson(ways);
    json["errors"] = Json::array();
    for (const Missing& missing : answers.missing)
        json["errors"].push_back(ErrorJson(missing.problem.source, missing.problem.message));
    return json;
}

constexpr bool kAsciiOnly = true;  // control characters of firmware texts reach no terminal

}  // namespace

std::string TimeNow() {
    const std::time_t now = std::time(nullptr);
    std::tm utc{};
    char text[32] = "";
    (void)gmtime_r(&now, &utc);  // result not used: it fails for years beyond an int alone
    (void)std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &utc);
    return text;
}

void DumpJson(const Json& json, std::ostream& out) {
    constexpr int kIndent = 2;
    out << json.dump(kIndent, ' ', kAsciiOnly) << '\n';
}

Json ReportJson(std::span<const Command> commands, const Settings& settings) {
    return JsonOf(AskAll(commands, settings), settings.ways, false);
}

bool Report(std::span<const Command> commands, const Settings& settings, Format format,
            std::ostream& out, std::ostream& err) {
    constexpr int kOneLine = -1;
    const Answers answers = AskAll(commands, settings);
    switch (format) {
        case Format::kText:
            WriteText(answers, commands.size() > 1 ? settings.ways : std::vector<Way>(), out);
            break;
        case Format::kJson:
            DumpJson(JsonOf(answers, settings.ways, false), out);
            break;
        case Format::kJsonLine:
            out << JsonOf(answers, settings.ways, true).dump(kOneLine, ' ', kAsciiOnly) << '\n';
            break;
    }
    for (const Missing& missing : answers.missing)
        err << "talvane: " << missing.problem.message << '\n';
    return answers.missing.empty();
}

}  // namespace tool
