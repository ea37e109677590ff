// SPDX-License-Identifier: MIT
//
// On-board devices (SMBIOS 7.11): a structure has a pair of bytes for each of its devices, the type
// and the number of the description string.

#include <cstring>
#include <memory>
#include <new>

#include "SmBios/SmBios.h"
#include "SmBios/SmBiosText.h"
#include "SmBios/StructureWalk.h"
#include "base/CodeName.h"

using namespace talvane;

namespace {

constexpr int kPairSize = 2;
constexpr unsigned kDescriptionInPair = 1;

// The type byte.
constexpr unsigned char kEnabledBit = 0x80;
constexpr unsigned char kOnBoardTypeBits = 0x7F;

constexpr int kMaxOnBoardStructures = 127;

constexpr CodeName kOnBoardTypes[] = {
    {1, "Other"},    {3, "Video"},      {4, "SCSI Controller"},
    {5, "EtherNet"}, {6, "Token Ring"}, {7, "Sound"},
};
static_assert(StrictlyAscending(kOnBoardTypes));

const char* OnBoardTypeName(unsigned typeByte) {
    return NameOf(kOnBoardTypes, typeByte & kOnBoardTypeBits, "Unknown");
}

int DevicesIn(const unsigned char* structure) {
    constexpr int kHeaderSize = sizeof(HEADER);
    const int length = HeaderOf(structure).length;
    return length < kHeaderSize ? 0 : (length - kHeaderSize) / kPairSize;
}

// The structure of the walk that holds device n, or null, and the offset at which its pair is read.
std::unique_ptr<BiosDataItem> FindOnBoardDevice(int n, StructureWalk walk, unsigned& pairOffset) {
    int before = 0;
    while (unsigned char* structure = walk.Next()) {
        const int devices = DevicesIn(structure);
        if (before + devices < n) {
            before += devices;
            continue;
        }
        // Kept: the pair is chosen by the structure's own count, not by n, so only the device of a
        // first structure with one device is read in its place. An offset before the structure
        // wraps around to one far after it, where all bytes are zero.
        pairOffset = static_cast<unsigned>(kPairSize + kPairSize * (devices - before));
        return std::unique_ptr<BiosDataItem>(new (std::nothrow) BiosDataItem(structure));
    }
    return nullptr;
}

}  // namespace

int SmBios::GetOnBoardDevQuantity() {
    StructureWalk walk = Structures(TYPE_ON_BOARD_DEVICE_INFO);
    int devices = 0;
    for (int index = 1; index <= kMaxOnBoardStructures; ++index) {
        const unsigned char* structure = walk.Next();
        if (structure == nullptr) break;
        devices += DevicesIn(structure);
    }
    return devices;
}

int SmBios::GetOnBoardDevBiosEnable(int n, int& enabled) {
    unsigned pair = 0;
    const ItemPtr structure = FindOnBoardDevice(n, Structures(TYPE_ON_BOARD_DEVICE_INFO), pair);
    enabled = (ByteAt(FormattedArea(structure), pair) & kEnabledBit) != 0 ? 1 : 0;
    return structure == nullptr ? -1 : 0;
}

int SmBios::GetOnBoardDevType(int n, char* buf) {
    unsigned pair = 0;
    const ItemPtr structure = FindOnBoardDevice(n, Structures(TYPE_ON_BOARD_DEVICE_INFO), pair);
    if (structure == nullptr) return -1;
    std::strcpy(buf, OnBoardTypeName(ByteAt(FormattedArea(structure), pair)));
    return 0;
}

int SmBios::GetOnBoardDevDescription(int n, char* buf) {
    unsigned pair = 0;
    const ItemPtr structure = FindOnBoardDevice(n, Structures(TYPE_ON_BOARD_DEVICE_INFO), pair);
    const char* description = StringAt(structure, pair + kDescriptionInPair);
    if (description == nullptr) return -1;
    std::strcpy(buf, description);
    return 0;
}
