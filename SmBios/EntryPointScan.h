// SPDX-License-Identifier: MIT
//
// Finds the entry points in a copy of the BIOS segment.
#ifndef TALVANE_SMBIOS_ENTRYPOINTSCAN_H
#define TALVANE_SMBIOS_ENTRYPOINTSCAN_H

#include <optional>

#include "SmBios/EntryPoint.h"
#include "base/Bytes.h"

namespace talvane {

// The first entry point of its kind, if there is one. Anchors are on 16-byte boundaries (SMBIOS
// 2.3.4, section 2.1.1). Kept: no checksum is verified and the intermediate anchor is not compared,
// because firmware in the field has them wrong. Bytes past the end of `segment` are zero.
[[nodiscard]] std::optional<SmBiosTableEntryPoint> FindSmBiosEntryPoint(ByteView segment);
[[nodiscard]] std::optional<DMITableEntryPoint> FindDmiEntryPoint(ByteView segment);

}  // namespace talvane

#endif
