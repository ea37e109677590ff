// SPDX-License-Identifier: MIT
//
// Writes what the reader of machine files takes back.

#include "tools/capture/StatementWords.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>

#include "tools/base/Text.h"

namespace tool {
namespace {

constexpr int kOpenErrors[] = {ENOENT, EACCES, EPERM, ENXIO, ENODEV, EBUSY};

}  // namespace

std::string QuotedText(std::string_view text) {
    std::string quoted = "\"";
    for (const char& c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\')
            quoted += std::string("\\") + c;
        else if (byte == 0)
            quoted += ' ';
        else
            quoted += byte < 0x20 || byte >= 0x7F ? ByteText({&c, 1}) : std::string(1, c);
    }
    return quoted + '"';
}

std::string OpenErrorName(int error) {
    const bool isKnown =
        std::find(std::begin(kOpenErrors), std::end(kOpenErrors), error) != std::end(kOpenErrors);
    return strerrorname_np(isKnown ? error : EIO);
}

}  // namespace tool
