// SPDX-License-Identifier: MIT
//
// System power supplies (7.40).

#include <cstring>
#include <memory>
#include <new>

#include "SmBios/SmBios.h"
#include "SmBios/SmBiosText.h"
#include "SmBios/StructureWalk.h"
#include "base/CodeName.h"

using namespace talvane;

namespace {

constexpr std::size_t kPowerUnitGroup = 4;
constexpr std::size_t kDeviceName = 6;
constexpr std::size_t kManufacturer = 7;
constexpr std::size_t kSerialNumber = 8;
constexpr std::size_t kCharacteristics = 14;

constexpr unsigned kState = 0x07;

constexpr int kMostCounted = 32;
constexpr int kMostSearched = 31;  // Kept: the 32nd supply is counted and never found.

constexpr CodeName kStates[] = {
    {1, "hot replaceable"},
    {2, "present"},
    {4, "unplugged from the wall"},
};
static_assert(StrictlyAscending(kStates));

const char* StateName(unsigned state) {
    return NameOf(kStates, state, "Other");
}

// Whether the supply's type bits are a subset of the mask. Kept: the lowest of the four type bits
// is not looked at, so a type and its odd neighbour are one.
bool TypePasses(ByteView supply, int typeMask) {
    constexpr unsigned kTypeShift = 10;
    constexpr unsigned kTypeBits = 0x0E;
    const unsigned type = (Le16(supply, kCharacteristics) >> kTypeShift) & kTypeBits;
    const unsigned mask = static_cast<unsigned>(typeMask);
    return (type | mask) == mask;
}

// The n-th supply of the walk that passes the type test; null when there is none.
std::unique_ptr<BiosDataItem> PowerSupply(int typeMask, int n, StructureWalk walk) {
    int passed = 0;
    for (int index = 1; index <= kMostSearched; ++index) {
        unsigned char* supply = walk.Next();
        if (supply == nullptr) break;
        if (TypePasses(FormattedAreaOf(supply), typeMask) && ++passed == n)
            return std::unique_ptr<BiosDataItem>(new (std::nothrow) BiosDataItem(supply));
    }
    return nullptr;
}

}  // namespace

int SmBios::GetPSQuantity(int typeMask) {
    StructureWalk walk = Structures(TYPE_SYSTEM_POWER_SUPPLY);
    int count = 0;
    for (int index = 1; index <= kMostCounted; ++index) {
        const unsigned char* supply = walk.Next();
        if (supply == nullptr) break;
        if (TypePasses(FormattedAreaOf(supply), typeMask)) ++count;
    }
    return count;
}

int SmBios::GetPSRedundantQuantity() {
    StructureWalk walk = Structures(TYPE_SYSTEM_POWER_SUPPLY);
    int count = 0;
    for (int index = 1; index <= kMostSearched; ++index) {
        const unsigned char* supply = walk.Next();
        if (supply == nullptr) break;
        if (ByteAt(FormattedAreaOf(supply), kPowerUnitGroup) != 0) ++count;
    }
    return count;
}

int SmBios::GetPSManufacturer(int typeMask, int n, char* buf, unsigned size) {
    return CopyStringAt(PowerSupply(typeMask, n, Structures(TYPE_SYSTEM_POWER_SUPPLY)),
                        kManufacturer, buf, size);
}

int SmBios::GetPSDeviceName(int typeMask, int n, char* buf, unsigned size) {
    return CopyStringAt(PowerSupply(typeMask, n, Structures(TYPE_SYSTEM_POWER_SUPPLY)), kDeviceName,
                        buf, size);
}

int SmBios::GetPSSerialNo(int typeMask, int n, char* buf, unsigned size) {
    return CopyStringAt(PowerSupply(typeMask, n, Structures(TYPE_SYSTEM_POWER_SUPPLY)),
                        kSerialNumber, buf, size);
}

int SmBios::GetPSStatus(int typeMask, int n, char* buf) {
    const ItemPtr supply = PowerSupply(typeMask, n, Structures(TYPE_SYSTEM_POWER_SUPPLY));
    if (supply == nullptr) return -1;
    std::strcpy(buf, StateName(Le16(FormattedArea(supply), kCharacteristics) & kState));
    return 0;
}

int SmBios::GetPSBiosEnable() {
    return -1;
}
