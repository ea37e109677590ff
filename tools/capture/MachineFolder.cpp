// SPDX-License-Identifier: MIT
//
// A statement for each thing, and a file for what tools of the field write as a file.

#include "tools/capture/MachineFolder.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <string_view>

#include "base/Bytes.h"
#include "tools/capture/BmcStatements.h"
#include "tools/capture/StatementWords.h"

namespace tool {
namespace {

archive::Bytes BytesOf(std::string_view text) {
    return archive::Bytes(text.begin(), text.end());
}

std::string HexNumber(std::uint64_t value) {
    char text[24];
    std::snprintf(text, sizeof text, "0x%llX", static_cast<unsigned long long>(value));
    return text;
}

void SetLittleEndian(archive::Bytes& bytes, std::size_t at, std::uint32_t value) {
    for (std::size_t i = 0; i < 4; ++i) bytes[at + i] = static_cast<std::uint8_t>(value >> 8 * i);
}

// Changes the checksum's byte so that the bytes [from, to) have the sum that they had.
void KeepSum(archive::Bytes& bytes, std::size_t checksumAt, std::uint32_t before,
             std::uint32_t after) {
    for (std::size_t i = 0; i < 4; ++i)
        bytes[checksumAt] =
            static_cast<std::uint8_t>(bytes[checksumAt] + (before >> 8 * i) - (after >> 8 * i));
}

// As `dmidecode --dump-bin` writes it: the entry point, whose table now lies at offset 32, and the
// table.
archive::Bytes DumpOf(const SmbiosCapture& smbios) {
    constexpr std::size_t kTableAt = 32;
    constexpr std::size_t kSmAddressAt = 24;
    constexpr std::size_t kSmChecksumAt = 21;  // of the half from _DMI_ on, whose sum stays
    constexpr std::size_t kDmiAddressAt = 8;
    constexpr std::size_t kDmiChecksumAt = 5;
    archive::Bytes dump(smbios.entry.begin(), smbios.entry.end());
    const std::size_t addressAt = smbios.isDmi ? kDmiAddressAt : kSmAddressAt;
    const std::uint32_t address = talvane::Le32(talvane::ByteView(dump), addressAt);
    KeepSum(dump, smbios.isDmi ? kDmiChecksumAt : kSmChecksumAt, address, kTableAt);
    SetLittleEndian(dump, addressAt, kTableAt);
    dump.resize(kTableAt);
    dump.insert(dump.end(), smbios.table.begin(), smbios.table.end());
    if (smbios.table.empty()) dump.push_back(0);  // a table is looked for within the dump
    return dump;
}

class Folder {
public:
    explicit Folder(const MachineCapture& capture) : capture_(capture) {}

    archive::Files Write(const CaptureHead& head, const std::vector<Way>& ways) {
        for (const std::string& line : head) Line("# " + line);
        for (const Way& way : ways) WriteWay(way);
        WriteSmbios();
        WriteUnopened();
        if (capture_.bmc) WriteBmc(*capture_.bmc);
        WritePci();
        WriteDrives();
        WriteLoad();
        files_["machine.txt"] = BytesOf(description_);
        return std::move(files_);
    }

private:
    void Line(const std::string& line) { description_ += line + '\n'; }

    // Of plain ASCII, as the statement takes it.
    static std::string PlainText(std::string text) {
        for (char& c : text)
            if (c < 0x20 || c >= 0x7F) c = '?';
        return QuotedText(text);
    }

    void WriteWay(const Way& way) {
        std::string line = "way " + way.area + (way.isDirect ? " direct " : " host ");
        line += PlainText(way.from);
        if (!way.note.empty()) line += " note " + PlainText(way.note);
        if (!way.problem.empty()) line += " problem " + PlainText(way.problem);
        if (!way.whyUnopened.empty())
            line += " unopened " + PlainText(way.unopened) + ' ' + PlainText(way.whyUnopened);
        Line(line);
    }

    void WriteSmbios() {
        constexpr std::uint64_t kMaxMemory = std::uint64_t{4} << 30;
        if (capture_.memorySize != 0)
            Line("memory " + HexNumber(std::min(capture_.memorySize, kMaxMemory)));
        if (!capture_.smbios) return;
        const SmbiosCapture& smbios = *capture_.smbios;
        if (smbios.isTableRead) {
            files_["smbios.bin"] = DumpOf(smbios);
            Line(std::string("smbios dump smbios.bin") + (smbios.isDmi ? " anchor dmi" : ""));
            return;
        }
        // Where the table cannot be read, its address counts.
        constexpr std::uint32_t kSegment = 0xF0000;
        archive::Bytes segment(0x10000);
        std::copy(smbios.entry.begin(), smbios.entry.end(),
                  segment.begin() + static_cast<std::ptrdiff_t>(smbios.at - kSegment));
        files_["segment.bin"] = segment;
        Line("segment segment.bin");
    }

    void WriteUnopened() {
        for (const Unopened& device : capture_.unopened)
            if (device.error != ENOENT || device.path == "/proc/stat" ||
                device.path == "/dev/mem" || device.path.starts_with("/dev/hd"))
                Line("without " + device.path + ' ' + OpenErrorName(device.error));
    }

    void WriteBmc(const BmcCapture& bmc) {
        if (!bmc.records.empty()) {
            archive::Bytes& dump = files_["sdr.bin"];
            for (const CapturedBytes& record : bmc.records)
                dump.insert(dump.end(), record.begin(), record.end());
        }
        if (!bmc.inventory.empty()) files_["fru.bin"] = bmc.inventory;
        description_ += BmcStatements(bmc);
    }

    void WritePci() {
        if (capture_.pci.empty()) return;
        std::string text;
        for (const PciCapture& function : capture_.pci) text += LspciText(function);
        files_["pci.txt"] = BytesOf(text);
        Line("pci capture pci.txt");
    }

    // As `lspci -nx` writes it.
    static std::string LspciText(const PciCapture& function) {
        const auto& header = function.header;
        char text[96];
        std::snprintf(text, sizeof text, "%02x:%02x.%x %02x%02x: %02x%02x:%02x%02x (rev %02x)\n",
                      function.bus, function.device, function.function, header[11], header[10],
                      header[1], header[0], header[3], header[2], header[8]);
        std::string lines = text;
        for (std::size_t at = 0; at < header.size(); ++at) {
            std::snprintf(text, sizeof text, at % 16 == 0 ? "%02x: " : "",
                          static_cast<unsigned>(at));
            if (at % 16 == 0) lines += text;
            std::snprintf(text, sizeof text, "%02x", header[at]);
            lines += text + std::string(at % 16 == 15 ? "\n" : " ");
        }
        return lines + '\n';
    }

    void WriteDrives() {
        if (capture_.hasIdeFolder && capture_.drives.empty()) Line("drive none");
        for (const DriveCapture& drive : capture_.drives) {
            const std::string name = std::string("hd") + drive.letter;
            const std::string folder =
                "ide/ide" + std::to_string((drive.letter - 'a') / 2) + '/' + name;
            for (const auto& [file, text] : drive.files)
                files_[folder + '/' + file] = BytesOf(text);
            std::string line = "drive " + name + " files " + folder;
            if (drive.isOpened) line += " sectors " + std::to_string(drive.sectorCount);
            if (drive.identity) {
                files_[name + ".identity"] = *drive.identity;
                line += " identity " + name + ".identity";
            }
            if (!drive.sectors.empty()) {
                files_[name + ".sectors"] = BytesOf(SectorLines(drive));
                line += " dump " + name + ".sectors";
            }
            Line(line);
        }
    }

    static std::string SectorLines(const DriveCapture& drive) {
        std::string lines;
        for (const auto& [sector, bytes] : drive.sectors) {
            lines += std::to_string(sector) + ' ';
            char digits[4];
            for (const std::uint8_t byte : bytes) {
                std::snprintf(digits, sizeof digits, "%02x", byte);
                lines += digits;
            }
            lines += '\n';
        }
        return lines;
    }

    // An empty text stands for nothing that could be read, as a blank line does.
    void WriteText(const std::string& name, const std::string& text) {
        files_[name] = BytesOf(text.empty() ? "\n" : text);
    }

    void WriteLoad() {
        const auto& stat = capture_.load.stat;
        if (!stat[0].empty() || !stat[1].empty()) {
            WriteText("stat-0.txt", stat[0]);
            WriteText("stat-1.txt", stat[1]);
            Line("stat stat-0.txt");
            Line("stat at 1 stat-1.txt");
            Line("stat continues");
        }
        WriteText("free.txt", capture_.load.free);
        Line("free free.txt");
    }

    const MachineCapture& capture_;
    archive::Files files_;
    std::string description_;
};

}  // namespace

archive::Files MachineFolderOf(const MachineCapture& capture, const CaptureHead& head,
                               const std::vector<Way>& ways) {
    return Folder(capture).Write(head, ways);
}

}  // namespace tool
