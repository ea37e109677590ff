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
#include "tools/base/Text.h"

namespace tool {
namespace {

// A source that could not be read, and the commands that miss it.
struct Missing {
    const Source* source;
    std::string message;
    std::string commands;  // names, separated by commas
};

struct Answers {
    std::vector<std::string> sections;
    Json json = Json::object();
    std::vector<Missing> missing;
};

void Miss(std::vector<Missing>& missing, const Source* source, const char* command) {
    const auto known = std::find_if(missing.begin(), missing.end(), [source](const Missing& entry) {
        return entry.source == source;
    });
    if (known == missing.end())
        missing.push_back({source, source->whyNotRead(), command});
    else
        known->commands += std::string(", ") + command;
}

Answers AskAll(std::span<const Command> commands, const Settings& settings) {
    Answers answers;
    for (const Command& command : commands) {
        const auto answer = command.ask(settings);
        answers.json[command.name] = answer ? answer->json : Json();
        if (!answer) {
            Miss(answers.missing, command.source, command.name);
            continue;
        }
        answers.sections.push_back(answer->text);
        for (const Source* source : answer->notRead) Miss(answers.missing, source, command.name);
    }
    return answers;
}

void WriteText(const Answers& answers, std::ostream& out) {
    std::vector<std::string> sections = answers.sections;
    std::vector<Fact> notRead;
    for (const Missing& missing : answers.missing)
        notRead.push_back({missing.source->name, missing.commands});
    if (!notRead.empty()) sections.push_back(Section("Not read", {FactBlock(notRead)}));
    out << Page(sections);
}

std::string TimeNow() {
    const std::time_t now = std::time(nullptr);
    std::tm utc{};
    char text[32] = "";
    if (gmtime_r(&now, &utc) != nullptr)
        (void)std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &utc);
    return text;
}

Json JsonOf(const Answers& answers, bool withTime) {
    Json json = {{"schema", kJsonSchema}};
    if (withTime) json["time"] = TimeNow();
    json.update(answers.json);
    json["errors"] = Json::array();
    for (const Missing& missing : answers.missing)
        json["errors"].push_back(ErrorJson(missing.source->name, missing.message));
    return json;
}

constexpr bool kAsciiOnly = true;  // control characters of firmware texts reach no terminal

}  // namespace

void DumpJson(const Json& json, std::ostream& out) {
    constexpr int kIndent = 2;
    out << json.dump(kIndent, ' ', kAsciiOnly) << '\n';
}

Json ReportJson(std::span<const Command> commands, const Settings& settings) {
    return JsonOf(AskAll(commands, settings), false);
}

bool Report(std::span<const Command> commands, const Settings& settings, Format format,
            std::ostream& out, std::ostream& err) {
    constexpr int kOneLine = -1;
    const Answers answers = AskAll(commands, settings);
    switch (format) {
        case Format::kText:
            WriteText(answers, out);
            break;
        case Format::kJson:
            DumpJson(JsonOf(answers, false), out);
            break;
        case Format::kJsonLine:
            out << JsonOf(answers, true).dump(kOneLine, ' ', kAsciiOnly) << '\n';
            break;
    }
    for (const Missing& missing : answers.missing) err << "talvane: " << missing.message << '\n';
    return answers.missing.empty();
}

}  // namespace tool
