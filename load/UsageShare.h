// SPDX-License-Identifier: MIT
//
// The shares that the load functions answer, in whole percent.
#ifndef TALVANE_LOAD_USAGESHARE_H
#define TALVANE_LOAD_USAGESHARE_H

namespace talvane {

// The share of the ticks between two samples that were not idle. The idle share is rounded toward
// zero, so the busy one is rounded up. Counters and sums wrap around at 32 bits. Kept: when no tick
// has passed this divides by zero; the caller of the library sees to it that time passes.
[[nodiscard]] int BusyPercent(long idle, long user, long nice, long system);

// The share of `total` that `used` is, rounded toward zero. Kept: the share is narrowed to a float
// first, so one just below a whole percent can become that percent. A share that no integer can
// hold (of a total of 0) is the lowest integer.
[[nodiscard]] int UsedPercent(long used, long total);

}  // namespace talvane

#endif
