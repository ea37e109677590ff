// SPDX-License-Identifier: MIT
//
// The scan of a processor's line in /proc/stat, with the line's name as part of the scan format.

#include "load/CpuTimeText.h"

#include <cstdio>
#include <cstring>

namespace talvane {

int ScanCpuTimes(const char* text, int number, long (&times)[kCpuCounters]) {
    char format[64];
    (void)std::snprintf(format, sizeof format, "cpu%d", number);
    const char* line = std::strstr(text, format);
    if (line == nullptr) return -1;
    std::strcat(format, " %lu %lu %lu %lu");

    unsigned long scanned[kCpuCounters];
    for (int i = 0; i < kCpuCounters; ++i) scanned[i] = static_cast<unsigned long>(times[i]);
    const int count = std::sscanf(line, format, &scanned[0], &scanned[1], &scanned[2], &scanned[3]);
    for (int i = 0; i < kCpuCounters; ++i) times[i] = static_cast<long>(scanned[i]);
    return count;
}

}  // namespace talvane
