// SPDX-License-Identifier: MIT
//
// One line after the other, each from left to right.

#include "tests/tools/MetricFormat.h"

#include <algorithm>
#include <set>
#include <sstream>

#include "tools/base/Text.h"

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// Lower case, as all names of the tool are.
bool IsName(const std::string& text) {
    const bool isWord = std::all_of(text.begin(), text.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || c == '_' || IsDigit(c);
    });
    return isWord && !text.empty() && text[0] >= 'a';
}

// -12.06, 1e+300: one digit at least in each place.
bool IsNumber(const std::string& text) {
    std::size_t at = text.starts_with('-') ? 1 : 0;
    const auto takeDigits = [&] {
        const std::size_t first = at;
        while (at < text.size() && IsDigit(text[at])) ++at;
        return at > first;
    };
    if (!takeDigits()) return false;
    if (at < text.size() && text[at] == '.' && (++at, !takeDigits())) return false;
    if (at == text.size()) return true;
    if (text[at] != 'e' || ++at >= text.size() || (text[at] != '+' && text[at] != '-'))
        return false;
    return ++at, takeDigits() && at == text.size();
}

class Parser {
public:
    explicit Parser(const std::string& text) {
        if (text.empty() || text.back() != '\n') Complain("the page does not end with a line feed");
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);) {
            ++number_;
            ReadLine(line);
        }
        EndFamily();
    }

    MetricFile Take() { return std::move(file_); }

private:
    void Complain(const std::string& problem) {
        file_.problems.push_back(std::to_string(number_) + ": " + problem);
    }

    void ReadLine(const std::string& line) {
        if (std::any_of(line.begin(), line.end(),
                        [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }))
            Complain("a control character");
        if (tool::Utf8(line) != line) Complain("broken UTF-8");
        if (line.starts_with("# HELP "))
            BeginFamily(line.substr(7));
        else if (line.starts_with("# TYPE "))
            ReadType(line.substr(7));
        else
            ReadSample(line);
    }

    void BeginFamily(const std::string& rest) {
        EndFamily();
        const std::size_t blank = rest.find(' ');
        const std::string name = rest.substr(0, blank);
        if (blank == std::string::npos || rest.size() < blank + 5) Complain("no help");
        if (!IsName(name)) Complain("name " + name);
        if (name <= family_) Complain(name + " after " + family_);
        family_ = name;
        hasType_ = false;
        samples_ = 0;
    }

    void EndFamily() {
        if (!family_.empty() && samples_ == 0) Complain(family_ + " without samples");
    }

    void ReadType(const std::string& rest) {
        if (rest != family_ + " gauge" || hasType_) Complain("type " + rest);
        hasType_ = true;
    }

    void ReadSample(const std::string& line) {
        std::size_t at = std::min(line.find_first_of("{ "), line.size());
        MetricSample sample{line.substr(0, at), {}, {}};
        if (sample.name != family_ || !hasType_) Complain(sample.name + " outside its family");
        if (at < line.size() && line[at] == '{' && !ReadLabels(line, ++at, sample)) return;
        if (at >= line.size() || line[at] != ' ') return Complain("no blank before the value");
        sample.value = line.substr(at + 1);
        if (!IsNumber(sample.value)) Complain("value " + sample.value);
        if (!series_.insert({sample.name, sample.labels}).second) Complain("twice: " + line);
        file_.samples.push_back(sample);
        ++samples_;
    }

    // From the byte after '{' to the byte after '}'.
    bool ReadLabels(const std::string& line, std::size_t& at, MetricSample& sample) {
        while (true) {
            const std::size_t equals = line.find("=\"", at);
            if (equals == std::string::npos) return Complain("no label"), false;
            const std::string name = line.substr(at, equals - at);
            if (!IsName(name)) Complain("label " + name);
            at = equals + 2;
            std::string value;
            if (!ReadValue(line, at, value)) return false;
            if (value.empty()) Complain("label " + name + " is empty");
            if (!sample.labels.emplace(name, value).second) Complain("label " + name + " twice");
            if (at >= line.size()) return Complain("no end of labels"), false;
            if (line[at++] == '}') return true;
            if (line[at - 1] != ',') return Complain("no comma after " + name), false;
        }
    }

    // From the byte after the first quote to the byte after the last.
    bool ReadValue(const std::string& line, std::size_t& at, std::string& value) {
        for (; at < line.size(); ++at) {
            if (line[at] == '"') return ++at, true;
            if (line[at] != '\\') {
                value += line[at];
                continue;
            }
            const char escaped = ++at < line.size() ? line[at] : ' ';
            if (escaped != '\\' && escaped != '"' && escaped != 'n') Complain("unknown escape");
            value += escaped == 'n' ? '\n' : escaped;
        }
        return Complain("no end of a value"), false;
    }

    MetricFile file_;
    int number_ = 0;
    std::string family_;
    bool hasType_ = false;
    int samples_ = 0;
    std::set<std::pair<std::string, std::map<std::string, std::string>>> series_;
};

}  // namespace

MetricFile ParseMetrics(const std::string& text) {
    return Parser(text).Take();
}

std::string MetricFile::Value(const std::string& name,
                              const std::map<std::string, std::string>& labels) const {
    std::string value;
    for (const MetricSample& sample : samples) {
        const bool fits =
            sample.name == name &&
            std::includes(sample.labels.begin(), sample.labels.end(), labels.begin(), labels.end());
        if (!fits) continue;
        if (!value.empty()) return "several";
        value = sample.value;
    }
    return value;
}
