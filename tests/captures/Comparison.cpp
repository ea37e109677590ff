// SPDX-License-Identifier: MIT
//
// Compares field by field, and says in a sentence what nothing explains.

#include "Comparison.h"

#include <set>

namespace captures {

namespace {

std::string Quoted(const std::string& text) {
    return "\"" + text + "\"";
}

bool IsUnwritten(const std::string& answer) {
    return answer.empty() || answer == "0";
}

std::string Explain(const ExpectedField& field, const std::string& answer) {
    std::string text = field.Name() + " is " + Quoted(answer) + ", must be " +
                       Quoted(field.Exact()) + "; dmidecode says " + Quoted(field.Meaning());
    for (const Rule rule : field.Rules()) text += ", " + std::string(TextOf(rule).name);
    return text;
}

}  // namespace

Comparison Compare(const ExpectedFields& expected, const Answers& answers) {
    Comparison result;
    std::set<std::string> compared;
    for (const ExpectedField& field : expected) {
        const auto answer = answers.find(field.Name());
        compared.insert(field.Name());
        ++result.fields;
        if (answer == answers.end() || answer->second != field.Exact()) {
            result.unexplained.push_back(
                Explain(field, answer == answers.end() ? "(not asked)" : answer->second));
        } else if (field.Exact() == field.Meaning()) {
            ++result.equal;
        } else {
            for (const Rule rule : field.Rules()) ++result.byRule[rule];
        }
    }
    for (const auto& [name, answer] : answers) {
        if (compared.contains(name) || IsUnwritten(answer)) continue;
        ++result.fields;
        if (expected.OpenBy())
            ++result.byRule[*expected.OpenBy()];
        else
            result.unexplained.push_back(name + " is " + Quoted(answer) +
                                         ", must be unwritten; dmidecode says nothing");
    }
    return result;
}

}  // namespace captures
