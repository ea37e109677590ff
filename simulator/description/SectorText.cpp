// SPDX-License-Identifier: MIT
//
// Splits the text into lines, and each line into a sector's number and its bytes.

#include "simulator/description/SectorText.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <string>

#include "simulator/machine/DiskImage.h"

namespace sim {
namespace {

// Sectors have numbers of 48 bits (ATA/ATAPI-6, 48-bit addresses).
constexpr std::uint64_t kLastSector = (std::uint64_t{1} << 48) - 1;

[[noreturn]] void FailInLine(int line, const char* message) {
    throw std::runtime_error("line " + std::to_string(line) + ": " + message);
}

Bytes SectorBytes(std::string_view digits, int line) {
    if (digits.size() != 2 * DiskImage::kSectorSize) FailInLine(line, "a sector has 512 bytes");
    Bytes bytes(DiskImage::kSectorSize);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const char* const at = digits.data() + 2 * i;
        const auto [stop, error] = std::from_chars(at, at + 2, bytes[i], 16);
        if (error != std::errc() || stop != at + 2)
            FailInLine(line, "bytes are hexadecimal digits");
    }
    return bytes;
}

}  // namespace

std::map<std::uint64_t, Bytes> ReadSectorText(std::string_view text) {
    std::map<std::uint64_t, Bytes> sectors;
    for (int number = 1; !text.empty(); ++number) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        std::uint64_t sector = 0;
        const char* const end = line.data() + line.size();
        const auto [stop, error] = std::from_chars(line.data(), end, sector);
        if (error != std::errc() || stop == end || *stop != ' ')
            FailInLine(number, "a line is a sector's number, a blank and its bytes");
        if (sector > kLastSector) FailInLine(number, "no disk has this sector");
        const std::string_view digits =
            line.substr(static_cast<std::size_t>(stop - line.data()) + 1);
        if (!sectors.emplace(sector, SectorBytes(digits, number)).second)
            FailInLine(number, "the sector is here twice");
    }
    return sectors;
}

}  // namespace sim
