// SPDX-License-Identifier: MIT
//
// Why the SMBIOS table could not be read. Follows the library's way and reports the first step that
// fails: open the device, read the segment that holds the entry point, find it, read the table.

#include "tools/library/PhysicalMemory.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "base/Bytes.h"
#include "tools/base/Source.h"
#include "tools/sources/ErrorText.h"

namespace tool {
namespace {

std::string Hex(std::uint32_t address) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%X", static_cast<unsigned>(address));
    return text;
}

std::string Explained(int error) {
    return ErrorText(error, "the kernel or container offers no such device");
}

std::string WhyTableNotRead(const PhysicalMemory& memory, std::uint32_t table) {
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
    const std::uint32_t base = table & ~(kTableBlock - 1);
    return what + "it takes one read of " +
           std::to_string((base + std::uint64_t{kTableBlock}) >> 10) + " KiB from " + Hex(base) +
           ", which failed";
}

std::string WhyPhysicalMemoryNotRead() {
    const PhysicalMemory memory;
    if (!memory.IsOpen()) return "cannot open /dev/mem: " + Explained(errno);
    std::array<unsigned char, kSearchedSize> segment{};
    const long got = memory.ReadAt(kBiosSegment, segment.data(), segment.size());
    if (got < 0) return "cannot read /dev/mem at " + Hex(kBiosSegment) + ": " + Explained(errno);
    const auto entry = FindEntryPoint(segment);
    if (!entry)
        return "no SMBIOS or DMI table in /dev/mem: no entry point between 0xF0000 and 0xFFFEF "
               "(firmware that boots by UEFI keeps it elsewhere)";
    return WhyTableNotRead(memory, talvane::Le32(segment, entry->at + entry->layout.addressAt));
}

}  // namespace

const Source kPhysicalMemory{"/dev/mem", WhyPhysicalMemoryNotRead, "smbios"};

}  // namespace tool
