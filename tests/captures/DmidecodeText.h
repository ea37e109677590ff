// SPDX-License-Identifier: MIT
//
// What dmidecode printed about a machine, taken apart: the version line, and each structure with
// its lines. The second opinion that the library's answers are compared with.
#ifndef TALVANE_TESTS_DMIDECODETEXT_H
#define TALVANE_TESTS_DMIDECODETEXT_H

#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace captures {

// One "Handle ..." block.
struct DmidecodeStructure {
    // "Key: value", with the more deeply indented lines that follow it.
    struct Line {
        std::string key;
        std::string value;
        std::vector<std::string> items;
    };

    unsigned handle = 0;
    unsigned type = 0;
    unsigned length = 0;
    std::string title;
    std::vector<Line> lines;

    const Line* FindLine(std::string_view key) const;             // the first one; null without it
    std::optional<std::string> Find(std::string_view key) const;  // its value
    std::string Value(std::string_view key) const;                // empty without the line
};

struct DmidecodeText {
    enum class EntryPoint { kNone, kSmbios, kLegacy };

    EntryPoint entryPoint = EntryPoint::kNone;
    unsigned major = 0;
    unsigned minor = 0;
    bool stoppedAtDamage = false;  // the table holds more after the last structure
    std::vector<DmidecodeStructure> structures;

    std::vector<const DmidecodeStructure*> OfType(unsigned type) const;
    const DmidecodeStructure* First(unsigned type) const;  // null without one
    const DmidecodeStructure* ByHandle(unsigned type, unsigned handle) const;
};

// Throws std::runtime_error, naming the line, for a block that is not one of dmidecode's.
DmidecodeText ParseDmidecode(std::istream& in);

// The number that a value starts with ("100 MHz", "0x002F"); nothing when it starts with none.
std::optional<unsigned long> LeadingNumber(std::string_view value);

// A size as dmidecode words it ("1 MB", "512 kB") in kilobytes; nothing for any other text.
std::optional<unsigned long> Kilobytes(std::string_view value);

}  // namespace captures

#endif
