// SPDX-License-Identifier: MIT
//
// The state of a discrete sensor, as bits and as text.

#include <bit>
#include <cstring>

#include "IPMI/EventCodeTable.h"
#include "IPMI/Responses.h"
#include "IPMI/Sensor.h"
#include "IPMI/SensorCodes.h"
#include "IPMI/SensorTable.h"

using namespace talvane;

namespace {

constexpr int kOffsetsPerType = 16;  // rows of EventDesc

bool IsDiscreteType(unsigned char code) {
    return code >= kFirstDiscreteType && code <= kLastDiscreteType;
}

const char* TextOfState(unsigned char code, int offset) {
    if (code == kUnspecifiedType) return "Unspecified";
    if (IsDiscreteType(code)) return EventDesc[(code - 1) * kOffsetsPerType + offset];
    if (code == kSensorSpecificType) return "Sensor-specific";
    if (code >= kFirstOemType) return "OEM";
    return "";
}

// Describes the lowest bit that is set in `state`. The text is empty when no bit is set and for
// types without texts. Kept: threshold events have texts, and they are not looked up.
EventInfo DescribeEvent(unsigned char code, unsigned char state) {
    if (state == 0) return {0, ""};
    const int offset = std::countr_zero(state);
    EventInfo info{0, TextOfState(code, offset)};
    if (code == kDevicePresenceType && offset <= 1) info.meaning = offset + 1;
    return info;
}

}  // namespace

int Sensor::GetSensorStatus(unsigned char sensorNumber, unsigned char code, unsigned char& state) {
    if (Exchange(SENSER_EVENT_CMD, Get_sensor_reading, kAnyAddress, {sensorNumber}) != 0) return -1;
    const bool hasStates = IsDiscreteType(code) || code == kSensorSpecificType;
    state = hasStates ? ResponseByte(ReadingResponse::kStates) : static_cast<unsigned char>(0);
    return 0;
}

int Sensor::GetDeviceStatus(unsigned char code, unsigned char state, char* out) {
    constexpr unsigned char kNoState = 0xFF;
    if (out == nullptr || state == kNoState) return -1;
    std::strcpy(out, DescribeEvent(code, state).desc);
    return 0;
}

int Sensor::WriteState(const SensorDescription* sensor, char* out) {
    if (out == nullptr || sensor == nullptr) return -1;
    unsigned char state = 0;
    // Result not used: when the sensor cannot be read, its state stays 0.
    (void)GetSensorStatus(sensor->SensorNumbers, sensor->SensorEventReadingCode, state);
    if (GetDeviceStatus(sensor->SensorEventReadingCode, state, out) != 0) out[0] = '\0';
    return 0;
}

int Sensor::GetFanStatusDescription(int i, char* out) {
    return WriteState(EntryOf(FSInfo, i), out);
}

int Sensor::GetVoltageStatusDescription(int i, char* out) {
    return WriteState(EntryOf(VSInfo, i), out);
}

int Sensor::GetTemperatureStatusDescription(int i, char* out) {
    return WriteState(EntryOf(TSInfo, i), out);
}
