// SPDX-License-Identifier: MIT
//
// System power supplies (SMBIOS 7.40).

#include <cstring>
#include <memory>
#include <new>

#include "SmBios/SmBios.h"
#include "SmBios/SmBiosText.h"
#include "SmBios/StructureWalk.h"
#include "base/CodeName.h"

using namespace talvane;

namespace {

// Offsets in the structure.
namespace power_supply {
constexpr std::size_t kPowerUnitGroup = 4;
constexpr std::size_t kDeviceName = 6;    // string
constexpr std::size_t kManufacturer = 7;  // string
constexpr std::size_t kSerialNumber = 8;  // string
constexpr std::size_t kCharacteristics = 14;
}  // namespace power_supply

// The characteristics.
constexpr unsigned kSupplyStateBits = 0x07;
constexpr unsigned kSupplyTypeShift = 10;
constexpr unsigned kSupplyTypeBits = 0x0E;

constexpr int kMaxSuppliesCounted = 32;
constexpr int kMaxSuppliesSearched = 31;  // Kept: the 32nd supply is counted and never found.

constexpr CodeName kSupplyStates[] = {
    {1, "hot replaceable"},
    {2, "present"},
    {4, "unplugged from the wall"},
};
static_assert(StrictlyAscending(kSupplyStates));

const char* SupplyStateName(unsigned characteristics) {
    return NameOf(kSupplyStates, characteristics & kSupplyStateBits, "Other");
}

// Whether the supply's type bits are a subset of the mask. Kept: the lowest of the four type bits
// is not looked at, so an odd type passes where the even type below it passes.
bool TypePasses(ByteView supply, int typeMask) {
    const unsigned characteristics = Le16(supply, power_supply::kCharacteristics);
    const unsigned type = (characteristics >> kSupplyTypeShift) & kSupplyTypeBits;
    const unsigned mask = static_cast<unsigned>(typeMask);
    return (type | mask) == mask;
}

// The n-th supply of the walk that passes the type test, or null.
std::unique_ptr<BiosDataItem> PowerSupply(int typeMask, int n, StructureWalk walk) {
    int passed = 0;
    for (int index = 1; index <= kMaxSuppliesSearched; ++index) {
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
    for (int index = 1; index <= kMaxSuppliesCounted; ++index) {
        const unsigned char* supply = walk.Next();
        if (supply == nullptr) break;
        if (TypePasses(FormattedAreaOf(supply), typeMask)) ++count;
    }
    return count;
}

int SmBios::GetPSRedundantQuantity() {
    StructureWalk walk = Structures(TYPE_SYSTEM_POWER_SUPPLY);
    int count = 0;
    for (int index = 1; index <= kMaxSuppliesSearched; ++index) {
        const unsigned char* supply = walk.Next();
        if (supply == nullptr) break;
        if (ByteAt(FormattedAreaOf(supply), power_supply::kPowerUnitGroup) != 0) ++count;
    }
    return count;
}

int SmBios::GetPSManufacturer(int typeMask, int n, char* buf, unsigned size) {
    return CopyStringAt(PowerSupply(typeMask, n, Structures(TYPE_SYSTEM_POWER_SUPPLY)),
                        power_supply::kManufacturer, buf, size);
}

int SmBios::GetPSDeviceName(int typeMask, int n, char* buf, unsigned size) {
    return CopyStringAt(PowerSupply(typeMask, n, Structures(TYPE_SYSTEM_POWER_SUPPLY)),
                        power_supply::kDeviceName, buf, size);
}

int SmBios::GetPSSerialNo(int typeMask, int n, char* buf, unsigned size) {
    return CopyStringAt(PowerSupply(typeMask, n, Structures(TYPE_SYSTEM_POWER_SUPPLY)),
                        power_supply::kSerialNumber, buf, size);
}

int SmBios::GetPSStatus(int typeMask, int n, char* buf) {
    const ItemPtr supply = PowerSupply(typeMask, n, Structures(TYPE_SYSTEM_POWER_SUPPLY));
    if (supply == nullptr) return -1;
    std::strcpy(buf, SupplyStateName(Le16(FormattedArea(supply), power_supply::kCharacteristics)));
    return 0;
}

int SmBios::GetPSBiosEnable() {
    return -1;
}
