// SPDX-License-Identifier: MIT
//
// Current readings as texts.

#include <algorithm>
#include <cstring>

#include "IPMI/Sensor.h"
#include "IPMI/SensorCodes.h"
#include "IPMI/SensorNames.h"
#include "IPMI/SensorTable.h"
#include "IPMI/SensorText.h"
#include "base/DoubleArithmetic.h"

using namespace talvane;

namespace {

constexpr unsigned char kNoReading = 0xFF;

// Always 0: to agents a sensor that cannot be read is one whose reading is "Unknown".
int WriteUnknown(char* out) {
    std::strcpy(out, "Unknown");
    return 0;
}

}  // namespace

// Reads a sensor of a table. Returns false where there is nothing to be read.
bool Sensor::ReadAnalog(const SensorDescription* sensor, unsigned char& raw) {
    return sensor != nullptr && sensor->SensorNumbers != kNoSensor &&
           sensor->isAnalogReading == 0 && ReadSensor(sensor->SensorNumbers, raw) == 0;
}

// Whether the sensor is a processor's and the sensor of that processor's presence did not find it
// when the repository was walked.
bool Sensor::IsProcessorAbsent(const SensorDescription& sensor) const {
    if (sensor.SensorEntityID != ENTITY_PROCESSOR) return false;
    constexpr unsigned char kPresent = 0x80;  // processor presence, offset 7 (IPMI 2.0, 42.2)
    const std::size_t used =
        std::min(static_cast<std::size_t>(PSInfo.quantity), std::size(PSInfo.sd));
    return std::any_of(PSInfo.sd, PSInfo.sd + used, [&](const SensorDescription& presence) {
        return presence.SensorEntityInstance == sensor.SensorEntityInstance &&
               presence.SensorEventReadingCode == kSensorSpecificType &&
               presence.SensorCodeOffset < kPresent;
    });
}

// Whether a sensor that tells its availability is running or on line. All others are in service.
bool Sensor::IsInService(const SensorDescription& sensor) {
    if (sensor.SensorEventReadingCode != kAvailabilityType) return true;
    constexpr unsigned char kRunningOrOnLine = 0x09;
    unsigned char state = 0;
    // Result not used: the state of a sensor that cannot be read stays 0, which is out of service.
    (void)GetSensorStatus(sensor.SensorNumbers, kAvailabilityType, state);
    return (state & kRunningOrOnLine) != 0;
}

int Sensor::WriteReading(const SensorDescription* sensor, char* out) {
    if (out == nullptr) return -1;
    unsigned char raw = 0;
    double value = 0.0;
    if (!ReadAnalog(sensor, raw) || IsProcessorAbsent(*sensor) || !IsInService(*sensor) ||
        raw == kNoReading || GetReadingConversion(sensor->sfp, raw, value) != 0)
        return WriteUnknown(out);
    WriteFixed(out, value, sensor->SensorUnit);
    return 0;
}

int Sensor::GetVoltageCurrent(int i, char* out) {
    return WriteReading(EntryOf(VSInfo, i), out);
}

int Sensor::GetTemperatureCurrent(int i, char* out) {
    return WriteReading(EntryOf(TSInfo, i), out);
}

int Sensor::GetFanSpeed(int i, char* out) {
    if (out == nullptr) return -1;
    const SensorDescription* const fan = EntryOf(FSInfo, i);
    unsigned char raw = 0;
    if (!ReadAnalog(fan, raw) || IsProcessorAbsent(*fan) || !IsInService(*fan) || raw == kNoReading)
        return WriteUnknown(out);
    return WriteSpeed(*fan, raw, out);
}

// A fan without a unit, or measured in percent, is shown in percent of its highest reading.
int Sensor::WriteSpeed(const SensorDescription& fan, unsigned char raw, char* out) {
    double speed = 0.0;
    if (GetReadingConversion(fan.sfp, raw, speed) != 0) return WriteUnknown(out);
    const auto percent = [&] {
        return ToInt32(Product(Quotient(speed, fan.SensorReadingMaxD), 100.0));
    };

    if (std::strcmp(fan.SensorUnit, SensorsUnit[0]) == 0) {
        if (fan.SensorReadingMaxD == 0.0) return WriteUnknown(out);
        WriteWhole(out, percent(), "%");
        return 0;
    }
    // Kept: the controller is asked who it is, and the answer is not used.
    unsigned char majorFirmwareRevision = 0;
    unsigned char minorFirmwareRevision = 0;
    (void)GetDeviceID(&majorFirmwareRevision, &minorFirmwareRevision);
    if (std::strcmp(fan.SensorUnit, "%") == 0)
        WriteWhole(out, percent(), "%");
    else
        WriteWhole(out, ToInt32(speed), fan.SensorUnit);
    return 0;
}

int Sensor::GetFanStatus(int i, char& status) {
    const SensorDescription* const fan = EntryOf(FSInfo, i);
    if (fan == nullptr) return -1;
    unsigned char reading = 0;
    const bool turns = ReadSensor(fan->SensorNumbers, reading) == 0 && reading != 0;
    status = turns ? STATUS_NORMAL : STATUS_ERROR;
    return 0;
}
