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
    ExpectedField& by(Rule rule, const std::string& text) {
        if (text == exact_) return *this;
        exact_ = text;
        rules_.insert(rule);
        return *this;
    }

    // The field has room for so many bytes, one of them for the terminator.
    ExpectedField& cutTo(std::size_t size) {
        return by(Rule::cutToField, exact_.substr(0, size - 1));
    }

    const std::string& name() const { return name_; }
    const std::string& meaning() const { return meaning_; }
    const std::string& exact() const { return exact_; }
    const std::set<Rule>& rules() const { return rules_; }

private:
    std::string name_;
    std::string meaning_;
    std::string exact_;
    std::set<Rule> rules_;
};

class ExpectedFields {
public:
    // The reference stays valid while fields are added.
    ExpectedField& add(std::string name, std::string meaning) {
        return fields_.emplace_back(std::move(name), std::move(meaning));
    }
    ExpectedField& add(std::string name, unsigned long meaning) {
        return add(std::move(name), std::to_string(meaning));
    }

    // What stands behind the damage of a table cannot be compared: answers without an expectation
    // count under the rule.
    void openBy(Rule rule) { openBy_ = rule; }
    std::optional<Rule> openBy() const { return openBy_; }

    ExpectedField* find(std::string_view name) {
        const auto found = std::ranges::find(fields_, name, &ExpectedField::name);
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
