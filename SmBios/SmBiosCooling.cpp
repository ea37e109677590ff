// SPDX-License-Identifier: MIT
//
// Cooling devices (SMBIOS 7.28).

#include <cstring>

#include "SmBios/DeviceStatus.h"
#include "SmBios/SmBios.h"
#include "SmBios/SmBiosText.h"
#include "SmBios/StructureWalk.h"
#include "base/CodeName.h"

using namespace talvane;

namespace {

// Offsets in the structure.
namespace cooling_device {
constexpr std::size_t kTypeAndStatus = 6;
constexpr std::size_t kNominalSpeed = 12;  // rpm
}  // namespace cooling_device

constexpr unsigned char kCoolingTypeBits = 0x1F;

constexpr int kMaxFans = 63;

constexpr CodeName kCoolingTypes[] = {
    {1, "Other"},
    {2, "Unknown"},
    {3, "FAN"},
    {4, "Centrifugal Blower"},
    {5, "Chip Fan"},
    {6, "Cabinet Fan"},
    {7, "Power Supply Fan"},
    {8, "Heat Pipe"},
    {9, "Integrated Refrigeration"},
    {16, "Active Cooling"},
    {17, "Passive Cooling"},
};
static_assert(StrictlyAscending(kCoolingTypes));

const char* CoolingTypeName(unsigned typeAndStatus) {
    return NameOf(kCoolingTypes, typeAndStatus & kCoolingTypeBits, "error");
}

}  // namespace

int SmBios::GetFanQuantity() {
    return CountUpTo(kMaxFans, Structures(TYPE_COOLING_DEVICE));
}

int SmBios::GetFanStatus(int fan, char* buf) {
    const ItemPtr device = ItemAt(TYPE_COOLING_DEVICE, fan);
    if (device == nullptr) return -1;
    const unsigned char byte = ByteAt(FormattedArea(device), cooling_device::kTypeAndStatus);
    std::strcpy(buf, DeviceStatusText(byte));
    return 0;
}

int SmBios::GetFanDescription(int fan, char* buf) {
    const ItemPtr device = ItemAt(TYPE_COOLING_DEVICE, fan);
    if (device == nullptr) return -1;
    const unsigned char byte = ByteAt(FormattedArea(device), cooling_device::kTypeAndStatus);
    std::strcpy(buf, CoolingTypeName(byte));
    return 0;
}

// Kept: the long texts do not fit the record's field and run into the next ones.
int SmBios::GetFanSpeed(int fan, char* buf) {
    const ItemPtr device = ItemAt(TYPE_COOLING_DEVICE, fan);
    if (device == nullptr) return -1;
    if (device->GetFormatedDataLength() <= cooling_device::kNominalSpeed)
        return WriteNotSupplied(buf);
    const int speed = Le16(FormattedArea(device), cooling_device::kNominalSpeed);
    if (speed == kUnknownValue)
        std::strcpy(buf, "Unknown or the FAN is non-rotating");
    else
        WriteNumber(buf, speed, " rpm");
    return 0;
}
