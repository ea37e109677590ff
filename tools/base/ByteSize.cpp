// SPDX-License-Identifier: MIT
//
// Decimal texts to numbers and to sizes in KB, MB, GB and TB.

#include "tools/base/ByteSize.h"

#include <iterator>
#include <nlohmann/json.hpp>

#include "tools/base/JsonValue.h"

namespace tool {
namespace {

constexpr std::size_t kMaxSizeDigits = 12;

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

}  // namespace

std::optional<std::uint64_t> Bytes(const std::string& size) {
    if (size.empty() || size.size() > kMaxSizeDigits) return std::nullopt;
    std::uint64_t bytes = 0;
    for (std::size_t i = 0; i < size.size(); ++i) {
        const bool counts = IsDigit(size[i]) || (i == 0 && size.size() == kMaxSizeDigits);
        if (!counts) return std::nullopt;
        bytes = bytes * 10 + static_cast<unsigned char>(size[i] - '0');
    }
    return bytes;
}

std::string SizeText(const std::string& size) {
    const auto bytes = Bytes(size);
    if (!bytes) return size;
    constexpr std::uint64_t kThousand = 1000;
    if (*bytes < kThousand) return std::to_string(*bytes) + " B";
    constexpr const char* kUnits[] = {"KB", "MB", "GB", "TB"};
    const char* const* unit = kUnits;
    std::uint64_t one = kThousand;
    // With one digit after the point, 999.95 is the next unit's 1.0.
    while (*bytes >= one * kThousand - one / 20 && unit != std::end(kUnits) - 1) {
        one *= kThousand;
        ++unit;
    }
    const std::uint64_t tenths = (*bytes * 10 + one / 2) / one;
    return std::to_string(tenths / 10) + '.' + std::to_string(tenths % 10) + ' ' + *unit;
}

Json SizeJson(const std::string& size) {
    const auto bytes = Bytes(size);
    return QuantityJson(bytes ? std::optional(static_cast<double>(*bytes)) : std::nullopt, "B",
                        size);
}

}  // namespace tool
