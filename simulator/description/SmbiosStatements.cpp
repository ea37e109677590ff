// SPDX-License-Identifier: MIT
//
// The statements about SMBIOS: a dump, a segment image, or a table written out structure by
// structure.

#include <charconv>
#include <limits>
#include <set>
#include <stdexcept>

#include "simulator/description/MachineDraft.h"

namespace sim {
namespace {

constexpr std::uint32_t kMostByte = 0xFF;
constexpr std::uint32_t kMostWord = 0xFFFF;
constexpr std::uint32_t kMostDword = 0xFFFFFFFF;

SmbiosDraft& begin(SmbiosDraft::Source source, MachineLine& line, MachineDraft& draft) {
    if (draft.smbios)
        line.fail("the machine's SMBIOS was given in line " +
                  std::to_string(draft.smbios->line.number()));
    return draft.smbios.emplace(SmbiosDraft{source, line, {}, {}, {}, nullptr, {}});
}

void readVersion(MachineLine& line, SmbiosPlacement& placement) {
    const std::string text = line.word("the version");
    const char* const end = text.data() + text.size();
    const auto major = std::from_chars(text.data(), end, placement.major);
    if (major.ec != std::errc() || major.ptr == end || *major.ptr != '.')
        line.fail("the version \"" + text + "\" is not MAJOR.MINOR");
    const auto minor = std::from_chars(major.ptr + 1, end, placement.minor);
    if (minor.ec != std::errc() || minor.ptr != end)
        line.fail("the version \"" + text + "\" is not MAJOR.MINOR");
}

// What may follow the version, each at most once.
void readOption(const std::string& option, MachineLine& line, SmbiosPlacement& placement) {
    if (option == "anchor") {
        line.expect("dmi");
        placement.anchor = SmbiosPlacement::Anchor::dmi;
    } else if (option == "entry") {
        placement.entry = line.number("the entry point's address", kMostDword);
        constexpr std::uint32_t last = 0xFFFE0;
        if (placement.entry < 0xF0000 || placement.entry > last || placement.entry % 16 != 0)
            line.fail("an entry point lies on a multiple of 16 from 0xF0000 to 0xFFFE0");
    } else if (option == "table") {
        placement.table = line.number("the table's address", kMostDword);
        if (placement.table == 0) line.fail("a table does not lie at address 0");
    } else if (option == "structures") {
        placement.structures = static_cast<int>(line.number("the structure count", kMostWord));
    } else if (option == "length") {
        placement.length = static_cast<int>(line.number("the table length", kMostWord));
    } else {
        line.fail("\"" + option + "\" is none of anchor, entry, table, structures, length");
    }
}

void readSmbios(MachineLine& line, MachineDraft& draft) {
    const std::string kind = line.word("\"dump\" or \"version\"");
    if (kind == "dump") {
        Bytes bytes = draft.capture(line);
        begin(SmbiosDraft::Source::dump, line, draft).bytes = std::move(bytes);
    } else if (kind == "version") {
        SmbiosPlacement& placement = begin(SmbiosDraft::Source::text, line, draft).placement;
        readVersion(line, placement);
        std::set<std::string> seen;
        while (line.more()) {
            const std::string option = line.word("the option");
            if (!seen.insert(option).second) line.fail("\"" + option + "\" is given twice");
            readOption(option, line, placement);
        }
    } else {
        line.fail("smbios is followed by \"dump\" or \"version\", not by \"" + kind + "\"");
    }
}

void readSegment(MachineLine& line, MachineDraft& draft) {
    Bytes bytes = draft.capture(line);
    begin(SmbiosDraft::Source::segment, line, draft).bytes = std::move(bytes);
}

void readStructure(MachineLine& line, MachineDraft& draft) {
    const std::uint32_t type = line.number("the type", kMostByte);
    line.expect("handle");
    const std::uint32_t handle = line.number("the handle", kMostWord);
    line.expect("length");
    const std::uint32_t length = line.number("the length", kMostByte);
    if (length < 4) line.fail("a structure is at least as long as its header of 4 bytes");
    if (!draft.smbios || draft.smbios->source != SmbiosDraft::Source::text)
        line.fail("structures follow an \"smbios version\" line");
    draft.smbios->last = &draft.smbios->table.add(static_cast<std::uint8_t>(type),
                                                  static_cast<std::uint16_t>(handle),
                                                  static_cast<std::uint8_t>(length));
    draft.smbios->fields.clear();
}

SmbiosStructure& structureOf(MachineLine& line, MachineDraft& draft) {
    if (!draft.smbios || draft.smbios->last == nullptr)
        line.fail("fields and strings follow a \"structure\" line");
    return *draft.smbios->last;
}

// Sets a field by `set`, where it lies in the structure and no earlier line wrote to it.
template <typename Set>
void setField(MachineLine& line, MachineDraft& draft, std::size_t offset, std::size_t size,
              Set set) {
    SmbiosStructure& structure = structureOf(line, draft);
    for (std::size_t at = offset; at < offset + size; ++at) {
        const auto [field, fresh] = draft.smbios->fields.emplace(at, line.number());
        if (!fresh)
            line.fail("the byte at offset " + std::to_string(at) + " was set in line " +
                      std::to_string(field->second));
    }
    try {
        set(structure);
    } catch (const std::exception& error) {
        line.fail(error.what());
    }
}

std::size_t readOffset(MachineLine& line) {
    return line.number("the offset", kMostByte);
}

void readByte(MachineLine& line, MachineDraft& draft) {
    const std::size_t offset = readOffset(line);
    const std::uint8_t value = line.byte("the value");
    setField(line, draft, offset, 1, [&](SmbiosStructure& to) { to.byte(offset, value); });
}

void readWord(MachineLine& line, MachineDraft& draft) {
    const std::size_t offset = readOffset(line);
    const auto value = static_cast<std::uint16_t>(line.number("the value", kMostWord));
    setField(line, draft, offset, 2, [&](SmbiosStructure& to) { to.word(offset, value); });
}

void readDword(MachineLine& line, MachineDraft& draft) {
    const std::size_t offset = readOffset(line);
    const std::uint32_t value = line.number("the value", kMostDword);
    setField(line, draft, offset, 4, [&](SmbiosStructure& to) { to.dword(offset, value); });
}

void readBytes(MachineLine& line, MachineDraft& draft) {
    std::size_t offset = readOffset(line);
    do {
        const std::uint8_t value = line.hexByte("the byte");
        setField(line, draft, offset, 1, [&](SmbiosStructure& to) { to.byte(offset, value); });
        ++offset;
    } while (line.more());
}

void readString(MachineLine& line, MachineDraft& draft) {
    if (line.quotedNext()) {
        const std::string text = line.text("the string");
        setField(line, draft, 0, 0, [&](SmbiosStructure& to) { to.string(text); });
        return;
    }
    const std::size_t offset = readOffset(line);
    const std::string text = line.text("the string");
    setField(line, draft, offset, 1, [&](SmbiosStructure& to) { to.string(offset, text); });
}

constexpr MachineStatement kStatements[] = {
    {"smbios", readSmbios}, {"segment", readSegment}, {"structure", readStructure},
    {"byte", readByte},     {"word", readWord},       {"dword", readDword},
    {"bytes", readBytes},   {"string", readString},
};

}  // namespace

std::span<const MachineStatement> smbiosStatements() {
    return kStatements;
}

}  // namespace sim
