// SPDX-License-Identifier: MIT
//
// Finds the entry points in the part of the BIOS segment that is searched for them.
#ifndef TALVANE_SMBIOS_ENTRYPOINTSCAN_H
#define TALVANE_SMBIOS_ENTRYPOINTSCAN_H

#include <optional>

#include "SmBios/EntryPoint.h"
#include "base/Bytes.h"

// Anchors lie on 16-byte boundaries (SMBIOS 2.3.4, section 2.1.1); the first one counts. Kept: no
// checksum is verified and the intermediate anchor is not compared, since firmware in the field has
// them wrong. An entry point that runs past the end of `segment` reads as zero there.
[[nodiscard]] std::optional<SmBiosTableEntryPoint> FindSmBiosEntryPoint(talvane::ByteView segment);
[[nodiscard]] std::optional<DMITableEntryPoint> FindDmiEntryPoint(talvane::ByteView segment);

#endif
