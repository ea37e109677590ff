// SPDX-License-Identifier: MIT
//
// One sensor data record (SDR) as the controller's repository holds it (IPMI 2.0, 43.1: full sensor
// record).
#ifndef TALVANE_IPMI_SDR_H
#define TALVANE_IPMI_SDR_H

#include <cstddef>

#include "../Export.h"

class TALVANE_EXPORT SDR {
public:
    enum RecordType { FULL_SENSOR_RECORD = 1 };

    // The record byte for byte, in three parts. Offsets below count from 0.
#pragma pack(push, 1)
    struct SensorRecordHeader {
        unsigned short RecordID;
        unsigned char version;
        unsigned char type;
        unsigned char length;  // bytes after the header
    };

    struct RecordKey {
        unsigned char OwnerID;
        unsigned char OwnerLUN;
        unsigned char SensorNumber;  // 0xFF when the record names no sensor
    };

    struct RecordBody {
        unsigned char EntityID;
        unsigned char EntityInstance;  // device-relative from 0x60 to 0x7F
        unsigned char SensorInitialization;
        unsigned char SensorCapabilities;
        unsigned char SensorType;
        unsigned char EventType;  // 0x01 threshold, 0x6F sensor-specific
        unsigned short ThresholdReadingMaskLow;
        unsigned short ThresholdReadingMaskUp;
        unsigned short
            DiscreteReadingMask;  // low byte: readable thresholds; high byte: settable ones
        unsigned char unit1;      // data format, rate unit, modifier use, percentage
        unsigned char BaseUnit;
        unsigned char ModifierUnit;
        unsigned char linearization;
        unsigned char M;
        unsigned char tolerance;  // bits 7-6 belong to M
        unsigned char B;
        unsigned char accuracy;  // bits 7-6 belong to B
        unsigned char accuracyExp;
        unsigned char RExp;  // bits 7-4; bits 3-0 are the exponent of B
        unsigned char flags;
        unsigned char NominalReading;
        unsigned char NormalMaximumReading;
        unsigned char NormalMinimumReading;
        unsigned char SensorMaximumReading;
        unsigned char SensorMinimumReading;
        unsigned char UperNonRecoverableThreshold;
        unsigned char UperCriticalThreshold;
        unsigned char UperNonCriticalThreshold;
        unsigned char LowerNonRecoverableThreshold;
        unsigned char LowerCriticalrThreshold;
        unsigned char LowerNonCriticalThreshold;
        unsigned char PositiveGoing;  // hysteresis
        unsigned char NegativeGoing;
        unsigned char reserved[2];
        unsigned char OEM;
        unsigned char IDStringTypeLength;
        unsigned char IDString[16];  // not NUL-terminated
    };
#pragma pack(pop)

    // Initialises nothing: IsInitOK has no meaning before a record is assigned.
    SDR();

    // Copies the 64 bytes at `record`, which must not be null.
    SDR(unsigned char* record);

    // Copies 64 bytes. Null empties the object; the bytes of the last record stay in it.
    SDR& operator=(unsigned char* record);

    unsigned char IsInitOK();  // 1 while the object holds a record, else 0

    // The record's fields. All bits are set while the object is empty.
    unsigned char GetSensorRecordType();
    unsigned char GetSensorOwnerID();
    unsigned char GetSensorOwnerLUN();
    unsigned char GetSensorNumber();
    unsigned char GetSensorType();
    unsigned char GetEventType();
    unsigned char GetEntityID();
    unsigned char GetEntityInstance();
    unsigned short GetThresholdInfo();
    unsigned char GetUnit1();
    unsigned char GetBaseUnit();
    unsigned char GetModifierUnit();
    unsigned char GetLinearization();
    unsigned char GetM();
    unsigned char GetB();
    unsigned char GetRExp();
    unsigned char Gettolerance();
    unsigned char Getaccuracy();
    unsigned char GetSensorReadingMax();
    unsigned char GetSensorReadingMin();

    // 1 when the sensor has an analog reading, else 0. Also while the object is empty, this looks
    // at the byte of the last record.
    char IsAnalog();

    // The signed factors of the conversion formula: M and B have 10 bits, the exponents 4.
    short GetValueM();
    short GetValueB();
    char GetBExpValue();
    char GetRExpValue();

    int GetIDstringLen();  // 0 for every record; GetIDstring uses the real length

    // Copies up to 15 characters and writes a NUL to out[15]. The bytes between them stay
    // untouched: pass 16 zeroed bytes. Returns 0, or -1 for a null pointer.
    int GetIDstring(char* out);

private:
    SensorRecordHeader header;
    RecordKey key;
    RecordBody body;
    unsigned char InitOK;
};
static_assert(sizeof(SDR::SensorRecordHeader) == 5, "bytes 0 to 4 of the record");
static_assert(sizeof(SDR::RecordKey) == 3, "bytes 5 to 7");
static_assert(sizeof(SDR::RecordBody) == 56, "bytes 8 to 63");
static_assert(offsetof(SDR::RecordBody, unit1) == 20 - 8, "byte 20");
static_assert(offsetof(SDR::RecordBody, RExp) == 29 - 8, "byte 29");
static_assert(offsetof(SDR::RecordBody, IDStringTypeLength) == 47 - 8, "byte 47");
static_assert(sizeof(SDR) == 65, "the record, then InitOK");

#endif
