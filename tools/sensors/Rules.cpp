// SPDX-License-Identifier: MIT
//
// Splits lines into words and texts in quotes, and reads a rule from them.

#include "tools/sensors/Rules.h"

#include <fnmatch.h>

#include <algorithm>
#include <charconv>

#include "tools/sensors/EntityNames.h"
#include "tools/sensors/SensorStates.h"

namespace tool {
namespace {

struct Word {
    std::string text;
    bool isQuoted = false;
};

[[noreturn]] void Fail(int line, const std::string& what) {
    throw RulesError(std::to_string(line) + ": " + what);
}

std::vector<Word> WordsOf(std::string_view line, int number) {
    std::vector<Word> words;
    constexpr std::string_view kBlanks = " \t\r";
    while (true) {
        line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
        if (line.empty() || line.front() == '#') return words;
        if (line.front() == '"') {
            const std::size_t end = line.find('"', 1);
            if (end == std::string_view::npos) Fail(number, "a quotation mark is missing");
            words.push_back({std::string(line.substr(1, end - 1)), true});
            line.remove_prefix(end + 1);
        } else {
            const std::size_t end = std::min(line.find_first_of(" \t\r\"#"), line.size());
            words.push_back({std::string(line.substr(0, end)), false});
            line.remove_prefix(end);
        }
    }
}

std::optional<int> NumberIn(const Word& word) {
    constexpr int kMaxCode = 0xFF;
    if (word.isQuoted) return std::nullopt;
    const bool isHexadecimal = word.text.starts_with("0x");
    const char* const begin = word.text.data() + (isHexadecimal ? 2 : 0);
    const char* const end = word.text.data() + word.text.size();
    int value = 0;
    const auto [stop, error] = std::from_chars(begin, end, value, isHexadecimal ? 16 : 10);
    if (stop != end || error != std::errc() || value < 0 || value > kMaxCode) return std::nullopt;
    return value;
}

// "power supply", "power supply 2" or a code.
void ReadEntity(const Word& word, int line, Rule& rule) {
    rule.entity = NumberIn(word);
    if (!rule.entity) rule.entity = EntityNamed(word.text);
    if (rule.entity) return;
    const std::size_t blank = word.text.rfind(' ');
    if (blank != std::string::npos) {
        rule.entity = EntityNamed(word.text.substr(0, blank));
        rule.instance = NumberIn({word.text.substr(blank + 1)});
    }
    if (!rule.entity || !rule.instance) Fail(line, "there is no entity \"" + word.text + '"');
}

void ReadSensor(const Word& word, Rule& rule) {
    rule.number = NumberIn(word);
    if (!rule.number) rule.name = word.text;
}

void ReadType(const Word& word, int line, Rule& rule) {
    rule.type = NumberIn(word);
    if (!rule.type) rule.type = SensorTypeNamed(word.text);
    if (!rule.type) Fail(line, "there is no sensor type \"" + word.text + '"');
}

Rule RuleOf(std::vector<Word> words, int line) {
    Rule rule;
    const std::string verdict = words.back().text;
    words.pop_back();
    rule.verdict = VerdictNamed(verdict);
    if (!rule.verdict && verdict != "ignore")
        Fail(line, '"' + verdict + "\" is none of ok, warning, critical, unknown and ignore");
    if (words.empty() || words.size() % 2 != 0)
        Fail(line, "a rule is: sensor, entity or type, and its name; state TEXT; a verdict");
    for (std::size_t i = 0; i < words.size(); i += 2) {
        const std::string& what = words[i].text;
        const Word& value = words[i + 1];
        if (value.text.empty()) Fail(line, "the " + what + " is empty");
        if (what == "sensor")
            ReadSensor(value, rule);
        else if (what == "entity")
            ReadEntity(value, line, rule);
        else if (what == "type")
            ReadType(value, line, rule);
        else if (what == "state")
            rule.state = value.text;
        else
            Fail(line, '"' + what + "\" is none of sensor, entity, type and state");
    }
    return rule;
}

bool Fits(const Rule& rule, const SensorRecord& record, const std::string& state) {
    return (!rule.number || *rule.number == record.number) &&
           (!rule.entity || *rule.entity == record.entity) &&
           (!rule.instance || *rule.instance == InstanceNumber(record.instance)) &&
           (!rule.type || *rule.type == record.type) &&
           (rule.state.empty() || rule.state == state) &&
           (rule.name.empty() || fnmatch(rule.name.c_str(), record.name.c_str(), 0) == 0);
}

}  // namespace

Rules ParseRules(std::string_view text) {
    Rules rules;
    for (int line = 1; !text.empty(); ++line) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::vector<Word> words = WordsOf(text.substr(0, end), line);
        if (!words.empty()) rules.push_back(RuleOf(std::move(words), line));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return rules;
}

const Rule* RuleFor(const Rules& rules, const SensorRecord& record, const std::string& state) {
    const auto found = std::find_if(rules.rbegin(), rules.rend(),
                                    [&](const Rule& rule) { return Fits(rule, record, state); });
    return found == rules.rend() ? nullptr : &*found;
}

}  // namespace tool
