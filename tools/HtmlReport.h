// SPDX-License-Identifier: MIT
//
// talvane report --html FILE: everything in one page for browsers.
#ifndef TALVANE_TOOLS_HTMLREPORT_H
#define TALVANE_TOOLS_HTMLREPORT_H

#include <filesystem>
#include <ostream>

#include "tools/base/Settings.h"

namespace tool {

// Reads everything and replaces the file by the page in one step. Names each source that could not
// be read on `err`; the page names it, too. Returns whether everything could be read.
// std::runtime_error says why the file cannot be written; it is then as it was.
bool WriteHtmlReport(const std::filesystem::path& file, const Settings& settings,
                     std::ostream& err);

}  // namespace tool

#endif
