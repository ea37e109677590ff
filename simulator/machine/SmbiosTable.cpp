// SPDX-License-Identifier: MIT
//
// Lays SMBIOS structures out as DSP0134, 6.1 says: header, formatted area, strings.

#include "simulator/machine/SmbiosTable.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace sim {
namespace {

constexpr std::size_t kStructureHeaderSize = 4;

// A pointer to the field; std::out_of_range when it does not lie within the area.
std::uint8_t* FieldAt(Bytes& area, std::size_t offset, std::size_t size) {
    if (offset > area.size() || size > area.size() - offset)
        throw std::out_of_range("offset " + std::to_string(offset) + " with " +
                                std::to_string(size) + " bytes is past the formatted area of " +
                                std::to_string(area.size()) + " bytes");
    return area.data() + offset;
}

}  // namespace

// A structure that states less than its header still has the header.
SmbiosStructure::SmbiosStructure(std::uint8_t type, std::uint16_t handle, std::uint8_t length)
    : formatted_(std::max<std::size_t>(length, kStructureHeaderSize)) {
    Byte(0, type).Byte(1, length).Word(2, handle);
}

SmbiosStructure& SmbiosStructure::Byte(std::size_t offset, std::uint8_t value) {
    *FieldAt(formatted_, offset, 1) = value;
    return *this;
}

SmbiosStructure& SmbiosStructure::Word(std::size_t offset, std::uint16_t value) {
    std::uint8_t* at = FieldAt(formatted_, offset, 2);
    for (unsigned i = 0; i < 2; ++i) at[i] = static_cast<std::uint8_t>(value >> (8 * i));
    return *this;
}

SmbiosStructure& SmbiosStructure::Dword(std::size_t offset, std::uint32_t value) {
    std::uint8_t* at = FieldAt(formatted_, offset, 4);
    for (unsigned i = 0; i < 4; ++i) at[i] = static_cast<std::uint8_t>(value >> (8 * i));
    return *this;
}

SmbiosStructure& SmbiosStructure::String(std::size_t offset, std::string_view text) {
    (void)FieldAt(formatted_, offset, 1);  // throws before the string is added
    String(text);
    return Byte(offset, static_cast<std::uint8_t>(strings_.size()));
}

SmbiosStructure& SmbiosStructure::String(std::string_view text) {
    if (text.empty() || text.find('\0') != std::string_view::npos)
        throw std::invalid_argument(
            "a string of a structure is neither empty nor does it hold a NUL; it would end the "
            "set");
    if (strings_.size() == std::numeric_limits<std::uint8_t>::max())
        throw std::length_error("a structure has at most 255 strings");
    strings_.emplace_back(text);
    return *this;
}

Bytes SmbiosStructure::Image() const {
    Bytes all = formatted_;
    for (const std::string& text : strings_) {
        all.insert(all.end(), text.begin(), text.end());
        all.push_back(0);
    }
    if (strings_.empty()) all.push_back(0);
    all.push_back(0);
    return all;
}

SmbiosStructure& SmbiosTable::Add(std::uint8_t type, std::uint16_t handle, std::uint8_t length) {
    return std::get<SmbiosStructure>(
        parts_.emplace_back(std::in_place_type<SmbiosStructure>, type, handle, length));
}

SmbiosTable& SmbiosTable::Raw(std::span<const std::uint8_t> bytes) {
    parts_.emplace_back(std::in_place_type<Bytes>, bytes.begin(), bytes.end());
    return *this;
}

std::size_t SmbiosTable::Structures() const {
    return static_cast<std::size_t>(std::count_if(
        parts_.begin(), parts_.end(),
        [](const Part& part) { return std::holds_alternative<SmbiosStructure>(part); }));
}

Bytes SmbiosTable::Image() const {
    Bytes all;
    for (const Part& part : parts_) {
        const auto* structure = std::get_if<SmbiosStructure>(&part);
        const Bytes bytes = structure != nullptr ? structure->Image() : std::get<Bytes>(part);
        all.insert(all.end(), bytes.begin(), bytes.end());
    }
    return all;
}

}  // namespace sim
