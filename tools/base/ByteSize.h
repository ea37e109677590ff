// SPDX-License-Identifier: MIT
//
// Sizes of drives and partitions: the library's decimal texts, for machines and for people.
#ifndef TALVANE_TOOLS_BASE_BYTESIZE_H
#define TALVANE_TOOLS_BASE_BYTESIZE_H

#include <cstdint>
#include <optional>
#include <string>

#include "tools/base/Json.h"

namespace tool {

// The number that a size text stands for. Nothing for an empty text (0 or unknown) and for a text
// that is not a number. In a text of twelve characters the first counts 100 GB each; it can be a
// character after '9'.
std::optional<std::uint64_t> Bytes(const std::string& size);

// "40.0 GB", in powers of 1000 as drives are sold; the text itself when it is not a number.
std::string SizeText(const std::string& size);

// {"value": bytes or null, "unit": "B", "text": the library's}; null for an empty text.
Json SizeJson(const std::string& size);

}  // namespace tool

#endif
