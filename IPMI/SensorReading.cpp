// SPDX-License-Identifier: MIT
//
// Current readings of the sensors in the tables, as texts, and the status of a fan.

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

// Always 0: for agents, a sensor that cannot be read has the reading "Unknown".
int WriteUnknown(char* out) {
    std::strcpy(out, "Unknown");
    return 0;
}

// Whether the sensor belongs to a processor that was absent when the repository was walked.
bool IsProcessorAbsent(const ProcessorSensorsInfo& processors, const SensorDescription& sensor) {
    if (sensor.SensorEntityID != Sensor::ENTITY_PROCESSOR) return false;
    constexpr unsigned char kPresent = 0x80;  // processor presence, offset 7 (IPMI 2.0, 42.2)
    const std::size_t used =
        std::min(static_cast<std::size_t>(processors.quantity), std::size(processors.sd));
    return std::any_of(processors.sd, processors.sd + used, [&](const SensorDescription& presence) {
        return presence.SensorEntityInstance == sensor.SensorEntityInstance &&
               presence.SensorEventReadingCode == kSensorSpecificType &&
               presence.SensorCodeOffset < kPresent;
    });
}

}  // namespace

// Whether the sensor is in service. A sensor that reports its availability is when it is running or
// on line; every other sensor is.
bool Sensor::IsInService(const SensorDescription& sensor) {
    if (sensor.SensorEventReadingCode != kAvailabilityType) return true;
    constexpr unsigned char kRunningOrOnLine = 0x09;
    unsigned char state = 0;
    // Result not used: when the sensor cannot be read, its state stays 0, which is out of service.
    (void)GetSensorStatus(sensor.SensorNumbers, kAvailabilityType, state);
    return (state & kRunningOrOnLine) != 0;
}

// Reads a sensor of a table. Returns false where its reading is "Unknown".
bool Sensor::ReadCurrent(const SensorDescription* sensor, unsigned char& raw) {
    constexpr unsigned char kNoReading = 0xFF;
    return sensor != nullptr && sensor->SensorNumbers != kNoSensor &&
           sensor->isAnalogReading == 0 && ReadSensor(sensor->SensorNumbers, raw) == 0 &&
           !IsProcessorAbsent(PSInfo, *sensor) && IsInService(*sensor) && raw != kNoReading;
}

int Sensor::WriteReading(const SensorDescription* sensor, char* out) {
    if (out == nullptr) return -1;
    unsigned char raw = 0;
    double value = 0.0;
    if (!ReadCurrent(sensor, raw) || GetReadingConversion(sensor->sfp, raw, value) != 0)
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
    if (!ReadCurrent(fan, raw)) return WriteUnknown(out);
    return WriteSpeed(*fan, raw, out);
}

// A fan without a unit, or with the unit percent, is shown in percent of its highest reading.
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
    // Kept: the controller is asked for its device ID, and the answer is not used.
    unsigned char majorFirmwareRevision = 0;
    unsigned char minorFirmwareRevision = 0;
    (void)GetDeviceID(&majorFirmwareRevision, &minorFirmwareRevision);
    if (std::strcmp(fan.SensorUnit, "%") == 0)
        WriteWhole(out, percent(), "%");  // Kept: here a highest reading of 0 is not "Unknown".
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
