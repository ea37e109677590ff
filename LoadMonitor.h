// SPDX-License-Identifier: MIT
//
// State of the processor load sampler that programs can see; the functions are in Talvane.h.
#ifndef TALVANE_LOADMONITOR_H
#define TALVANE_LOADMONITOR_H

#include "Export.h"

// 0 until the first sample of any processor has been taken. Kept: one flag for all processors, so
// the first sample of each but that one is compared with zero. No answer is made of those.
extern TALVANE_EXPORT int ExecuteFirstTime;

#endif
