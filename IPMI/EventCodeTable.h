// SPDX-License-Identifier: MIT
//
// The texts of a discrete sensor's states (IPMI 2.0, 42.1: generic event/reading types). The texts
// are part of the interface and keep the spelling that agents know.
#ifndef TALVANE_IPMI_EVENTCODETABLE_H
#define TALVANE_IPMI_EVENTCODETABLE_H

#include "../Export.h"

// Sixteen rows for each event/reading type from 1 to 12. Row (t - 1) * 16 + r holds the text of
// state offset r of type t. Rows without a text are empty.
extern TALVANE_EXPORT const char EventDesc[192][64];

// The meaning of a state.
struct EventInfo {
    int meaning;  // of device presence (type 8): 1 absent, 2 present; of every other state 0
    const char* desc;
};

#endif
