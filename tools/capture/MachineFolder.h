// SPDX-License-Identifier: MIT
//
// Writes a capture down as a machine folder (docs/machine-format.md).
#ifndef TALVANE_TOOLS_CAPTURE_MACHINEFOLDER_H
#define TALVANE_TOOLS_CAPTURE_MACHINEFOLDER_H

#include <string>
#include <vector>

#include "archive/Files.h"
#include "tools/capture/MachineCapture.h"

namespace tool {

// Comments at the beginning of the description, a line each.
using CaptureHead = std::vector<std::string>;

// The files of the folder: machine.txt, and those that it names. The ways are those in which this
// machine is read; replayed, the machine shows them as its own.
archive::Files MachineFolderOf(const MachineCapture& capture, const CaptureHead& head,
                               const std::vector<Way>& ways);

}  // namespace tool

#endif
