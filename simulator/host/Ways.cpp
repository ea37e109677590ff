// SPDX-License-Identifier: MIT
//
// A line for each area, its parts separated by tabs.

#include "simulator/host/Ways.h"

#include <algorithm>

namespace sim {
namespace {

constexpr std::string_view kDirect = "direct";
constexpr std::string_view kHost = "host";
constexpr std::size_t kParts = 7;

// Texts of the system could hold the separators.
std::string Plain(std::string text) {
    for (char& c : text)
        if (c == '\t' || c == '\n') c = ' ';
    return text;
}

// Takes the text up to the separator, and the separator, from the front of `text`.
std::string_view TakeUpTo(std::string_view& text, char separator) {
    const std::size_t end = std::min(text.find(separator), text.size());
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return part;
}

}  // namespace

std::string EncodeWays(const std::vector<AreaWay>& ways) {
    std::string text;
    for (const AreaWay& way : ways) {
        text += way.area + '\t' + std::string(way.isDirect ? kDirect : kHost);
        for (const std::string* part :
             {&way.from, &way.note, &way.problem, &way.unopened, &way.whyUnopened})
            text += '\t' + Plain(*part);
        text += '\n';
    }
    return text;
}

std::vector<AreaWay> DecodeWays(std::string_view text) {
    std::vector<AreaWay> ways;
    while (!text.empty()) {
        std::string_view line = TakeUpTo(text, '\n');
        if (std::count(line.begin(), line.end(), '\t') != kParts - 1) continue;
        AreaWay way;
        way.area = TakeUpTo(line, '\t');
        way.isDirect = TakeUpTo(line, '\t') == kDirect;
        way.from = TakeUpTo(line, '\t');
        way.note = TakeUpTo(line, '\t');
        way.problem = TakeUpTo(line, '\t');
        way.unopened = TakeUpTo(line, '\t');
        way.whyUnopened = line;
        ways.push_back(way);
    }
    return ways;
}

}  // namespace sim
