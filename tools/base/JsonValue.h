// SPDX-License-Identifier: MIT
//
// The values of the JSON output. Whatever is absent is null, never 0 and never an empty text.
#ifndef TALVANE_TOOLS_BASE_JSONVALUE_H
#define TALVANE_TOOLS_BASE_JSONVALUE_H

#include <optional>
#include <string_view>

#include "tools/base/Json.h"

namespace tool {

// A text of the firmware as UTF-8, without surrounding blanks; null for an empty one.
Json TextJson(std::string_view text);

// {"value": number or null, "unit": text or null, "text": the text that people are shown}; null
// when the text is empty.
Json QuantityJson(std::optional<double> value, std::string_view unit, std::string_view text);

// The same for a text of the library that begins with a decimal number: "2400 MHZ" has the value
// 2400 and the unit "MHZ". A text without a number ("Unknown") has no value and no unit.
Json QuantityJson(std::string_view text);

// {"source": "/proc/stat", "message": "cannot open ..."}
Json ErrorJson(std::string_view source, std::string_view message);

// {"code": 3, "name": "processor"}
Json CodeJson(int code, std::string_view name);

}  // namespace tool

#endif
