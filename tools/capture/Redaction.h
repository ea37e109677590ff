// SPDX-License-Identifier: MIT
//
// Takes what identifies a single machine out of a capture: each such value is replaced by a mark of
// its length, so that everything else stays where it is.
#ifndef TALVANE_TOOLS_CAPTURE_REDACTION_H
#define TALVANE_TOOLS_CAPTURE_REDACTION_H

#include <set>
#include <string>

#include "tools/capture/MachineCapture.h"

namespace tool {

inline constexpr std::uint8_t kMark = 'X';

// Values that were replaced where they belong. Those that cannot be other words are replaced
// wherever else they stand in a text, too.
using Secrets = std::set<std::string>;

// SMBIOS: serial numbers, asset tags and UUIDs, the data of a management controller's host
// interface, and all texts of OEM strings, of inactive structures, and of structures that vendors
// define, where service tags are. The inventory: serial numbers, asset tags, fields and records
// that vendors define, and whatever lies outside of its areas. The BMC's records: the GUID of a
// management controller. Drives: the serial numbers, the world wide name and the vendor's words in
// the identity block. Checksums that were right stay right.
void Redact(MachineCapture& capture);

// The parts of it. Each replaces values and adds those that were texts to the secrets.
void RedactSmbiosTable(CapturedBytes& table, Secrets& secrets);
void RedactFruImage(CapturedBytes& image, Secrets& secrets);
void RedactIdentity(CapturedBytes& identity, Secrets& secrets);

}  // namespace tool

#endif
