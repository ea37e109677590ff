// SPDX-License-Identifier: MIT
//
// The constructor, which finds and copies the structure table, and the access to its structures.

#include "SmBios/SmBios.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

#include "SmBios/EntryPointScan.h"
#include "SmBios/FreeBuffer.h"
#include "SmBios/PhysicalMemory.h"
#include "SmBios/StructureWalk.h"

using namespace talvane;

namespace {

using Buffer = std::unique_ptr<unsigned char[]>;

// The part of the BIOS segment in which the entry points are looked for.
constexpr std::uint32_t kSegmentAddress = 0xF0000;
constexpr std::size_t kSegmentSize = 0xFFF0;

// The read of the table starts at a multiple of this, and is longer by it than its address.
constexpr std::uint32_t kBlockSize = 0x10000;

constexpr std::uint64_t kAddressSpace = std::uint64_t{1} << 32;

// Copies the table's `length` bytes at physical `address` to `table`. Bytes that a short read does
// not deliver stay as they are in `table`. Returns false when nothing could be read.
bool ReadTable(PhysicalMemory& memory, std::uint32_t address, unsigned char* table,
               std::size_t length) {
    const std::uint32_t base = address & ~(kBlockSize - 1);
    // Kept: the read is as long as its own address plus 64 KiB, so one mebibyte for a table in the
    // BIOS segment.
    const std::uint64_t size = std::uint64_t{base} + kBlockSize;
    if (base + size > kAddressSpace) return false;

    const Buffer memoryCopy(new (std::nothrow) unsigned char[static_cast<std::size_t>(size)]);
    if (memoryCopy == nullptr || !memory.Seek(base)) return false;
    const long delivered = memory.Read(memoryCopy.get(), static_cast<std::size_t>(size));
    if (delivered <= 0) return false;

    const std::size_t offset = address - base;
    const std::size_t readable = static_cast<std::size_t>(delivered);
    if (offset < readable)
        std::memcpy(table, &memoryCopy[offset], std::min(length, readable - offset));
    return true;
}

}  // namespace

SmBios::SmBios()
    : InitOK(0),
      BiosData(nullptr),
      BiosDataLength(0),
      MatchSMBIOS(0),
      MatchDMI(0),
      SmBiosEntry(),
      DmiEntry() {
    const Buffer segment(new (std::nothrow) unsigned char[kSegmentSize]);
    if (segment == nullptr) return;

    PhysicalMemory memory;
    if (!memory.IsOpen()) {
        std::perror("open /dev/mem\n");
        return;
    }
    if (!memory.Seek(kSegmentAddress)) {
        std::perror("lseek /dev/mem\n");
        return;
    }
    const long delivered = memory.Read(segment.get(), kSegmentSize);
    // Bytes that were not read hold no anchor.
    std::fill(segment.get() + std::max(delivered, 0L), segment.get() + kSegmentSize, 0);

    std::uint32_t address = 0;
    const ByteView searched(segment.get(), kSegmentSize);
    if (const auto smbios = FindSmBiosEntryPoint(searched)) {
        MatchSMBIOS = 1;
        SmBiosEntry = *smbios;
        address = SmBiosEntry.StructureTableAddress;
        BiosDataLength = SmBiosEntry.StructureTableLength;
    } else if (const auto dmi = FindDmiEntryPoint(searched)) {
        MatchDMI = 1;
        DmiEntry = *dmi;
        address = DmiEntry.biosStructureTableAddress;
        BiosDataLength = DmiEntry.StructureTableLength;
    } else {
        return;
    }

    Buffer table(new (std::nothrow) unsigned char[BiosDataLength + kZeroBytesAfterTable]());
    if (table == nullptr || !ReadTable(memory, address, table.get(), BiosDataLength)) return;
    BiosData = table.release();
    InitOK = 1;
}

SmBios::SmBios(char*)
    : InitOK(1),
      BiosData(nullptr),
      BiosDataLength(0),
      MatchSMBIOS(0),
      MatchDMI(0),
      SmBiosEntry(),
      DmiEntry() {}

SmBios::~SmBios() {
    FreeBuffer(BiosData);
}

int SmBios::IsInitOK() {
    return InitOK;
}

unsigned char SmBios::IsMatchSmBios() {
    return MatchSMBIOS;
}

unsigned char SmBios::IsMatchDMI() {
    return MatchDMI;
}

StructureWalk SmBios::Structures(unsigned char structureType) const {
    const unsigned count = MatchSMBIOS != 0 ? SmBiosEntry.HowManyStructures
                           : MatchDMI != 0  ? DmiEntry.HowManyStructures
                                            : 0;
    return StructureWalk(BiosData, BiosData == nullptr ? 0u : BiosDataLength, count, structureType);
}

BiosDataItem* SmBios::GetItem(unsigned char structureType, unsigned char index) {
    if (BiosData == nullptr) return nullptr;
    // Kept: the first structure is taken to be the BIOS information, whatever its type and `index`.
    if (structureType == TYPE_BIOS_INFO) return new (std::nothrow) BiosDataItem(BiosData);

    StructureWalk walk = Structures(structureType);
    for (unsigned seen = 1; unsigned char* structure = walk.Next(); ++seen)
        if (seen == index) return new (std::nothrow) BiosDataItem(structure);
    return nullptr;
}

SmBios::ItemPtr SmBios::ItemAt(unsigned char structureType, int index) {
    return ItemPtr(GetItem(structureType, static_cast<unsigned char>(index)));
}

// Kept: nothing is trimmed. Agents compare locators as the firmware wrote them.
void SmBios::trim(char*) {}

void itoa(int value, char* out, int) {
    std::sprintf(out, "%d", value);
}
