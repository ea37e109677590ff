// SPDX-License-Identifier: MIT
//
// Cooling devices (7.28).

#include <cstring>

#include "SmBios/SmBios.h"
#include "SmBios/SmBiosStatus.h"
#include "SmBios/SmBiosText.h"
#include "SmBios/StructureWalk.h"
#include "base/CodeName.h"

using namespace talvane;

namespace {

constexpr std::size_t kTypeAndStatus = 6;
constexpr std::size_t kNominalSpeed = 12;  // rpm

constexpr unsigned char kDeviceType = 0x1F;
constexpr int kUnknownSpeed = 0x8000;

constexpr int kMostFans = 63;

constexpr CodeName kDeviceTypes[] = {
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
static_assert(StrictlyAscending(kDeviceTypes));

const char* DeviceTypeName(unsigned code) {
    return NameOf(kDeviceTypes, code, "error");
}

}  // namespace

int SmBios::GetFanQuantity() {
    return CountUpTo(kMostFans, Structures(TYPE_COOLING_DEVICE));
}

int SmBios::GetFanStatus(int fan, char* buf) {
    const ItemPtr device = ItemAt(TYPE_COOLING_DEVICE, fan);
    if (device == nullptr) return -1;
    std::strcpy(buf, StatusText(ByteAt(FormattedArea(device), kTypeAndStatus)));
    return 0;
}

int SmBios::GetFanDescription(int fan, char* buf) {
    const ItemPtr device = ItemAt(TYPE_COOLING_DEVICE, fan);
    if (device == nullptr) return -1;
    std::strcpy(buf, DeviceTypeName(ByteAt(FormattedArea(device), kTypeAndStatus) & kDeviceType));
    return 0;
}

// Kept: the long texts are longer than the record's field and run into the next ones.
int SmBios::GetFanSpeed(int fan, char* buf) {
    const ItemPtr device = ItemAt(TYPE_COOLING_DEVICE, fan);
    if (device == nullptr) return -1;
    if (device->GetFormatedDataLength() <= kNominalSpeed) {
        std::strcpy(buf, "SmBios can not supply this information");
        return -1;
    }
    const int speed = Le16(FormattedArea(device), kNominalSpeed);
    if (speed == kUnknownSpeed)
        std::strcpy(buf, "Unknown or the FAN is non-rotating");
    else
        WriteNumber(buf, speed, " rpm");
    return 0;
}
