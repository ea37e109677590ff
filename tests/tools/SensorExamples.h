// SPDX-License-Identifier: MIT
//
// Sensors as the BMC answers for them, for tests of what is made of them.
#ifndef TALVANE_TESTS_TOOLS_SENSOREXAMPLES_H
#define TALVANE_TESTS_TOOLS_SENSOREXAMPLES_H

#include <cstdint>
#include <string>
#include <vector>

#include "tools/sensors/AllSensors.h"
#include "tools/sensors/SensorStates.h"

namespace tool {

// A temperature of a processor, in degrees Celsius.
inline SensorNow ThresholdSensor(const std::string& name, double value, const Limits& limits) {
    SensorNow sensor;
    sensor.record.name = name;
    sensor.record.owner = 0x20;
    sensor.record.number = 0x10;
    sensor.record.entity = 3;
    sensor.record.instance = 1;
    sensor.record.type = 1;
    sensor.record.eventType = kThresholdEventType;
    sensor.record.baseUnit = 1;
    sensor.record.formula.format = ReadingFormula::Format::kUnsigned;
    sensor.answer.status = SensorAnswer::Status::kRead;
    sensor.answer.states = 0;
    sensor.value = value;
    sensor.limits = limits;
    return sensor;
}

// A sensor of the system board with all fifteen states.
inline SensorNow DiscreteSensor(int type, int eventType, unsigned states) {
    SensorNow sensor;
    sensor.record.name = "Discrete";
    sensor.record.owner = 0x20;
    sensor.record.number = 0x70;
    sensor.record.entity = 7;
    sensor.record.instance = 1;
    sensor.record.type = type;
    sensor.record.eventType = eventType;
    sensor.record.mask = 0x7FFF;
    sensor.answer.status = SensorAnswer::Status::kRead;
    sensor.answer.states = states;
    return sensor;
}

inline SensorNow WithoutReading(SensorNow sensor, SensorAnswer::Status status) {
    sensor.answer = {status, 0, {}};
    sensor.value.reset();
    return sensor;
}

// A record of a sensor that sends events only (IPMI 2.0, 43.3), with the name EV.
inline std::vector<std::uint8_t> EventOnlyRecord() {
    std::vector<std::uint8_t> record(5 + 12 + 2, 0);
    record[2] = 0x51;
    record[3] = 3;
    record[4] = 14;
    record[5] = 0x20;
    record[7] = 0x50;
    record[10] = 0x12;
    record[11] = 0x6F;
    record[16] = 0xC2;
    record[17] = 'E';
    record[18] = 'V';
    return record;
}

}  // namespace tool

#endif
