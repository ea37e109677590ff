// SPDX-License-Identifier: MIT
//
// Reads the text that dmidecode printed, line by line.

#include "DmidecodeText.h"

#include <charconv>
#include <cstdio>
#include <stdexcept>

namespace captures {

namespace {

[[noreturn]] void Refuse(unsigned lineNumber, const std::string& line) {
    throw std::runtime_error("dmidecode text, line " + std::to_string(lineNumber) +
                             ": cannot be understood: \"" + line + "\"");
}

// "SMBIOS 2.3 present." or "Legacy DMI 2.3 present."; other lines are left alone.
void TakeVersion(const std::string& line, DmidecodeText& text) {
    unsigned major = 0;
    unsigned minor = 0;
    int end = 0;
    if (std::sscanf(line.c_str(), "SMBIOS %u.%u%*[.0-9] present.%n", &major, &minor, &end) == 2 &&
        end != 0) {
        text.entryPoint = DmidecodeText::EntryPoint::kSmbios;
    } else if (std::sscanf(line.c_str(), "SMBIOS %u.%u present.%n", &major, &minor, &end) == 2 &&
               end != 0) {
        text.entryPoint = DmidecodeText::EntryPoint::kSmbios;
    } else if (std::sscanf(line.c_str(), "Legacy DMI %u.%u present.%n", &major, &minor, &end) ==
                   2 &&
               end != 0) {
        text.entryPoint = DmidecodeText::EntryPoint::kLegacy;
    } else {
        return;
    }
    text.major = major;
    text.minor = minor;
}

DmidecodeStructure TakeHeader(unsigned lineNumber, const std::string& line) {
    DmidecodeStructure structure;
    if (std::sscanf(line.c_str(), "Handle 0x%x, DMI type %u, %u bytes", &structure.handle,
                    &structure.type, &structure.length) != 3)
        Refuse(lineNumber, line);
    return structure;
}

DmidecodeStructure::Line TakeLine(std::string_view line) {
    const std::size_t colon = line.find(": ");
    if (colon != std::string_view::npos)
        return {std::string(line.substr(0, colon)), std::string(line.substr(colon + 2)), {}};
    if (line.ends_with(':')) line.remove_suffix(1);
    return {std::string(line), "", {}};
}

// A line inside a block: its title, "Key: value", or an item of the line above.
void TakeBlockLine(unsigned lineNumber, const std::string& line, DmidecodeStructure& block) {
    if (line.starts_with("\t\t")) {
        if (block.lines.empty()) Refuse(lineNumber, line);
        block.lines.back().items.push_back(line.substr(2));
    } else if (line.starts_with('\t')) {
        block.lines.push_back(TakeLine(std::string_view(line).substr(1)));
    } else if (block.title.empty()) {
        block.title = line;  // an on-board devices structure has one more for each device
    }
}

}  // namespace

const DmidecodeStructure::Line* DmidecodeStructure::FindLine(std::string_view key) const {
    for (const Line& candidate : lines)
        if (candidate.key == key) return &candidate;
    return nullptr;
}

std::optional<std::string> DmidecodeStructure::Find(std::string_view key) const {
    const Line* found = FindLine(key);
    if (found == nullptr) return std::nullopt;
    return found->value;
}

std::string DmidecodeStructure::Value(std::string_view key) const {
    return Find(key).value_or("");
}

std::vector<const DmidecodeStructure*> DmidecodeText::OfType(unsigned type) const {
    std::vector<const DmidecodeStructure*> found;
    for (const DmidecodeStructure& structure : structures)
        if (structure.type == type) found.push_back(&structure);
    return found;
}

const DmidecodeStructure* DmidecodeText::First(unsigned type) const {
    for (const DmidecodeStructure& structure : structures)
        if (structure.type == type) return &structure;
    return nullptr;
}

const DmidecodeStructure* DmidecodeText::ByHandle(unsigned type, unsigned handle) const {
    for (const DmidecodeStructure& structure : structures)
        if (structure.type == type && structure.handle == handle) return &structure;
    return nullptr;
}

DmidecodeText ParseDmidecode(std::istream& in) {
    DmidecodeText text;
    bool inBlock = false;
    unsigned lineNumber = 0;
    for (std::string line; std::getline(in, line);) {
        ++lineNumber;
        if (line.empty()) {
            inBlock = false;
        } else if (line.starts_with("Handle ")) {
            text.structures.push_back(TakeHeader(lineNumber, line));
            inBlock = true;
        } else if (inBlock) {
            TakeBlockLine(lineNumber, line, text.structures.back());
        } else if (line.ends_with("DMI table is broken! Stop.")) {
            text.stoppedAtDamage = true;
        } else {
            TakeVersion(line, text);
        }
    }
    return text;
}

std::optional<unsigned long> LeadingNumber(std::string_view value) {
    const bool hexadecimal = value.starts_with("0x");
    if (hexadecimal) value.remove_prefix(2);
    unsigned long number = 0;
    const auto result =
        std::from_chars(value.data(), value.data() + value.size(), number, hexadecimal ? 16 : 10);
    if (result.ec != std::errc{}) return std::nullopt;
    return number;
}

std::optional<unsigned long> Kilobytes(std::string_view value) {
    const std::optional<unsigned long> number = LeadingNumber(value);
    const std::size_t blank = value.find(' ');
    if (!number || blank == std::string_view::npos) return std::nullopt;
    const std::string_view unit = value.substr(blank + 1, 2);
    if (unit == "kB") return *number;
    if (unit == "MB") return *number << 10;
    if (unit == "GB") return *number << 20;
    return std::nullopt;
}

}  // namespace captures
