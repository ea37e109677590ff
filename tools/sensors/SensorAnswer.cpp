// SPDX-License-Identifier: MIT
//
// Offsets count from 0 at the first byte after the completion code.

#include "tools/sensors/SensorAnswer.h"

#include "tools/library/BmcMessage.h"
#include "tools/sensors/SensorValue.h"

namespace tool {

SensorAnswer DecodeReading(talvane::ByteView answer) {
    constexpr std::size_t kRaw = 0;
    constexpr std::size_t kLowStates = 2;
    constexpr unsigned kStates = 0x7FFF;
    SensorAnswer sensor;
    if (answer.size() <= ReadingFlags::kAt) return sensor;
    sensor.raw = answer[kRaw];
    const ReadingFlags flags(answer[ReadingFlags::kAt]);
    if (!flags.isScanned)
        sensor.status = SensorAnswer::Status::kNotScanned;
    else if (flags.isUnavailable)
        sensor.status = SensorAnswer::Status::kUnavailable;
    else
        sensor.status = SensorAnswer::Status::kRead;
    if (answer.size() > kLowStates) sensor.states = talvane::Le16(answer, kLowStates) & kStates;
    return sensor;
}

Limits DecodeThresholds(talvane::ByteView answer, const ReadingFormula& formula) {
    Limits limits;
    for (std::size_t i = 0; i < kLimits; ++i) {
        const std::size_t at = 1 + i;
        if (at < answer.size() && InMask(answer[0], i))
            limits[i] = ReadingValue(formula, answer[at]);
    }
    return limits;
}

}  // namespace tool
