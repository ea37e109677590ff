// SPDX-License-Identifier: MIT
//
// Reads and shows TALVANE_MEMORY.

#include "tools/records/Memory.h"

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "Talvane.h"
#include "tools/base/JsonValue.h"
#include "tools/base/Layout.h"
#include "tools/base/Text.h"

namespace tool {
namespace {

constexpr std::uint64_t kTotalWrapsAt = 65536;  // megabytes

std::string InGigabytes(int megabytes) {
    char text[32];
    std::snprintf(text, sizeof text, "%.4g GB", megabytes / 1024.0);
    return text;
}

// Only banks whose size is in megabytes count; smaller ones never make the total wrap.
std::uint64_t SumOfBanks(const std::vector<Bank>& banks) {
    std::uint64_t sum = 0;
    for (const Bank& bank : banks) {
        std::uint64_t size = 0;
        const char* end = bank.size.data() + bank.size.size();
        const char* unit = std::from_chars(bank.size.data(), end, size).ptr;
        if (std::string_view(unit, end) == " MB") sum += size;
    }
    return sum;
}

// When the library finds no description of memory, it leaves both parts empty.
bool IsDescribed(const Memory& memory) {
    return memory.totalMegabytes != 0 || !memory.banks.empty();
}

std::string MegabytesText(const Memory& memory) {
    return std::to_string(memory.totalMegabytes) + " MB";
}

}  // namespace

std::optional<Memory> ReadMemory() {
    MemoryInformation record{};
    if (GetInfo(TALVANE_MEMORY, &record) != 0) return std::nullopt;
    Memory memory{.totalMegabytes = record.TotalSize, .banks = {}};
    for (int i = 0; i < record.quantity; ++i) {
        const BANK& bank = record.bank[i];
        memory.banks.push_back({.slot = bank.SlotNumber,
                                .size = FieldText(bank.size),
                                .type = FieldText(bank.type),
                                .typeDetail = FieldText(bank.TypeDetail),
                                .speed = FieldText(bank.speed),
                                .manufacturer = FieldText(bank.manufacturer)});
    }
    return memory;
}

std::string TotalText(const Memory& memory) {
    if (!IsDescribed(memory)) return {};
    std::string text = MegabytesText(memory);
    if (memory.totalMegabytes >= 1024) text += " (" + InGigabytes(memory.totalMegabytes) + ")";
    return text;
}

std::vector<std::string> MemoryNotes(const Memory& memory) {
    std::vector<std::string> notes;
    if (!IsDescribed(memory))
        notes.push_back("The firmware describes no memory in a way that can be read.");
    const std::uint64_t sum = SumOfBanks(memory.banks);
    if (sum >= kTotalWrapsAt)
        notes.push_back("The total counts modulo " + std::to_string(kTotalWrapsAt) +
                        " MB; the banks below add up to " + std::to_string(sum) + " MB.");
    return notes;
}

std::string ToText(const Memory& memory) {
    std::vector<std::string> blocks{FactBlock({{"Total", TotalText(memory)}})};
    for (const std::string& note : MemoryNotes(memory)) blocks.push_back(NoteBlock(note));
    std::vector<Row> rows;
    for (const Bank& bank : memory.banks)
        rows.push_back({std::to_string(bank.slot), bank.size, bank.type, bank.typeDetail,
                        bank.speed, bank.manufacturer});
    constexpr auto kRight = Column::Align::kRight;
    blocks.push_back(TableBlock({{"Slot", kRight},
                                 {"Size", kRight},
                                 {"Type"},
                                 {"Detail"},
                                 {"Speed", kRight},
                                 {"Manufacturer"}},
                                rows));
    return Section("Memory", blocks);
}

Json ToJson(const Memory& memory) {
    Json banks = Json::array();
    for (const Bank& bank : memory.banks)
        banks.push_back({{"slot", bank.slot},
                         {"size", QuantityJson(bank.size)},
                         {"type", TextJson(bank.type)},
                         {"typeDetail", TextJson(bank.typeDetail)},
                         {"speed", QuantityJson(bank.speed)},
                         {"manufacturer", TextJson(bank.manufacturer)}});
    const Json total = IsDescribed(memory)
                           ? QuantityJson(memory.totalMegabytes, "MB", MegabytesText(memory))
                           : Json();
    return {{"total", total}, {"banks", banks}};
}

}  // namespace tool
