// SPDX-License-Identifier: MIT
//
// The status byte of a processor structure (SMBIOS 7.5.4), which SmBios::GetProcessorStatus hands
// out as it is.
#ifndef TALVANE_SMBIOS_PROCESSORSTATUS_H
#define TALVANE_SMBIOS_PROCESSORSTATUS_H

namespace talvane::processor_status {

// The parts of the byte.
constexpr unsigned char kSocketPopulated = 0x40;
constexpr unsigned char kState = 0x07;

// Values of the state.
constexpr unsigned char kUnknown = 0;
constexpr unsigned char kDisabledByUser = 2;
constexpr unsigned char kDisabledByBios = 3;

}  // namespace talvane::processor_status

#endif
