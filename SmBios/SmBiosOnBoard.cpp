// SPDX-License-Identifier: MIT
//
// On-board devices (7.11): structures of two-byte pairs, type and description string.

#include <cstring>
#include <memory>
#include <new>

#include "SmBios/SmBios.h"
#include "SmBios/SmBiosText.h"
#include "SmBios/StructureWalk.h"
#include "base/CodeName.h"

using namespace talvane;

namespace {

constexpr unsigned char kEnabled = 0x80;
constexpr unsigned char kDeviceType = 0x7F;

constexpr int kMostStructures = 127;

constexpr CodeName kDeviceTypes[] = {
    {1, "Other"},    {3, "Video"},      {4, "SCSI Controller"},
    {5, "EtherNet"}, {6, "Token Ring"}, {7, "Sound"},
};
static_assert(StrictlyAscending(kDeviceTypes));

const char* DeviceTypeName(unsigned code) {
    return NameOf(kDeviceTypes, code, "Unknown");
}

int DevicesIn(const unsigned char* structure) {
    constexpr int kHeader = 4;
    constexpr int kPair = 2;
    const int length = HeaderOf(structure).length;
    return length < kHeader ? 0 : (length - kHeader) / kPair;
}

// The structure of the walk that holds device n, null when there is none, and where its pair is
// read.
std::unique_ptr<BiosDataItem> FindDevice(int n, StructureWalk walk, unsigned& pairOffset) {
    int before = 0;
    while (unsigned char* structure = walk.Next()) {
        const int devices = DevicesIn(structure);
        if (before + devices < n) {
            before += devices;
            continue;
        }
        // Kept: the pair is chosen by the structure's own count, not by n, so only the device of a
        // first structure with one device is read at its place. Offsets before the structure wrap
        // to ones far behind it, where everything reads as zero.
        pairOffset = static_cast<unsigned>(2 + 2 * (devices - before));
        return std::unique_ptr<BiosDataItem>(new (std::nothrow) BiosDataItem(structure));
    }
    return nullptr;
}

}  // namespace

int SmBios::GetOnBoardDevQuantity() {
    StructureWalk walk = Structures(TYPE_ON_BOARD_DEVICE_INFO);
    int devices = 0;
    for (int index = 1; index <= kMostStructures; ++index) {
        const unsigned char* structure = walk.Next();
        if (structure == nullptr) break;
        devices += DevicesIn(structure);
    }
    return devices;
}

int SmBios::GetOnBoardDevBiosEnable(int n, int& enabled) {
    unsigned pair = 0;
    const ItemPtr structure = FindDevice(n, Structures(TYPE_ON_BOARD_DEVICE_INFO), pair);
    enabled = (ByteAt(FormattedArea(structure), pair) & kEnabled) != 0 ? 1 : 0;
    return structure == nullptr ? -1 : 0;
}

int SmBios::GetOnBoardDevType(int n, char* buf) {
    unsigned pair = 0;
    const ItemPtr structure = FindDevice(n, Structures(TYPE_ON_BOARD_DEVICE_INFO), pair);
    if (structure == nullptr) return -1;
    std::strcpy(buf, DeviceTypeName(ByteAt(FormattedArea(structure), pair) & kDeviceType));
    return 0;
}

int SmBios::GetOnBoardDevDescription(int n, char* buf) {
    unsigned pair = 0;
    const ItemPtr structure = FindDevice(n, Structures(TYPE_ON_BOARD_DEVICE_INFO), pair);
    const char* description = StringAt(structure, pair + 1);
    if (description == nullptr) return -1;
    std::strcpy(buf, description);
    return 0;
}
