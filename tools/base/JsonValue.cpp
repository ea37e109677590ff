// SPDX-License-Identifier: MIT
//
// Makes values of texts.

#include "tools/base/JsonValue.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "tools/base/Text.h"

namespace tool {
namespace {

constexpr std::string_view kPadding = " \t\r\n";

// A whole number without a decimal point.
Json NumberJson(std::optional<double> value) {
    constexpr double kMaxWhole = 9007199254740992.0;  // up to here doubles are exact
    if (!value || !std::isfinite(*value)) return {};
    if (std::trunc(*value) == *value && std::abs(*value) <= kMaxWhole)
        return static_cast<std::int64_t>(*value);
    return *value;
}

}  // namespace

Json TextJson(std::string_view text) {
    const std::string_view trimmed = Trimmed(text, kPadding);
    return trimmed.empty() ? Json() : Json(Utf8(trimmed));
}

Json QuantityJson(std::optional<double> value, std::string_view unit, std::string_view text) {
    if (Trimmed(text, kPadding).empty()) return {};
    return {{"value", NumberJson(value)},
            {"unit", value ? TextJson(unit) : Json()},
            {"text", TextJson(text)}};
}

Json QuantityJson(std::string_view text) {
    const std::string number(Trimmed(text, kPadding));
    const std::size_t length = NumberLength(number);
    const std::string digits = number.substr(0, length);
    char* stop = nullptr;
    const double value = std::strtod(digits.c_str(), &stop);
    const bool isNumber = !digits.empty() && *stop == '\0';
    if (!isNumber) return QuantityJson(std::nullopt, "", text);
    return QuantityJson(value, number.substr(length), text);
}

Json ErrorJson(std::string_view source, std::string_view message) {
    return {{"source", Utf8(source)}, {"message", Utf8(message)}};
}

Json CodeJson(int code, std::string_view name) {
    return {{"code", code}, {"name", Utf8(name)}};
}

}  // namespace tool
