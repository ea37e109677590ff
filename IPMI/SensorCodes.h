// SPDX-License-Identifier: MIT
//
// Codes of sensors and sensor data records that several files of this folder look at, each with the
// section of IPMI 2.0 that defines it.
#ifndef TALVANE_IPMI_SENSORCODES_H
#define TALVANE_IPMI_SENSORCODES_H

namespace talvane {

// A sensor number that names no sensor.
constexpr unsigned char kNoSensor = 0xFF;

// Event/reading types (42.1).
constexpr unsigned char kUnspecifiedType = 0x00;
constexpr unsigned char kFirstDiscreteType = 0x02;
constexpr unsigned char kLastDiscreteType = 0x0B;  // Kept: not 0x0C, device power states.
constexpr unsigned char kDevicePresenceType = 0x08;
constexpr unsigned char kAvailabilityType = 0x0A;
constexpr unsigned char kSensorSpecificType = 0x6F;
constexpr unsigned char kFirstOemType = 0x7F;  // Kept: not 0x70.

// The analog data format: bits 7-6 of a record's Unit 1 byte (43.1, byte 21).
enum class DataFormat {
    kUnsigned = 0,
    kOnesComplement = 1,
    kTwosComplement = 2,
    kNoAnalogReading = 3
};

constexpr DataFormat DataFormatOf(unsigned char unit1) {
    return static_cast<DataFormat>(unit1 >> 6);
}

// Masks of readable and settable thresholds (35.8).
constexpr unsigned char kLowerNonCritical = 0x01;
constexpr unsigned char kLowerCritical = 0x02;
constexpr unsigned char kLowerNonRecoverable = 0x04;
constexpr unsigned char kUpperNonCritical = 0x08;
constexpr unsigned char kUpperCritical = 0x10;
constexpr unsigned char kUpperNonRecoverable = 0x20;
constexpr unsigned char kAllThresholds = 0x3F;

}  // namespace talvane

#endif
