// SPDX-License-Identifier: MIT
//
// Keeping thresholds in order when one of them changes.

#include <algorithm>
#include <array>

#include "IPMI/IPMIsupport.h"
#include "Talvane.h"

namespace {

struct Threshold {
    int which;
    unsigned char mask;  // its bit in the flags
    unsigned char SensorThresholdInfoRaw::*value;
};

// In the order of their meaning, from the lowest to the highest.
constexpr std::array<Threshold, 6> kThresholds = {{
    {THRESHOLD_LOWER_NON_RECOVERABLE, 0x04, &SensorThresholdInfoRaw::LowerNonRecoverThreshold},
    {THRESHOLD_LOWER_CRITICAL, 0x02, &SensorThresholdInfoRaw::LowerCriticalThreshold},
    {THRESHOLD_LOWER_WARNING, 0x01, &SensorThresholdInfoRaw::LowerNonCriticalThreshold},
    {THRESHOLD_UPPER_WARNING, 0x08, &SensorThresholdInfoRaw::UpperNonCriticalThresholdValue},
    {THRESHOLD_UPPER_CRITICAL, 0x10, &SensorThresholdInfoRaw::UpperCriticalThresholdValue},
    {THRESHOLD_UPPER_NON_RECOVERABLE, 0x20, &SensorThresholdInfoRaw::UpperNonRecoverThresholdValue},
}};

}  // namespace

int IPMIsupport::SetThresholdOrder(SensorThresholdInfoRaw& raw, int which, unsigned char value) {
    std::array<int, kThresholds.size()> list{};
    std::size_t length = 0;
    std::size_t changed = 0;
    for (const Threshold& threshold : kThresholds) {
        if ((raw.settableFlag & threshold.mask) == 0) continue;
        if (threshold.which == which) changed = length;
        list[length] = threshold.which == which ? value : raw.*threshold.value;
        ++length;
    }

    // Neighbours that are equal stay equal. The bounds can leave a pair out of order.
    if (changed >= 1 && list[changed] < list[changed - 1])
        for (std::size_t j = changed; j-- > 0;)
            if (list[j + 1] < list[j]) list[j] = std::max(list[j + 1] - 1, int{raw.MinThreshold});
    if (changed + 1 < length && list[changed] > list[changed + 1])
        for (std::size_t j = changed + 1; j < length; ++j)
            if (list[j - 1] > list[j]) list[j] = std::min(list[j - 1] + 1, int{raw.MaxThreshold});

    std::size_t next = 0;
    for (const Threshold& threshold : kThresholds) {
        if ((raw.settableFlag & threshold.mask) == 0) continue;
        raw.*threshold.value = static_cast<unsigned char>(list[next]);
        ++next;
    }
    return 0;
}
