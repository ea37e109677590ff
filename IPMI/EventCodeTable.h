// SPDX-License-Identifier: MIT
//
// The texts of a discrete sensor's states (IPMI 2.0, 42.1: generic event/reading types). The texts
// are part of the interface and spelled as agents know them.
#ifndef TALVANE_IPMI_EVENTCODETABLE_H
#define TALVANE_IPMI_EVENTCODETABLE_H

#include "../Export.h"

// Sixteen rows for each event/reading type from 1 to 12: the text of state offset r of type t
// stands in row (t - 1) * 16 + r. Rows without a text are empty.
extern TALVANE_EXPORT const char EventDesc[192][64];

// What a state stands for.
struct EventInfo {
    int meaning;  // device presence (type 8): 1 absent, 2 present; 0 for all others
    const char* desc;
};

#endif
