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

constexpr std::uint32_t kMaxByte = 0xFF;
constexpr std::uint32_t kMaxWord = 0xFFFF;
constexpr std::uint32_t kMaxDword = 0xFFFFFFFF;

SmbiosDraft& BeginSmbios(SmbiosDraft::Source source, MachineLine& line, MachineDraft& draft) {
    if (draft.smbios)
        line.Fail("the machine's SMBIOS was given in line " +
                  std::to_string(draft.smbios->line.LineNumber()));
    return draft.smbios.emplace(SmbiosDraft{source, line, {}, {}, {}, nullptr, {}});
}

void ReadVersion(MachineLine& line, SmbiosPlacement& placement) {
    const std::string text = line.TakeWord("the version");
    const char* const end = text.data() + text.size();
    const auto major = std::from_chars(text.data(), end, placement.major);
    if (major.ec != std::errc() || major.ptr == end || *major.ptr != '.')
        line.Fail("the version \"" + text + "\" is not MAJOR.MINOR");
    const auto minor = std::from_chars(major.ptr + 1, end, placement.minor);
    if (minor.ec != std::errc() || minor.ptr != end)
        line.Fail("the version \"" + text + "\" is not MAJOR.MINOR");
}

// The options that may follow the version.
void ReadTableOption(const std::string& option, MachineLine& line, SmbiosPlacement& placement) {
    if (option == "anchor") {
        line.ExpectWord("dmi");
        placement.anchor = SmbiosPlacement::Anchor::kDmi;
    } else if (option == "entry") {
        placement.entry = line.TakeNumber("the entry point's address", kMaxDword);
        constexpr std::uint32_t last = 0xFFFE0;
        if (placement.entry < 0xF0000 || placement.entry > last || placement.entry % 16 != 0)
            line.Fail("an entry point lies on a multiple of 16 from 0xF0000 to 0xFFFE0");
    } else if (option == "table") {
        placement.table = line.TakeNumber("the table's address", kMaxDword);
        if (placement.table == 0) line.Fail("a table does not lie at address 0");
    } else if (option == "structures") {
        placement.structures = static_cast<int>(line.TakeNumber("the structure count", kMaxWord));
    } else if (option == "length") {
        placement.length = static_cast<int>(line.TakeNumber("the table length", kMaxWord));
    } else {
        line.Fail("\"" + option + "\" is none of anchor, entry, table, structures, length");
    }
}

void ReadSmbios(MachineLine& line, MachineDraft& draft) {
    const std::string kind = line.TakeWord("\"dump\" or \"version\"");
    if (kind == "dump") {
        Bytes bytes = draft.Capture(line);
        SmbiosDraft& smbios = BeginSmbios(SmbiosDraft::Source::kDump, line, draft);
        smbios.bytes = std::move(bytes);
        if (line.TakeIf("anchor")) {
            line.ExpectWord("dmi");
            smbios.placement.anchor = SmbiosPlacement::Anchor::kDmi;
        }
    } else if (kind == "version") {
        SmbiosPlacement& placement = BeginSmbios(SmbiosDraft::Source::kText, line, draft).placement;
        ReadVersion(line, placement);
        std::set<std::string> seen;
        while (line.HasMore()) {
            const std::string option = line.TakeWord("the option");
            if (!seen.insert(option).second) line.Fail("\"" + option + "\" is given twice");
            ReadTableOption(option, line, placement);
        }
    } else {
        line.Fail("smbios is followed by \"dump\" or \"version\", not by \"" + kind + "\"");
    }
}

void ReadSegment(MachineLine& line, MachineDraft& draft) {
    Bytes bytes = draft.Capture(line);
    BeginSmbios(SmbiosDraft::Source::kSegment, line, draft).bytes = std::move(bytes);
}

void ReadStructure(MachineLine& line, MachineDraft& draft) {
    const std::uint32_t type = line.TakeNumber("the type", kMaxByte);
    line.ExpectWord("handle");
    const std::uint32_t handle = line.TakeNumber("the handle", kMaxWord);
    line.ExpectWord("length");
    const std::uint32_t length = line.TakeNumber("the length", kMaxByte);
    if (length < 4) line.Fail("a structure is at least as long as its header of 4 bytes");
    if (!draft.smbios || draft.smbios->source != SmbiosDraft::Source::kText)
        line.Fail("structures follow an \"smbios version\" line");
    draft.smbios->last = &draft.smbios->table.Add(static_cast<std::uint8_t>(type),
                                                  static_cast<std::uint16_t>(handle),
                                                  static_cast<std::uint8_t>(length));
    draft.smbios->fields.clear();
}

SmbiosStructure& StructureOf(MachineLine& line, MachineDraft& draft) {
    if (!draft.smbios || draft.smbios->last == nullptr)
        line.Fail("fields and strings follow a \"structure\" line");
    return *draft.smbios->last;
}

// Sets a field by `set`. Fails when an earlier line set one of its bytes, or when it does not lie
// in the structure.
template <typename Set>
void SetField(MachineLine& line, MachineDraft& draft, std::size_t offset, std::size_t size,
              Set set) {
    SmbiosStructure& structure = StructureOf(line, draft);
    for (std::size_t at = offset; at < offset + size; ++at) {
        const auto [field, fresh] = draft.smbios->fields.emplace(at, line.LineNumber());
        if (!fresh)
            line.Fail("the byte at offset " + std::to_string(at) + " was set in line " +
                      std::to_string(field->second));
    }
    try {
        set(structure);
    } catch (const std::exception& error) {
        line.Fail(error.what());
    }
}

std::size_t TakeOffset(MachineLine& line) {
    return line.TakeNumber("the offset", kMaxByte);
}

void ReadByte(MachineLine& line, MachineDraft& draft) {
    const std::size_t offset = TakeOffset(line);
    const std::uint8_t value = line.TakeByte("the value");
    SetField(line, draft, offset, 1, [&](SmbiosStructure& to) { to.Byte(offset, value); });
}

void ReadWord(MachineLine& line, MachineDraft& draft) {
    const std::size_t offset = TakeOffset(line);
    const auto value = static_cast<std::uint16_t>(line.TakeNumber("the value", kMaxWord));
    SetField(line, draft, offset, 2, [&](SmbiosStructure& to) { to.Word(offset, value); });
}

void ReadDword(MachineLine& line, MachineDraft& draft) {
    const std::size_t offset = TakeOffset(line);
    const std::uint32_t value = line.TakeNumber("the value", kMaxDword);
    SetField(line, draft, offset, 4, [&](SmbiosStructure& to) { to.Dword(offset, value); });
}

void ReadBytes(MachineLine& line, MachineDraft& draft) {
    std::size_t offset = TakeOffset(line);
    do {
        const std::uint8_t value = line.TakeHexByte("the byte");
        SetField(line, draft, offset, 1, [&](SmbiosStructure& to) { to.Byte(offset, value); });
        ++offset;
    } while (line.HasMore());
}

void ReadString(MachineLine& line, MachineDraft& draft) {
    if (line.IsNextQuoted()) {
        const std::string text = line.TakeText("the string");
        SetField(line, draft, 0, 0, [&](SmbiosStructure& to) { to.String(text); });
        return;
    }
    const std::size_t offset = TakeOffset(line);
    const std::string text = line.TakeText("the string");
    SetField(line, draft, offset, 1, [&](SmbiosStructure& to) { to.String(offset, text); });
}

constexpr MachineStatement kSmbiosStatements[] = {
    {"smbios", ReadSmbios}, {"segment", ReadSegment}, {"structure", ReadStructure},
    {"byte", ReadByte},     {"word", ReadWord},       {"dword", ReadDword},
    {"bytes", ReadBytes},   {"string", ReadString},
};

}  // namespace

std::span<const MachineStatement> SmbiosStatements() {
    return kSmbiosStatements;
}

}  // namespace sim
