// SPDX-License-Identifier: MIT
//
// Reading and writing a sensor's thresholds (IPMI 2.0, 35.8 and 35.9).

#include "IPMI/Sensor.h"

namespace {

constexpr unsigned char kNoSensor = 0xFF;
constexpr unsigned char kSixThresholds = 0x3F;

}  // namespace

int Sensor::GetSensorThreshold(unsigned char sensor, SensorFormulaParameter p,
                               SensorThresholdInfoRaw& raw,
                               SensorThresholdInfoConverted& converted) {
    if (sensor == kNoSensor) return -1;
    raw = {};
    converted = {};
    if (ExchangeUnchecked(SENSER_EVENT_CMD, get_sensor_threshold, ANY_ADDRESS, {sensor}) != 0)
        return -1;

    raw.readableFlag = converted.readableFlag =
        static_cast<unsigned char>(ResponseBuffer[0] & kSixThresholds);
    const auto take = [&](int offset, unsigned char& rawValue, double& value) {
        rawValue = ResponseBuffer[offset];
        if (GetReadingConversion(p, rawValue, value) != 0) value = 0.0;
    };
    take(1, raw.LowerNonCriticalThreshold, converted.LowerNonCriticalThreshold);
    take(2, raw.LowerCriticalThreshold, converted.LowerCriticalThreshold);
    take(3, raw.LowerNonRecoverThreshold, converted.LowerNonRecoverThreshold);
    take(4, raw.UpperNonCriticalThresholdValue, converted.UpperNonCriticalThresholdValue);
    take(5, raw.UpperCriticalThresholdValue, converted.UpperCriticalThresholdValue);
    take(6, raw.UpperNonRecoverThresholdValue, converted.UpperNonRecoverThresholdValue);
    return 0;
}

int Sensor::SetSensorThreshold(unsigned char sensor, SensorThresholdInfoRaw raw) {
    if (sensor == kNoSensor) return -1;
    return ExchangeUnchecked(
        SENSER_EVENT_CMD, set_sensor_threshold, ANY_ADDRESS,
        {sensor, raw.settableFlag, raw.LowerNonCriticalThreshold, raw.LowerCriticalThreshold,
         raw.LowerNonRecoverThreshold, raw.UpperNonCriticalThresholdValue,
         raw.UpperCriticalThresholdValue, raw.UpperNonRecoverThresholdValue});
}
