// SPDX-License-Identifier: MIT
//
// Offsets count from 0 at the first byte after the completion code.

#include "tools/sensors/SensorAnswer.h"

#include "tools/sensors/SensorValue.h"

namespace tool {

SensorAnswer DecodeReading(talvane::ByteView answer) {
    constexpr std::size_t kRaw = 0;
    constexpr std::size_t kFlags = 1;
    constexpr std::size_t kLowStates = 2;
    constexpr unsigned kHighStateBits = 0x7F00;
    constexpr unsigned char kUnavailable = 0x20;
    constexpr unsigned char kScanned = 0x40;
    SensorAnswer sensor;
    if (answer.size() <= kFlags) return sensor;
    sensor.raw = answer[kRaw];
    if ((answer[kFlags] & kScanned) == 0)
        sensor.status = SensorAnswer::Status::kNotScanned;
    else if ((answer[kFlags] & kUnavailable) != 0)
        sensor.status = SensorAnswer::Status::kUnavailable;
    else
        sensor.status = SensorAnswer::Status::kRead;
    if (answer.size() > kLowStates)
        sensor.states = talvane::Le16(answer, kLowStates) & (kHighStateBits | 0xFF);
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
