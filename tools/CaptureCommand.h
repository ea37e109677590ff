// SPDX-License-Identifier: MIT
//
// The command that takes a machine along as one file.
#ifndef TALVANE_TOOLS_CAPTURECOMMAND_H
#define TALVANE_TOOLS_CAPTURECOMMAND_H

#include <filesystem>
#include <ostream>

#include "tools/base/Settings.h"

namespace tool {

inline constexpr const char* kCapture = "capture";

struct CaptureOrder {
    std::filesystem::path file;
    bool isRedacted = false;
};

// Writes the archive (docs/machine-format.md), readable by its owner alone, and to `err` one line
// for each source that could not be read. On a terminal `err` also shows what is being read.
// Returns whether everything could be read. Throws as WriteAtomically does, and archive::Error for
// a machine beyond the limits of archives.
bool WriteCapture(const CaptureOrder& order, const Settings& settings, std::ostream& err);

}  // namespace tool

#endif
