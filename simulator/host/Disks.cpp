// SPDX-License-Identifier: MIT
//
// What sysfs says of disks, kind by kind, and what their drivers say.

#include "simulator/host/Disks.h"

#include <fcntl.h>
#include <linux/hdreg.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <optional>

namespace sim {
namespace {

constexpr char kFirstLetter = 'a';
constexpr char kLastLetter = 'd';

// The files of a disk's texts below /sys/block/NAME; null where its kind has no such file.
struct DiskKind {
    std::string_view prefix;
    const char* model;
    const char* serial;
    const char* firmware;
};

constexpr DiskKind kKinds[] = {
    {"sd", "device/model", nullptr, "device/rev"},  // the serial number is in a page of its own
    {"nvme", "device/model", "device/serial", "device/firmware_rev"},
    {"vd", nullptr, "serial", nullptr},
    {"hd", "device/model", "device/serial", "device/firmware"},
};

bool IsAll(std::string_view text, bool (*accepts)(char)) {
    return !text.empty() && std::all_of(text.begin(), text.end(), accepts);
}
bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsLetter(char c) {
    return c >= 'a' && c <= 'z';
}

// The kind of a whole disk's name: sda, nvme0n1. Null for anything else, such as the paths of an
// NVMe disk with several (nvme0c1n1).
const DiskKind* KindOf(std::string_view name) {
    for (const DiskKind& kind : kKinds) {
        if (!name.starts_with(kind.prefix)) continue;
        const std::string_view rest = name.substr(kind.prefix.size());
        if (kind.prefix != "nvme") return IsAll(rest, IsLetter) ? &kind : nullptr;
        const std::size_t middle = rest.find('n');
        const bool isWhole = middle != std::string_view::npos &&
                             IsAll(rest.substr(0, middle), IsDigit) &&
                             IsAll(rest.substr(middle + 1), IsDigit);
        return isWhole ? &kind : nullptr;
    }
    return nullptr;
}

std::optional<char> OwnLetter(std::string_view name) {
    if (name.size() != 3 || !name.starts_with("hd") || name[2] > kLastLetter) return std::nullopt;
    return name[2];
}

// The serial number of a SCSI disk: page 0x80 of its product data has it after four bytes (SPC-3,
// 7.6.10).
std::string ScsiSerial(const HostFiles& files, const std::string& folder) {
    constexpr std::size_t kPageHeader = 4;
    constexpr std::size_t kMaxPage = 256;
    Bytes page;
    try {
        page = files.Read(folder + "device/vpd_pg80", kMaxPage);
    } catch (const HostFileError&) {
        return "";
    }
    if (page.size() <= kPageHeader) return "";
    std::string serial(page.begin() + kPageHeader, page.end());
    serial.erase(std::find(serial.begin(), serial.end(), '\0'), serial.end());
    const std::size_t first = serial.find_first_not_of(' ');
    if (first == std::string::npos) return "";
    return serial.substr(first, serial.find_last_not_of(' ') - first + 1);
}

// SATA disks name ATA as their vendor, SCSI disks their maker.
std::string ScsiModel(const HostFiles& files, const std::string& folder) {
    const std::string vendor = files.Text(folder + "device/vendor");
    const std::string model = files.Text(folder + "device/model");
    return vendor.empty() || vendor == "ATA" ? model : vendor + " " + model;
}

std::optional<DriveIdentity> IdentityOfDriver(const std::string& device) {
    const int descriptor = open(device.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_LARGEFILE);
    if (descriptor < 0) return std::nullopt;
    DriveIdentity identity{};
    const bool answered = ioctl(descriptor, HDIO_GET_IDENTITY, identity.data()) == 0;
    (void)close(descriptor);  // result not used: nothing was written
    return answered ? std::optional(identity) : std::nullopt;
}

std::string ModelOf(const DriveIdentity& identity) {
    constexpr std::size_t kModelAt = 54;  // ATA-5, 8.12.8: words 27 to 46
    constexpr std::size_t kModelSize = 40;
    const auto first = identity.begin() + kModelAt;
    std::string model(first, std::find(first, first + kModelSize, std::uint8_t{0}));
    model.erase(model.find_last_not_of(' ') + 1);
    return model;
}

}  // namespace

std::map<char, std::string> ChooseDisks(const std::vector<std::string>& names) {
    std::map<char, std::string> chosen;
    std::vector<std::pair<const DiskKind*, std::string>> others;
    for (const std::string& name : names) {
        const DiskKind* const kind = KindOf(name);
        if (kind == nullptr) continue;
        if (const auto letter = OwnLetter(name))
            chosen[*letter] = name;
        else
            others.emplace_back(kind, name);
    }
    // sdz comes before sdaa, and nvme2n1 before nvme10n1.
    std::sort(others.begin(), others.end(), [](const auto& one, const auto& other) {
        if (one.first != other.first) return one.first < other.first;
        if (one.second.size() != other.second.size())
            return one.second.size() < other.second.size();
        return one.second < other.second;
    });
    char letter = kFirstLetter;
    for (const auto& [kind, name] : others) {
        while (chosen.contains(letter)) ++letter;
        if (letter > kLastLetter) break;
        chosen[letter] = name;
    }
    return chosen;
}

IdeDrive DiskAsDrive(const HostFiles& files, const std::string& name) {
    const std::string folder = "sys/block/" + name + "/";
    const std::string device = files.Path("dev/" + name);
    const std::string size = files.Text(folder + "size");
    const DiskKind* const kind = KindOf(name);
    const auto text = [&](const char* file) {
        return file != nullptr ? files.Text(folder + file) : std::string();
    };
    const bool isScsi = kind == &kKinds[0];
    std::string model = isScsi ? ScsiModel(files, folder) : text(kind->model);
    std::optional<DriveIdentity> identity = IdentityOfDriver(device);
    if (identity)
        model = ModelOf(*identity);
    else
        identity = MakeIdentity(isScsi ? ScsiSerial(files, folder) : text(kind->serial),
                                text(kind->firmware), model);

    std::uint64_t sectors = 0;  // stays 0 for a text that is no number
    (void)std::from_chars(size.data(), size.data() + size.size(), sectors);
    return {.files = {{"media", "disk\n"}, {"model", model + "\n"}, {"capacity", size + "\n"}},
            .identity = identity,
            .image = std::make_shared<DiskImage>(device, sectors)};
}

std::string CannotOpenDisks(const std::vector<UnopenedDisk>& disks) {
    std::vector<UnopenedDisk> complaints;  // each with the paths of all disks with its reason
    for (const UnopenedDisk& disk : disks) {
        const auto known = std::find_if(
            complaints.begin(), complaints.end(),
            [&](const UnopenedDisk& complaint) { return complaint.error == disk.error; });
        if (known == complaints.end())
            complaints.push_back(disk);
        else
            known->path += ", " + disk.path;
    }
    std::string text;
    for (const UnopenedDisk& complaint : complaints)
        text += (text.empty() ? "" : "; ") + CannotOpen(complaint.path, complaint.error,
                                                        "there is no such device file",
                                                        "run as root, or get the right to read it");
    return text;
}

}  // namespace sim
