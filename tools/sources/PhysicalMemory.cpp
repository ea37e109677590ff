// SPDX-License-Identifier: MIT
//
// Why the SMBIOS table could not be read. Follows the library's way and reports the first step that
// fails: open the device, read the segment that holds the entry point, find it, read the table.

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <optional>

#include "base/Bytes.h"
#include "tools/base/Descriptor.h"
#include "tools/base/Source.h"
#include "tools/sources/ErrorText.h"

namespace tool {
namespace {

constexpr std::uint32_t kSegment = 0xF0000;
constexpr std::size_t kSegmentSize = 0xFFF0;
constexpr std::size_t kParagraph = 16;        // entry points lie on its multiples (SMBIOS 5.2.1)
constexpr std::size_t kSmbiosAddressAt = 24;  // of the table, in an entry point (SMBIOS 5.2.1)
constexpr std::size_t kDmiAddressAt = 8;
constexpr std::uint32_t kFirstUnreachable = 0x80000000;  // 32-bit file offsets are signed

class Device {
public:
    explicit Device(const char* path) : descriptor_(path, O_RDONLY) {}

    bool IsOpen() const { return descriptor_.IsOpen(); }

    // The number of bytes read; -1 with errno set when the device refuses.
    long ReadAt(std::uint32_t address, unsigned char* out, std::size_t size) const {
        if (lseek(descriptor_.Get(), static_cast<off_t>(address), SEEK_SET) == -1) return -1;
        return read(descriptor_.Get(), out, size);
    }

private:
    Descriptor descriptor_;
};

std::string Hex(std::uint32_t address) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%X", static_cast<unsigned>(address));
    return text;
}

std::string Explained(int error) {
    return ErrorText(error, "the kernel or container offers no such device");
}

std::optional<std::size_t> FindAnchor(talvane::ByteView segment, const char* anchor) {
    for (std::size_t at = 0; at + kParagraph <= segment.size(); at += kParagraph)
        if (std::memcmp(segment.data() + at, anchor, std::strlen(anchor)) == 0) return at;
    return std::nullopt;
}

std::optional<std::uint32_t> TableAddress(talvane::ByteView segment) {
    if (const auto smbios = FindAnchor(segment, "_SM_"))
        return talvane::Le32(segment, *smbios + kSmbiosAddressAt);
    if (const auto dmi = FindAnchor(segment, "_DMI"))
        return talvane::Le32(segment, *dmi + kDmiAddressAt);
    return std::nullopt;
}

std::string WhyTableNotRead(const Device& memory, std::uint32_t table) {
    const std::string what = "cannot read the SMBIOS table at " + Hex(table) + " of /dev/mem: ";
    if (table >= kFirstUnreachable) return what + "it lies above 2 GiB";
    unsigned char first = 0;
    const long got = memory.ReadAt(table, &first, 1);
    if (got < 0) {
        const int error = errno;
        return what + std::strerror(error) +
               (error == EPERM ? " (the kernel is built with STRICT_DEVMEM)" : "");
    }
    if (got == 0) return what + "memory ends before it";
    const std::uint32_t base = table & 0xFFFF0000;
    return what + "it takes one read of " + std::to_string((base >> 10) + 64) + " KiB from " +
           Hex(base) + ", which failed";
}

std::string WhyPhysicalMemoryNotRead() {
    const Device memory("/dev/mem");
    if (!memory.IsOpen()) return "cannot open /dev/mem: " + Explained(errno);
    std::array<unsigned char, kSegmentSize> segment{};
    const long got = memory.ReadAt(kSegment, segment.data(), segment.size());
    if (got < 0) return "cannot read /dev/mem at " + Hex(kSegment) + ": " + Explained(errno);
    const auto table = TableAddress(segment);
    if (!table)
        return "no SMBIOS or DMI table in /dev/mem: no entry point between 0xF0000 and 0xFFFEF "
               "(firmware that boots by UEFI keeps it elsewhere)";
    return WhyTableNotRead(memory, *table);
}

}  // namespace

const Source kPhysicalMemory{"/dev/mem", WhyPhysicalMemoryNotRead, "smbios"};

}  // namespace tool
