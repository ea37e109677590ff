// SPDX-License-Identifier: MIT
//
// Keeps the settable thresholds in order when one of them changes.

#include <algorithm>
#include <array>

#include "IPMI/IPMIsupport.h"
#include "IPMI/SensorCodes.h"
#include "InformationRecords.h"

using namespace talvane;

namespace {

struct Threshold {
    int which;           // a ThresholdFlag
    unsigned char mask;  // its bit in settableFlag
    unsigned char SensorThresholdInfoRaw::*value;
};

// In the order of their meaning, from the lowest to the highest.
constexpr std::array<Threshold, 6> kThresholds = {{
    {THRESHOLD_LOWER_NON_RECOVERABLE, kLowerNonRecoverable,
     &SensorThresholdInfoRaw::LowerNonRecoverThreshold},
    {THRESHOLD_LOWER_CRITICAL, kLowerCritical, &SensorThresholdInfoRaw::LowerCriticalThreshold},
    {THRESHOLD_LOWER_WARNING, kLowerNonCritical,
     &SensorThresholdInfoRaw::LowerNonCriticalThreshold},
    {THRESHOLD_UPPER_WARNING, kUpperNonCritical,
     &SensorThresholdInfoRaw::UpperNonCriticalThresholdValue},
    {THRESHOLD_UPPER_CRITICAL, kUpperCritical,
     &SensorThresholdInfoRaw::UpperCriticalThresholdValue},
    {THRESHOLD_UPPER_NON_RECOVERABLE, kUpperNonRecoverable,
     &SensorThresholdInfoRaw::UpperNonRecoverThresholdValue},
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

    // Kept: equal neighbours stay equal, and the two bounds can leave a pair out of order.
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
