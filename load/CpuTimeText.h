// SPDX-License-Identifier: MIT
//
// Takes the tick counters of a processor out of the text of /proc/stat.
#ifndef TALVANE_LOAD_CPUTIMETEXT_H
#define TALVANE_LOAD_CPUTIMETEXT_H

namespace talvane {

// The first counters of a line, in the order of the file.
enum CpuCounter { kUserTicks, kNiceTicks, kSystemTicks, kIdleTicks, kCpuCounters };

// Reads the counters of processor `number`, counted from 0, out of a NUL-terminated text. Returns
// how many it found, at most kCpuCounters, or -1 when the text has no line of the processor. A
// counter that it did not find stays as it was. Kept: the name is taken where it stands first, even
// where it is the beginning of a longer one ("cpu1" in "cpu10").
[[nodiscard]] int ScanCpuTimes(const char* text, int number, long (&times)[kCpuCounters]);

}  // namespace talvane

#endif
