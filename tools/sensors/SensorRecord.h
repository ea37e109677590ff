// SPDX-License-Identifier: MIT
//
// What a record of the BMC's sensor data repository says about its sensors (IPMI 2.0, 43.1 full,
// 43.2 compact and 43.3 event-only sensor records).
#ifndef TALVANE_TOOLS_SENSORS_SENSORRECORD_H
#define TALVANE_TOOLS_SENSORS_SENSORRECORD_H

#include <string>
#include <vector>

#include "base/Bytes.h"

namespace tool {

// How a raw reading becomes a value (IPMI 2.0, 36.3). Unlike the library, the tool follows the
// standard for signed readings and negative factors, too.
struct ReadingFormula {
    enum class Format { kUnsigned = 0, kOnesComplement = 1, kTwosComplement = 2, kNone = 3 };
    Format format = Format::kNone;
    int linearization = 0;
    int m = 0;
    int b = 0;
    int bExponent = 0;
    int resultExponent = 0;
};

struct SensorRecord {
    enum class Kind { kFull = 1, kCompact = 2, kEventOnly = 3 };
    Kind kind = Kind::kFull;
    int owner = 0;  // 0x20: the BMC itself
    int lun = 0;
    int number = 0;
    int entity = 0;
    int instance = 0;   // from 0x60 to 0x7F: counted within the owner
    int type = 0;       // sensor type
    int eventType = 0;  // event/reading type
    // Bits of the states that the sensor can report; of a threshold sensor, the thresholds that can
    // be read (low byte) and set (high byte).
    unsigned mask = 0;
    unsigned char unit1 = 0;
    unsigned char baseUnit = 0;
    unsigned char modifierUnit = 0;
    ReadingFormula formula;
    std::string name;  // as the firmware has it, without surrounding blanks; can be empty
};

inline constexpr int kThresholdEventType = 0x01;
inline constexpr int kSensorSpecificEventType = 0x6F;

inline bool HasThresholds(const SensorRecord& record) {
    return record.eventType == kThresholdEventType;
}

// The sensors of one record, header included: one, or several that share a compact or event-only
// record. None for a record that does not describe a sensor, and for one that ends before the
// sensor's number. Bytes that are missing after it count as 0.
std::vector<SensorRecord> DecodeSensorRecord(talvane::ByteView record);

// The reading's unit: "degree C", "%", "V", "Watts/hour". Empty when there is none.
std::string UnitName(const SensorRecord& record);

}  // namespace tool

#endif
