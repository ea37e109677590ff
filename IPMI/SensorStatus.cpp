// SPDX-License-Identifier: MIT
//
// The state of a discrete sensor, as bits and as text.

#include <bit>
#include <cstring>

#include "IPMI/EventCodeTable.h"
#include "IPMI/Sensor.h"
#include "IPMI/SensorTable.h"

namespace {

constexpr int kOffsetsPerType = 16;

// Event/reading types (IPMI 2.0, 42.1).
constexpr unsigned char kUnspecified = 0x00;
constexpr unsigned char kFirstDiscrete = 0x02;
constexpr unsigned char kLastDiscrete = 0x0B;  // Kept: not 0x0C, device power states.
constexpr unsigned char kDevicePresence = 0x08;
constexpr unsigned char kSensorSpecific = 0x6F;
constexpr unsigned char kFirstOem = 0x7F;

const char* TextOf(unsigned char code, int offset) {
    if (code == kUnspecified) return "Unspecified";
    if (code >= kFirstDiscrete && code <= kLastDiscrete)
        return EventDesc[(code - 1) * kOffsetsPerType + offset];
    if (code == kSensorSpecific) return "Sensor-specific";
    if (code >= kFirstOem) return "OEM";
    return "";
}

// The lowest bit that is set in `state`. Empty when none is set and for types without texts;
// threshold events are not looked up.
EventInfo DescribeEvent(unsigned char code, unsigned char state) {
    if (state == 0) return {0, ""};
    const int offset = std::countr_zero(state);
    EventInfo info{0, TextOf(code, offset)};
    if (code == kDevicePresence && offset <= 1) info.meaning = offset + 1;
    return info;
}

}  // namespace

int Sensor::GetSensorStatus(unsigned char sensorNumber, unsigned char code, unsigned char& state) {
    if (Exchange(SENSER_EVENT_CMD, Get_sensor_reading, ANY_ADDRESS, {sensorNumber}) != 0) return -1;
    const bool discrete =
        (code >= kFirstDiscrete && code <= kLastDiscrete) || code == kSensorSpecific;
    constexpr std::size_t kFirstStates = 2;
    state = discrete ? ResponseBuffer[kFirstStates] : static_cast<unsigned char>(0);
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
    // Result not used: the state of a sensor that cannot be read stays 0.
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
