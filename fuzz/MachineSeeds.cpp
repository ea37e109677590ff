// SPDX-License-Identifier: MIT
//
// Writes the parts of machines as inputs of the targets, as seeds.py does with examples of its own.
// Usage: machine_seeds FOLDER MACHINE... The inputs are FOLDER/TARGET/MACHINE, with the number of
// the question for the target smbios. What a machine does not have makes no input.

#include <fcntl.h>
#include <linux/hdreg.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "IPMI/IPMIbase.h"
#include "SmBios/EntryPointScan.h"
#include "base/Bytes.h"
#include "fuzz/Folder.h"
#include "simulator/description/MachineFile.h"
#include "simulator/machine/IdeDrive.h"
#include "simulator/machine/Machine.h"

namespace {

using sim::Bytes;

void Append(Bytes& bytes, std::span<const std::uint8_t> more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

void AppendCounted(Bytes& bytes, std::span<const std::uint8_t> more) {
    bytes.push_back(static_cast<std::uint8_t>(more.size()));
    Append(bytes, more);
}

void AppendText(Bytes& bytes, std::string_view text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
    bytes.push_back(0);
}

// Partition tables (ATA/MBR): four entries of 16 bytes at the end of a sector.
constexpr std::size_t kTableAt = 446;
constexpr std::size_t kEntrySize = 16;
constexpr std::size_t kTableSize = 4 * kEntrySize;
constexpr std::size_t kTypeAt = 4;
constexpr std::size_t kStartAt = 8;
constexpr std::uint32_t kSectorsPerCylinder = 255 * 63;

// The sector at which the extended partition of a table or record starts.
std::optional<std::uint32_t> StartOfExtended(talvane::ByteView entries) {
    for (std::size_t at = 0; at < entries.size(); at += kEntrySize) {
        const std::uint8_t type = entries[at + kTypeAt];
        if (type == 0x05 || type == 0x0F) return talvane::Le32(entries, at + kStartAt);
    }
    return std::nullopt;
}

// The parts of one machine, each as the input of one target; empty where there is none.
class Parts {
public:
    explicit Parts(const std::filesystem::path& machine) { sim::LoadMachine(machine, machine_); }

    Bytes Firmware() {
        constexpr std::uint32_t kSegment = 0xF0000;
        Bytes segment(0x10000);
        if (!machine_.GetMemory().Read(kSegment, segment)) return {};
        if (const auto entry = talvane::FindSmBiosEntryPoint(segment))
            return WithTable(*entry, entry->StructureTableAddress, entry->StructureTableLength);
        if (const auto entry = talvane::FindDmiEntryPoint(segment))
            return WithTable(*entry, entry->biosStructureTableAddress, entry->StructureTableLength);
        return {};
    }

    // All sensors answer what the first one does.
    Bytes Repository() {
        constexpr unsigned kLast = 0xFFFF;
        Bytes parts;
        unsigned id = 0;
        do {
            const Bytes response = Ask(IPMIbase::STORAGE_CMD, IPMIbase::Get_SDR,
                                       {0, 0, talvane::LowByte(static_cast<int>(id)),
                                        talvane::HighByte(static_cast<int>(id)), 0, 0xFF});
            if (response.size() <= 2) break;
            AppendCounted(parts, talvane::ByteView(response).subspan(2));
            id = talvane::Le16(response, 0);
        } while (id != kLast);
        if (parts.empty()) return {};
        constexpr std::size_t kNumberAt = 1 + 7;
        const std::uint8_t first = talvane::ByteAt(parts, kNumberAt);
        parts.push_back(0);
        Append(parts, Ask(IPMIbase::SENSER_EVENT_CMD, IPMIbase::Get_sensor_reading, {first}));
        Append(parts, Ask(IPMIbase::SENSER_EVENT_CMD, IPMIbase::get_sensor_threshold, {first}));
        return parts;
    }

    Bytes Inventory() {
        constexpr std::uint8_t kPiece = 16;
        Bytes image;
        for (;;) {
            const auto at = static_cast<int>(image.size());
            const Bytes response = Ask(IPMIbase::STORAGE_CMD, IPMIbase::Read_FRU_info,
                                       {0, talvane::LowByte(at), talvane::HighByte(at), kPiece});
            if (response.size() < 2) return image;
            Append(image, talvane::ByteView(response).subspan(1));
        }
    }

    // The first drive alone, with its tables.
    Bytes Drive() {
        const std::string folder = "/proc/ide/ide0/hda/";
        const std::string media = TextOf(folder + "media");
        if (media.empty()) return {};
        Bytes parts{1};
        AppendText(parts, media);
        AppendText(parts, TextOf(folder + "model"));
        AppendText(parts, TextOf(folder + "capacity"));

        const auto opened = machine_.Open("", "/dev/hda", O_RDONLY);
        const auto disk = static_cast<int>(opened->value);
        sim::DriveIdentity identity{};
        (void)machine_.Ioctl("", disk, HDIO_GET_IDENTITY, identity.data());
        constexpr std::size_t kMaxCounted = 255;
        AppendCounted(parts, talvane::ByteView(identity).first(kMaxCounted));
        parts.insert(parts.end(), 3, 0);  // the other drives
        const Bytes table = EntriesAt(disk, 0, kTableSize);
        Append(parts, table);
        const auto whole = StartOfExtended(table);
        for (auto start = whole; start;) {
            const auto cylinder = static_cast<int>(*start / kSectorsPerCylinder);
            const Bytes record = EntriesAt(disk, *start, 2 * kEntrySize);
            Append(parts, Bytes{talvane::LowByte(cylinder), talvane::HighByte(cylinder)});
            Append(parts, record);
            start = StartOfExtended(record);
            if (start) *start += *whole;  // a record counts from the start of the first one
        }
        (void)machine_.Close("", disk);
        return parts;
    }

    Bytes Load() {
        const std::string text = TextOf("/proc/stat");
        return {text.begin(), text.end()};
    }

private:
    // The entry point in 32 bytes, then the table.
    template <class EntryPoint>
    Bytes WithTable(const EntryPoint& entry, std::uint32_t address, std::size_t length) {
        constexpr std::size_t kEntryPointSize = 32;
        Bytes bytes(kEntryPointSize);
        std::memcpy(bytes.data(), &entry, sizeof entry);
        Bytes table(length);
        if (!machine_.GetMemory().Read(address, table)) return {};
        Append(bytes, table);
        return bytes;
    }

    // The response without its completion code.
    Bytes Ask(std::uint8_t netFunction, std::uint8_t command, Bytes data) {
        if (!machine_.HasBmc()) return {};
        sim::BmcRequest request;
        request.netFn = netFunction;
        request.command = command;
        request.data = std::move(data);
        machine_.GetBmc().Answer(request);
        return request.response;
    }

    std::string TextOf(const std::string& path) {
        const auto opened = machine_.Open("", path.c_str(), O_RDONLY);
        if (!opened->Ok()) return "";
        std::string text(4096, '\0');
        const auto file = static_cast<int>(opened->value);
        const auto got = machine_.Read("", file, text.data(), text.size());
        (void)machine_.Close("", file);
        text.resize(static_cast<std::size_t>(std::max<std::int64_t>(got->value, 0)));
        return text;
    }

    static Bytes EntriesAt(int disk, std::uint64_t sector, std::size_t size) {
        constexpr std::uint64_t kSectorSize = 512;
        Bytes entries(size);
        (void)!pread64(disk, entries.data(), size,
                       static_cast<off64_t>(sector * kSectorSize + kTableAt));
        return entries;
    }

    sim::Machine machine_;
};

class Seeds {
public:
    Seeds(std::filesystem::path folder, std::string name)
        : folder_(std::move(folder)), name_(std::move(name)) {}

    void Write(const char* target, const Bytes& input, const std::string& suffix = "") const {
        if (input.empty()) return;
        std::filesystem::create_directories(folder_ / target);
        fuzz::WriteFile(folder_ / target / (name_ + suffix), input);
    }

    // Byte 31 chooses what the firmware's table is asked.
    void WriteQuestions(Bytes firmware) const {
        constexpr std::size_t kQuestionAt = 31;
        constexpr std::uint8_t kQuestions = 14;
        if (firmware.empty()) return;
        for (std::uint8_t question = 0; question < kQuestions; ++question) {
            firmware[kQuestionAt] = question;
            Write("smbios", firmware, "_" + std::to_string(question));
        }
    }

private:
    std::filesystem::path folder_;
    std::string name_;
};

}  // namespace

int main(int count, char** arguments) {
    if (count < 3) {
        std::fputs("usage: machine_seeds FOLDER MACHINE...\n", stderr);
        return 2;
    }
    for (int i = 2; i < count; ++i) {
        const std::filesystem::path place = arguments[i];
        Parts parts(place);
        const Seeds seeds(arguments[1], place.filename());
        seeds.WriteQuestions(parts.Firmware());
        seeds.Write("sensor_repository", parts.Repository());
        seeds.Write("fru", parts.Inventory());
        seeds.Write("disks", parts.Drive());
        seeds.Write("proc_texts", parts.Load());
    }
    return 0;
}
