// SPDX-License-Identifier: MIT
//
// What one field of the library's answers must hold, and how that follows from dmidecode's text.
#ifndef TALVANE_TESTS_EXPECTEDFIELD_H
#define TALVANE_TESTS_EXPECTEDFIELD_H

#include <algorithm>
#include <deque>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "Rules.h"

namespace captures {

class ExpectedField {
public:
    // `meaning` is dmidecode's answer in the units of the library.
    ExpectedField(std::string name, std::string meaning)
        : name_(std::move(name)), meaning_(meaning), exact_(std::move(meaning)) {}

    // The rule turns the answer into `text`. It counts only where that changes something.
    ExpectedField& By(Rule rule, const std::string& text) {
        if (text == exact_) return *this;
        exact_ = text;
        rules_.insert(rule);
        return *this;
    }

    // The field has room for this number of bytes, one of them for the terminator.
    ExpectedField& CutTo(std::size_t size) {
        return By(Rule::kCutToField, exact_.substr(0, size - 1));
    }

    const std::string& Name() const { return name_; }
    const std::string& Meaning() const { return meaning_; }
    const std::string& Exact() const { return exact_; }
    const std::set<Rule>& Rules() const { return rules_; }

private:
    std::string name_;
    std::string meaning_;
    std::string exact_;
    std::set<Rule> rules_;
};

class ExpectedFields {
public:
    // The reference stays valid while fields are added.
    ExpectedField& Add(std::string name, std::string meaning) {
        return fields_.emplace_back(std::move(name), std::move(meaning));
    }
    ExpectedField& Add(std::string name, unsigned long meaning) {
        return Add(std::move(name), std::to_string(meaning));
    }

    // What stands after the damage of a table cannot be compared: answers without an expectation
    // count under the rule.
    void OpenBy(Rule rule) { openBy_ = rule; }
    std::optional<Rule> OpenBy() const { return openBy_; }

    ExpectedField* Find(std::string_view name) {
        const auto found = std::ranges::find(fields_, name, &ExpectedField::Name);
        return found == fields_.end() ? nullptr : &*found;
    }

    auto begin() const { return fields_.begin(); }
    auto end() const { return fields_.end(); }

private:
    std::deque<ExpectedField> fields_;
    std::optional<Rule> openBy_;
};

}  // namespace captures

#endif
