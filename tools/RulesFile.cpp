// SPDX-License-Identifier: MIT
//
// Reads the whole file before it looks for rules.

#include "tools/RulesFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <string>

#include "tools/base/Descriptor.h"

namespace tool {
namespace {

// The whole file; nothing, with errno set, when it cannot be read.
std::optional<std::string> TextOf(const std::filesystem::path& file) {
    const Descriptor descriptor(file.c_str(), O_RDONLY);
    if (!descriptor.IsOpen()) return std::nullopt;
    std::string text;
    char piece[4096];
    while (true) {
        const ssize_t got = read(descriptor.Get(), piece, sizeof piece);
        if (got < 0) return std::nullopt;
        if (got == 0) return text;
        text.append(piece, static_cast<std::size_t>(got));
    }
}

}  // namespace

Rules RulesIn(const std::filesystem::path& file) {
    if (file.empty()) return {};
    const auto text = TextOf(file);
    if (!text) throw std::runtime_error(file.string() + ": " + std::strerror(errno));
    try {
        return ParseRules(*text);
    } catch (const RulesError& error) {
        throw std::runtime_error(file.string() + ':' + error.what());
    }
}

}  // namespace tool
