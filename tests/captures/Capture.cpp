// SPDX-License-Identifier: MIT
//
// Finds the captured machines and loads them into a simulated server.

#include "Capture.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>

#include "DmidecodeText.h"
#include "Expectation.h"
#include "RawTable.h"

namespace captures {

namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t kMegabyte = 1u << 20;

bool HasSuffix(const std::string& name, std::string_view suffix) {
    return name.ends_with(suffix);
}

std::string WithoutSuffix(const std::string& name, std::string_view suffix) {
    return name.substr(0, name.size() - suffix.size());
}

fs::path IfPresent(const fs::path& path) {
    return fs::exists(path) ? path : fs::path();
}

// The pages of a segment capture that lie elsewhere, with their addresses.
std::vector<std::pair<std::uint32_t, fs::path>> PagesOf(const Capture& capture) {
    const std::string prefix = WithoutSuffix(capture.name, ".f0000") + ".mem-";
    std::vector<std::pair<std::uint32_t, fs::path>> pages;
    for (const fs::directory_entry& entry : fs::directory_iterator(capture.image.parent_path())) {
        const std::string name = entry.path().filename();
        if (!name.starts_with(prefix)) continue;
        const auto address = LeadingNumber("0x" + name.substr(prefix.size()));
        pages.emplace_back(static_cast<std::uint32_t>(address.value()), entry.path());
    }
    return pages;
}

// Where the segment has an anchor on a paragraph boundary; its size without one.
std::size_t AnchorAt(const Bytes& segment, std::string_view anchor) {
    for (std::size_t at = 0; at < kSegmentScanned; at += kParagraph)
        if (std::equal(anchor.begin(), anchor.end(), segment.begin() + static_cast<long>(at)))
            return at;
    return segment.size();
}

// Whether the library's one big read, of as many bytes as the page's address and 64 KiB more, stays
// inside memory.
bool IsReadable(std::uint64_t tableAddress, std::uint64_t memory) {
    const std::uint64_t page = tableAddress & 0xFFFF0000u;
    return page + page + 0x10000 <= memory;
}

// Counts go on after the damage that dmidecode stopped at, and so do the elements.
void ExpectMoreAfterDamage(const Bytes& dump, ExpectedFields& fields) {
    struct Count {
        const char* field;
        std::uint8_t type;
    };
    constexpr Count kCounts[] = {{"processors.quantity", 4},    {"ports.quantity", 8},
                                 {"voltages.quantity", 26},     {"fans.quantity", 27},
                                 {"temperatures.quantity", 28}, {"power.TotalNumber", 39}};
    for (const Count& count : kCounts)
        fields.Find(count.field)
            ->By(Rule::kWalksPastDamage, std::to_string(CountPastDamage(dump, count.type)));
    fields.OpenBy(Rule::kWalksPastDamage);
}

ExpectedFields ExpectedByPeer(const Capture& capture) {
    std::ifstream in(capture.words);
    const DmidecodeText text = ParseDmidecode(in);
    const Bytes dump = FileBytes(capture.dump);
    ExpectedFields fields = ExpectedOf(PeerTable(text, StructuresOfDump(dump)));
    if (text.stoppedAtDamage) ExpectMoreAfterDamage(dump, fields);
    return fields;
}

}  // namespace

void Capture::LoadInto(sim::SimulatedServer& server) const {
    if (!isSegment) {
        server.GetMemory().PlaceDump(FileBytes(image));
        return;
    }
    server.GetMemory().PlaceSegment(FileBytes(image));
    for (const auto& [address, path] : PagesOf(*this)) {
        // The firmware puts such a table at the end of memory.
        const Bytes page = FileBytes(path);
        const std::uint64_t end = std::uint64_t{address} + page.size();
        server.GetMemory().Resize((end + kMegabyte - 1) / kMegabyte * kMegabyte);
        server.GetMemory().Write(address, page);
    }
}

ExpectedFields Capture::Expected(const sim::PhysicalMemory& memory) const {
    if (words.empty()) return ExpectedWithoutFirmwareTable();
    if (!isSegment) return ExpectedByPeer(*this);

    constexpr std::size_t kSmbiosTable = 24;  // SMBIOS 5.2.1
    constexpr std::size_t kDmiTable = 8;
    const RawStructure segment{0, 0, FileBytes(image), {}};
    std::size_t field = AnchorAt(segment.formatted, "_SM_") + kSmbiosTable;
    if (field >= segment.formatted.size()) field = AnchorAt(segment.formatted, "_DMI_") + kDmiTable;
    if (field >= segment.formatted.size())
        return ExpectedWithoutTable(false, Rule::kNoSmbios3Entry);
    if (!IsReadable(segment.Dword(field), memory.Size()))
        return ExpectedWithoutTable(true, Rule::kTableNearMemoryEnd);
    return ExpectedByPeer(*this);
}

fs::path CaptureFolder() {
    const char* folder = std::getenv("TALVANE_SHARED_DATA");
    return fs::path(folder != nullptr ? folder : TALVANE_SHARED_DATA) / "smbios";
}

std::vector<Capture> AllCaptures() {
    const fs::path folder = CaptureFolder();
    std::vector<Capture> captures;
    if (!fs::is_directory(folder)) return captures;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        const std::string file = entry.path().filename();
        if (!HasSuffix(file, ".bin") || file.find(".mem-") != std::string::npos) continue;
        Capture capture;
        capture.name = WithoutSuffix(file, ".bin");
        capture.image = entry.path();
        capture.isSegment = HasSuffix(capture.name, ".f0000");
        std::string base = capture.isSegment ? WithoutSuffix(capture.name, ".f0000") : capture.name;
        capture.words = IfPresent(folder / (base + ".dmidecode.txt"));
        if (HasSuffix(base, ".legacy")) base = WithoutSuffix(base, ".legacy");
        capture.dump = IfPresent(folder / (base + ".bin"));
        captures.push_back(capture);
    }
    std::ranges::sort(captures, {}, &Capture::name);
    return captures;
}

Comparison Examine(const Capture& capture) {
    sim::SimulatedServer server;
    capture.LoadInto(server);
    return Compare(capture.Expected(server.GetMemory()), AskEverything());
}

}  // namespace captures
