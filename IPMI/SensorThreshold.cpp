// SPDX-License-Identifier: MIT
//
// Reading and writing the thresholds of a sensor (IPMI 2.0, 35.8 and 35.9).

#include "IPMI/Responses.h"
#include "IPMI/Sensor.h"
#include "IPMI/SensorCodes.h"

using namespace talvane;

int Sensor::GetSensorThreshold(unsigned char sensor, SensorFormulaParameter p,
                               SensorThresholdInfoRaw& raw,
                               SensorThresholdInfoConverted& converted) {
    using Response = ThresholdsResponse;
    if (sensor == kNoSensor) return -1;
    raw = {};
    converted = {};
    if (ExchangeUnchecked(SENSER_EVENT_CMD, get_sensor_threshold, kAnyAddress, {sensor}) != 0)
        return -1;

    raw.readableFlag = converted.readableFlag =
        static_cast<unsigned char>(ResponseByte(Response::kReadable) & kAllThresholds);
    const auto take = [&](unsigned offset, unsigned char& rawValue, double& value) {
        rawValue = ResponseByte(offset);
        if (GetReadingConversion(p, rawValue, value) != 0) value = 0.0;
    };
    take(Response::kLowerNonCritical, raw.LowerNonCriticalThreshold,
         converted.LowerNonCriticalThreshold);
    take(Response::kLowerCritical, raw.LowerCriticalThreshold, converted.LowerCriticalThreshold);
    take(Response::kLowerNonRecoverable, raw.LowerNonRecoverThreshold,
         converted.LowerNonRecoverThreshold);
    take(Response::kUpperNonCritical, raw.UpperNonCriticalThresholdValue,
         converted.UpperNonCriticalThresholdValue);
    take(Response::kUpperCritical, raw.UpperCriticalThresholdValue,
         converted.UpperCriticalThresholdValue);
    take(Response::kUpperNonRecoverable, raw.UpperNonRecoverThresholdValue,
         converted.UpperNonRecoverThresholdValue);
    return 0;
}

int Sensor::SetSensorThreshold(unsigned char sensor, SensorThresholdInfoRaw raw) {
    if (sensor == kNoSensor) return -1;
    return ExchangeUnchecked(
        SENSER_EVENT_CMD, set_sensor_threshold, kAnyAddress,
        {sensor, raw.settableFlag, raw.LowerNonCriticalThreshold, raw.LowerCriticalThreshold,
         raw.LowerNonRecoverThreshold, raw.UpperNonCriticalThresholdValue,
         raw.UpperCriticalThresholdValue, raw.UpperNonRecoverThresholdValue});
}
