// SPDX-License-Identifier: MIT
//
// talvane report --html FILE: everything in one page for browsers.
#ifndef TALVANE_TOOLS_HTMLREPORT_H
#define TALVANE_TOOLS_HTMLREPORT_H

#include <filesystem>
#include <ostream>

#include "tools/base/Settings.h"

namespace tool {

struct PageOrder {
    std::filesystem::path file;   // empty for none
    std::filesystem::path rules;  // verdicts that replace those of the table; empty for none
};

// Reads everything and replaces the file by the page in one step. Names each source that could not
// be read on `err`; the page names it, too. Returns whether everything could be read.
// std::runtime_error says why the file cannot be written, or the rules cannot be used; the file is
// then as it was.
bool WriteHtmlReport(const PageOrder& order, const Settings& settings, std::ostream& err);

}  // namespace tool

#endif
