// SPDX-License-Identifier: MIT
//
// The commands that change something in the BMC. A change that could do harm first shows what it
// would do. It is made only when it is confirmed.
//
// A further change touches these places:
//   changes/           the function that makes it
//   changes/Order.h    what it needs from the command line
//   Changes.cpp        its row
//   CommandLine.cpp    its options (AddThresholdChange, AddWatchdogChanges)
//   CMakeLists.txt     the new file
//   tests/tools/       its test, and CommandLineTest.cpp for its options
//   README.md          the list of commands
#ifndef TALVANE_TOOLS_CHANGES_H
#define TALVANE_TOOLS_CHANGES_H

#include <ostream>
#include <span>
#include <vector>

#include "tools/Report.h"
#include "tools/base/Way.h"
#include "tools/changes/Order.h"

namespace tool {

struct Change {
    const char* name;    // on the command line, words separated by blanks
    const char* member;  // in JSON
    Outcome (*make)(const Order&);
};

std::span<const Change> Changes();

// Makes the change and writes what came of it, in the form of Report. Returns whether it was done.
bool Make(const Change& change, const Order& order, const std::vector<Way>& ways, Format format,
          std::ostream& out, std::ostream& err);

}  // namespace tool

#endif
