// SPDX-License-Identifier: MIT
//
// Places a damaged table, asks every command and checks the bytes around each record.

#include "HostileServer.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string_view>

#include "Talvane.h"
#include "captures/LongRecords.h"

namespace captures {

namespace {

constexpr std::uint32_t kSegment = 0xF0000;
constexpr std::uint32_t kEntryAddress = 0xF0010;
constexpr std::uint32_t kTableAddress = 0x8000;

// The segment and a read of 64 KiB after it. Reads of tables at hostile addresses are refused.
constexpr std::uint64_t kMemory = 0x110000;

// How far memory is filled after a table.
constexpr std::size_t kFilledAfterTable = 0x400;

// SMBIOS 5.2.1, and the older entry point that is its second half.
struct EntryLayout {
    std::string_view anchor;
    std::size_t size;
    std::size_t tableLength;
    std::size_t tableAddress;
};
constexpr EntryLayout kSmbios = {"_SM_", 31, 22, 24};
constexpr EntryLayout kLegacy = {"_DMI_", 15, 6, 8};

const EntryLayout& LayoutOf(const TableImage& image) {
    return image.legacy ? kLegacy : kSmbios;
}

void Put(Bytes& bytes, std::size_t offset, std::uint32_t value, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i)
        bytes[offset + i] = static_cast<std::uint8_t>(value >> (8 * i));
}

// The image whose entry point has this layout; no entry without one.
TableImage Find(const sim::PhysicalMemory& memory, const EntryLayout& layout) {
    RawStructure segment{0, 0, Bytes(kSegmentScanned), {}};
    if (!memory.Read(kSegment, segment.formatted)) return {};
    for (std::size_t at = 0; at < kSegmentScanned; at += kParagraph) {
        const auto start = segment.formatted.begin() + static_cast<std::ptrdiff_t>(at);
        if (!std::equal(layout.anchor.begin(), layout.anchor.end(), start)) continue;
        TableImage image;
        image.entry.assign(start, start + static_cast<std::ptrdiff_t>(layout.size));
        image.table.resize(segment.Word(at + layout.tableLength));
        if (!memory.Read(segment.Dword(at + layout.tableAddress), image.table)) return {};
        return image;
    }
    return {};
}

// A record between two fences that nothing may touch.
template <class Record>
class Fenced {
public:
    Record* Get() { return &record_; }

    bool Intact() const { return before_ == kFence && after_ == kFence; }

private:
    using Fence = std::array<std::uint8_t, 64>;
    static constexpr Fence kFence = [] {
        Fence fence{};
        fence.fill(0xA5);
        return fence;
    }();

    Fence before_ = kFence;
    Record record_{};
    Fence after_ = kFence;
};

template <class Record>
void AskOne(const char* name, unsigned long command, std::vector<std::string>& wrong) {
    Fenced<Record> fenced;
    const int result = GetInfo(command, fenced.Get());
    if (result != 0 && result != -1)
        wrong.push_back(std::string(name) + " answers " + std::to_string(result));
    if (!fenced.Intact()) wrong.push_back(std::string(name) + " writes outside its record");
}

}  // namespace

TableImage ImageOf(const sim::PhysicalMemory& memory) {
    TableImage image = Find(memory, kSmbios);
    if (image.entry.empty()) {
        image = Find(memory, kLegacy);
        image.legacy = true;
    }
    if (image.entry.empty()) throw std::runtime_error("the machine has no readable table");
    return image;
}

HostileServer::HostileServer(const TableImage& image) : image_(image) {
    Put(image_.entry, LayoutOf(image_).tableAddress, kTableAddress, 4);
    server_.GetMemory().Resize(kMemory);
    Restore();
}

void HostileServer::SetEntryByte(std::size_t offset, std::uint8_t value) {
    server_.GetMemory().Write(kEntryAddress + static_cast<std::uint32_t>(offset), {&value, 1});
}

void HostileServer::SetTableByte(std::size_t offset, std::uint8_t value) {
    server_.GetMemory().Write(kTableAddress + static_cast<std::uint32_t>(offset), {&value, 1});
}

void HostileServer::StateLength(std::uint16_t length) {
    const std::size_t offset = LayoutOf(image_).tableLength;
    SetEntryByte(offset, static_cast<std::uint8_t>(length));
    SetEntryByte(offset + 1, static_cast<std::uint8_t>(length >> 8));
}

void HostileServer::FillFrom(std::size_t offset, std::uint8_t value) {
    server_.GetMemory().Write(kTableAddress + static_cast<std::uint32_t>(offset),
                              Bytes(image_.table.size() - offset + kFilledAfterTable, value));
}

void HostileServer::Restore() {
    server_.GetMemory().Write(kEntryAddress, image_.entry);
    server_.GetMemory().Write(kTableAddress, image_.table);
    server_.GetMemory().Write(kTableAddress + static_cast<std::uint32_t>(image_.table.size()),
                              Bytes(kFilledAfterTable, 0));
}

std::vector<std::string> HostileServer::Ask() {
    std::vector<std::string> wrong;
    server_.GetLog().Clear();
    release();
    (void)IsSmBiosSupport();
    AskOne<BaseBoardInformation>("board", TALVANE_BOARD, wrong);
    AskOne<LongProcessors>("processors", TALVANE_PROCESSORS, wrong);
    AskOne<MemoryInformation>("memory", TALVANE_MEMORY, wrong);
    AskOne<LongPorts>("ports", TALVANE_PORTS, wrong);
    AskOne<LongPower>("power", TALVANE_POWER, wrong);
    AskOne<LongPower>("ups", TALVANE_UPS, wrong);
    AskOne<LongFans>("fans", TALVANE_FANS, wrong);
    AskOne<VoltageInformation>("voltages", TALVANE_VOLTAGES, wrong);
    AskOne<TemperatureInformation>("temperatures", TALVANE_TEMPERATURES, wrong);
    AskOne<SysInformation>("system", TALVANE_SYSTEM, wrong);
    release();
    return wrong;
}

}  // namespace captures
