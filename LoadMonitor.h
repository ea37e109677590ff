// SPDX-License-Identifier: MIT
//
// State of the processor load sampler that programs can see; the functions are in Talvane.h.
#ifndef TALVANE_LOADMONITOR_H
#define TALVANE_LOADMONITOR_H

#include "Export.h"

// 0 until the first sample of any processor has been taken, then 1. Kept: one flag serves all
// processors, so the first sample of every other processor is compared with zero. An answer is made
// of such a sample only where the processor's later samples cannot be read.
extern TALVANE_EXPORT int ExecuteFirstTime;

#endif
