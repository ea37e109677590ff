// SPDX-License-Identifier: MIT
//
// The arithmetic of the load functions: 32-bit integers that wrap around, and rounded doubles.

#include "load/UsageShare.h"

#include "base/DoubleArithmetic.h"

namespace talvane {
namespace {

// Back to a signed number, where unsigned ones have wrapped around.
long Wrapped(unsigned long value) {
    return static_cast<long>(value);
}

}  // namespace

int BusyPercent(long idle, long user, long nice, long system) {
    const auto idleTicks = static_cast<unsigned long>(idle);
    const long total =
        Wrapped(idleTicks + static_cast<unsigned long>(user) + static_cast<unsigned long>(nice) +
                static_cast<unsigned long>(system));
    // In 64 bits: the lowest 32-bit number divided by -1 does not fit 32 bits.
    const long long idlePercent = static_cast<long long>(Wrapped(idleTicks * 100)) / total;
    return static_cast<int>(Wrapped(static_cast<unsigned long>(100 - idlePercent)));
}

int UsedPercent(long used, long total) {
    const double percent =
        Quotient(Product(static_cast<double>(used), 100.0), static_cast<double>(total));
    // Volatile: kept in a register of the x87 the value would not be narrowed.
    const volatile float narrowed = static_cast<float>(percent);
    return ToInt32(narrowed);
}

}  // namespace talvane
