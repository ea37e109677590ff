// SPDX-License-Identifier: MIT
//
// What a walk over the repository keeps of each sensor (a walk entry), and the tables that are
// built from the entries.
#ifndef TALVANE_IPMI_SENSORRECORDS_H
#define TALVANE_IPMI_SENSORRECORDS_H

#include <cstddef>

// How a raw reading becomes a value (IPMI 2.0, 36.3).
struct SensorFormulaParameter {
    unsigned char Unit1;                // data format, rate unit, modifier use, percentage
    unsigned char SensorLinearization;  // low 7 bits
    short M;
    short B;
    signed char BExp;
    signed char RExp;
};
static_assert(sizeof(SensorFormulaParameter) == 8, "no holes");

// Thresholds as the controller keeps them. Bits of the two masks: 0 lower non-critical, 1 lower
// critical, 2 lower non-recoverable, 3 upper non-critical, 4 upper critical, 5 upper
// non-recoverable.
struct SensorThresholdInfoRaw {
    int deviceID;  // entity ID
    int sensorType;
    unsigned char UpperNonRecoverThresholdValue;
    unsigned char UpperCriticalThresholdValue;
    unsigned char UpperNonCriticalThresholdValue;
    unsigned char LowerNonRecoverThreshold;
    unsigned char LowerCriticalThreshold;
    unsigned char LowerNonCriticalThreshold;
    unsigned char MaxThreshold;  // upper bound when thresholds are moved up
    unsigned char MinThreshold;  // lower bound when thresholds are moved down
    unsigned char readableFlag;  // mask
    unsigned char settableFlag;  // mask
    int changeTrend;             // for the caller; the library does not use it
};
static_assert(sizeof(SensorThresholdInfoRaw) == 24, "two bytes of padding before changeTrend");
static_assert(offsetof(SensorThresholdInfoRaw, changeTrend) == 20, "see above");

// The same thresholds as values in the sensor's unit.
struct SensorThresholdInfoConverted {
    int deviceID;
    int sensorType;
    double UpperNonRecoverThresholdValue;
    double UpperCriticalThresholdValue;
    double UpperNonCriticalThresholdValue;
    double LowerNonRecoverThreshold;
    double LowerCriticalThreshold;
    double LowerNonCriticalThreshold;
    double MaxThreshold;
    double MinThreshold;
    unsigned char readableFlag;
    unsigned char settableFlag;
    int changeTrend;
};
static_assert(sizeof(SensorThresholdInfoConverted) == 80, "doubles are aligned on 4");
static_assert(offsetof(SensorThresholdInfoConverted, changeTrend) == 76, "see above");

// One sensor. Texts are NUL-terminated.
struct SensorDescription {
    unsigned char SensorNumbers;
    unsigned char SensorEntityInstance;  // 0xFF: unknown; device-relative instances count from 0
    unsigned char SensorEntityID;        // 0: unknown
    unsigned char SensorType;
    unsigned char SensorEventReadingCode;
    unsigned char SensorCodeOffset;    // state bits of a sensor-specific sensor; 0xFF: unknown
    unsigned char SensorDeviceStatus;  // not filled
    double SensorReadingMaxD;          // highest reading; 0.0: unknown
    int isAnalogReading;               // Kept: 1 when there is NO analog reading
    char IDString[64];
    char SensorReadingValue[64];  // not filled
    char SensorUnit[64];
    char SensorReadingMax[64];  // empty when unknown
    char SensorReadingMin[64];
    SensorFormulaParameter sfp;
    SensorThresholdInfoRaw stir;
    SensorThresholdInfoConverted stic;
};
static_assert(sizeof(SensorDescription) == 452, "one byte of padding before the double");
static_assert(offsetof(SensorDescription, SensorReadingMaxD) == 8, "see above");
static_assert(offsetof(SensorDescription, sfp) == 340, "no other holes");

// The sensors of one kind. `quantity` grows with each build of the table and can exceed 64.
struct TemSensorsInfo {
    int quantity;
    SensorDescription sd[64];
};

struct VoltSensorsInfo {
    int quantity;
    SensorDescription sd[64];
};

struct FanSensorsInfo {
    int quantity;
    SensorDescription sd[64];
};

struct ProcessorSensorsInfo {
    int quantity;
    SensorDescription sd[64];
};
static_assert(sizeof(TemSensorsInfo) == 28932, "a counter and 64 sensors");

// The sensors of one entity and one type.
struct SensorNumberInfo {
    int quantity;
    int sensorOrder[64];  // indexes into the walk's entries
    unsigned char sensorNumber[64];
};
static_assert(sizeof(SensorNumberInfo) == 324, "no holes");

#endif
