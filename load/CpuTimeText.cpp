// SPDX-License-Identifier: MIT
//
// The scan of a processor's line in /proc/stat, with the line's name as part of the scan format.

#include "load/CpuTimeText.h"

#include <cstdio>
#include <cstring>

namespace talvane {

// The C library's first sscanf. By that name glibc's header means another since 2.7, which old C
// libraries do not have.
[[gnu::format(scanf, 2, 3)]] int FirstSscanf(const char* text, const char* format,
                                             ...) asm("sscanf");

int ScanCpuTimes(const char* text, int number, long (&times)[kCpuCounters]) {
    char format[64];
    (void)std::snprintf(format, sizeof format, "cpu%d", number);
    const char* line = std::strstr(text, format);
    if (line == nullptr) return -1;
    std::strcat(format, " %lu %lu %lu %lu");

    unsigned long scanned[kCpuCounters];
    for (int i = 0; i < kCpuCounters; ++i) scanned[i] = static_cast<unsigned long>(times[i]);
    const int count = FirstSscanf(line, format, &scanned[0], &scanned[1], &scanned[2], &scanned[3]);
    for (int i = 0; i < kCpuCounters; ++i) times[i] = static_cast<long>(scanned[i]);
    return count;
}

}  // namespace talvane
