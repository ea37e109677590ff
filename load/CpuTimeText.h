// SPDX-License-Identifier: MIT
//
// Tick counters out of the text of /proc/stat.
#ifndef TALVANE_LOAD_CPUTIMETEXT_H
#define TALVANE_LOAD_CPUTIMETEXT_H

// In the order of the file, as its first counters.
enum CpuCounter { kUserTicks, kNiceTicks, kSystemTicks, kIdleTicks, kCpuCounters };

// Reads the counters of processor `number`, from 0, out of a terminated text. Returns how many
// came, at most kCpuCounters, -1 when the text has no line of the processor; those that did not
// come stay. Kept: the first place counts where the name stands, also as the beginning of a longer
// one.
[[nodiscard]] int ScanCpuTimes(const char* text, int number, long (&times)[kCpuCounters]);

#endif
