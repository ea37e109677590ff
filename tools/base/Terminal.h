// SPDX-License-Identifier: MIT
//
// What the text output is laid out for: any width and no colours, unless it goes to a terminal.
#ifndef TALVANE_TOOLS_BASE_TERMINAL_H
#define TALVANE_TOOLS_BASE_TERMINAL_H

#include <cstddef>

namespace tool {

enum class ColorChoice { kAuto, kAlways, kNever };

struct Look {
    std::size_t width = 0;  // in columns; 0 for any
    bool isColored = false;
};

// The look for a file descriptor. A terminal has its width. It has colours, too, unless NO_COLOR is
// set to something (no-color.org), or TERM says that it has none.
Look LookFor(int descriptor, ColorChoice choice);

// The look of everything that is laid out from now on in this process.
void UseLook(const Look& look);
const Look& CurrentLook();

}  // namespace tool

#endif
