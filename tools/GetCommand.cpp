// SPDX-License-Identifier: MIT
//
// Walks through the JSON word by word.

#include "tools/GetCommand.h"

#include <algorithm>
#include <cctype>
#include <nlohmann/json.hpp>
#include <vector>

#include "tools/Commands.h"
#include "tools/HealthCommand.h"
#include "tools/Report.h"
#include "tools/base/JsonValue.h"
#include "tools/base/SourceProblem.h"
#include "tools/base/Text.h"
#include "tools/health/HealthText.h"
#include "tools/records/Sensors.h"

namespace tool {
namespace {

std::vector<std::string> WordsOfPath(const std::string& path) {
    std::vector<std::string> words(1);
    for (const char c : path) {
        if (c == '.')
            words.emplace_back();
        else
            words.back() += c;
    }
    return words;
}

// Letters and digits in lower case: "serialNumber" and "serial-number" are the same name.
std::string LettersOf(const std::string& name) {
    std::string letters;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        if (std::isalnum(byte) != 0) letters += static_cast<char>(std::tolower(byte));
    }
    return letters;
}

bool IsSameName(const std::string& one, const std::string& other) {
    return LettersOf(one) == LettersOf(other);
}

bool IsPlace(const std::string& word) {
    return !word.empty() && word.size() < 6 &&
           std::all_of(word.begin(), word.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool HasName(const Json& element, const std::string& word) {
    for (const char* member : {"name", "address", "device"}) {
        const auto found = element.find(member);
        if (found != element.end() && found->is_string() &&
            IsSameName(found->get<std::string>(), word))
            return true;
    }
    return false;
}

const Json* ElementOf(const Json& list, const std::string& word) {
    if (IsPlace(word)) {
        const std::size_t place = std::stoul(word);
        return place < list.size() ? &list[place] : nullptr;
    }
    const auto found = std::find_if(list.begin(), list.end(),
                                    [&](const Json& element) { return HasName(element, word); });
    return found == list.end() ? nullptr : &*found;
}

const Json* MemberOf(const Json& object, const std::string& word) {
    for (const auto& [name, value] : object.items())
        if (IsSameName(name, word)) return &value;
    return nullptr;
}

const Json* Step(const Json& from, const std::string& word) {
    if (from.is_array()) return ElementOf(from, word);
    return from.is_object() ? MemberOf(from, word) : nullptr;
}

// The output of the command with that name; an empty object when there is none.
Json OutputOf(const std::string& name, const Settings& settings) {
    const auto commands = Commands();
    for (std::size_t i = 0; i < commands.size(); ++i)
        if (IsSameName(name, commands[i].name)) return ReportJson(commands.subspan(i, 1), settings);
    if (IsSameName(name, LibrarySensorsCommand().front().name))
        return ReportJson(LibrarySensorsCommand(), settings);
    if (!IsSameName(name, kHealth)) return Json::object();
    const auto sensors = ReadSensors();
    if (sensors) return {{kHealth, ToJson(Judge(*sensors, {}))}, {"errors", Json::array()}};
    const SourceProblem problem = ProblemOf(kBmc, settings.ways);
    return {{kHealth, Json()},
            {"errors", Json::array({ErrorJson(problem.source, problem.message)})}};
}

std::string ValueLine(const Json& value) {
    constexpr int kOneLine = -1;
    constexpr bool kAsciiOnly = true;
    if (value.is_string()) return Printable(value.get<std::string>());
    if (value.is_object() && value.contains("text")) return ValueLine(value["text"]);
    return value.dump(kOneLine, ' ', kAsciiOnly);
}

}  // namespace

bool ShowValue(const std::string& path, const Settings& settings, std::ostream& out,
               std::ostream& err) {
    const std::vector<std::string> words = WordsOfPath(path);
    const Json output = OutputOf(words.front(), settings);
    const Json* value = &output;
    std::string gone;
    for (const std::string& word : words) {
        if (value->is_null()) break;
        value = Step(*value, word);
        gone += (gone.empty() ? "" : ".") + word;
        if (value == nullptr) {
            err << "talvane: there is no " << gone << '\n';
            return false;
        }
    }
    if (value->is_null()) {
        const Json& errors = output["errors"];
        err << "talvane: "
            << (errors.empty() ? path + ": the machine does not say it"
                               : errors[0]["message"].get<std::string>())
            << '\n';
        return false;
    }
    out << ValueLine(*value) << '\n';
    return true;
}

}  // namespace tool
