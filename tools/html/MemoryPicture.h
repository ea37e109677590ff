// SPDX-License-Identifier: MIT
//
// The memory slots as pictures: a module or an empty slot each.
#ifndef TALVANE_TOOLS_HTML_MEMORYPICTURE_H
#define TALVANE_TOOLS_HTML_MEMORYPICTURE_H

#include <string>

#include "tools/records/Memory.h"

namespace tool {

// A figure for each bank; empty without banks.
std::string MemoryPicture(const Memory& memory);

}  // namespace tool

#endif
