// SPDX-License-Identifier: MIT
//
// Escapes and numbers of the text format.

#include "tools/metrics/MetricPage.h"

#include <charconv>
#include <cmath>
#include <cstdio>

#include "tools/base/Text.h"

namespace tool {
namespace {

bool IsControl(unsigned char byte) {
    constexpr unsigned char kFirstPrintable = 0x20;
    constexpr unsigned char kDelete = 0x7F;
    return byte < kFirstPrintable || byte == kDelete;
}

void AppendHex(std::string& out, unsigned char byte) {
    char escape[8];
    std::snprintf(escape, sizeof escape, "\\\\x%02X", byte);
    out += escape;
}

// The value of a label, escaped. In UTF-8 the controls U+0080 to U+009F are two bytes.
void AppendEscaped(std::string& out, const std::string& utf8) {
    constexpr char kLeadOfControls = '\xC2';
    constexpr unsigned char kLastControl = 0x9F;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const char c = utf8[i];
        if (c == kLeadOfControls && static_cast<unsigned char>(utf8[i + 1]) <= kLastControl)
            AppendHex(out, static_cast<unsigned char>(utf8[++i]));
        else if (c == '\n')
            out += "\\n";
        else if (IsControl(static_cast<unsigned char>(c)))
            AppendHex(out, static_cast<unsigned char>(c));
        else
            out += c == '\\' || c == '"' ? std::string{'\\', c} : std::string(1, c);
    }
}

// "" or "{name="value",...}".
std::string LabelText(const MetricLabels& labels) {
    std::string text;
    for (const MetricLabel& label : labels) {
        const std::string_view value = Trimmed(label.value);
        if (value.empty()) continue;
        text += (text.empty() ? "{" : ",") + std::string(label.name) + "=\"";
        AppendEscaped(text, Utf8(value));
        text += '"';
    }
    return text.empty() ? text : text + '}';
}

}  // namespace

void MetricPage::Add(const MetricFamily& family, const MetricLabels& labels, double value) {
    if (!std::isfinite(value)) return;
    Samples& samples =
        families_.try_emplace(family.name, Samples{family.help, {}, {}}).first->second;
    const std::string text = LabelText(labels);
    if (!samples.known.insert(text).second) return;
    samples.lines += family.name + text + ' ' + MetricNumber(value) + '\n';
}

void MetricPage::AddInfo(const MetricFamily& family, const MetricLabels& labels) {
    if (!LabelText(labels).empty()) Add(family, labels, 1);
}

std::string MetricPage::Text() const {
    std::string text;
    for (const auto& [name, samples] : families_) {
        const std::string known(name);
        text += "# HELP " + known + ' ' + samples.help + '\n';
        text += "# TYPE " + known + " gauge\n";
        text += samples.lines;
    }
    return text;
}

std::string MetricNumber(double value) {
    constexpr double kMaxExact = 9007199254740992.0;  // 2^53
    constexpr int kDigits = 10;
    char text[40];
    const bool isWhole = std::fabs(value) <= kMaxExact && value == std::trunc(value);
    const auto end =
        isWhole
            ? std::to_chars(text, text + sizeof text, static_cast<long long>(value))
            : std::to_chars(text, text + sizeof text, value, std::chars_format::general, kDigits);
    return {text, end.ptr};
}

}  // namespace tool
