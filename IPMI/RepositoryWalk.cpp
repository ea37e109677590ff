// SPDX-License-Identifier: MIT
//
// The walk over the sensor data record repository, and the lookups among the entries that it keeps.

#include <array>

#include "IPMI/Sensor.h"
#include "IPMI/SensorCodes.h"
#include "IPMI/WalkEntries.h"

using namespace talvane;

namespace {

// Kept: each record is read in one piece, with the largest count that a request can state.
constexpr int kWholeRecord = 0xFF;
constexpr int kRecordBufferSize = 256;

constexpr unsigned short kNoReservation = 0;
constexpr int kFirstRecordId = 0;
constexpr int kNoMoreRecords = 0xFFFF;  // in place of the next record's ID (IPMI 2.0, 33.12)

constexpr unsigned char kUnknownEntity = 0xFF;
constexpr unsigned char kUnknownState = 0xFF;

// Entity instances that are counted from 0 within a device (IPMI 2.0, 39.1).
constexpr int kFirstDeviceRelative = 0x60;
constexpr int kLastDeviceRelative = 0x7F;

unsigned char InstanceOf(int instance) {
    const bool deviceRelative = instance >= kFirstDeviceRelative && instance <= kLastDeviceRelative;
    return static_cast<unsigned char>(deviceRelative ? instance - kFirstDeviceRelative : instance);
}

// Bits 13-8 of the record's threshold masks; bits 5-0 are the readable thresholds (43.1, bytes 19
// and 20).
unsigned char SettableThresholds(int masks) {
    return static_cast<unsigned char>((masks >> 8) & kAllThresholds);
}

}  // namespace

int Sensor::GetSensorNumbers(int n) {
    if (IsInitOK() == 0 || n <= 0) return -1;
    SensorDescription* const entries = WalkEntries(SensorsInformation).Allocate(n);
    SensorsInformation = entries;

    std::array<unsigned char, kRecordBufferSize> record{};
    int kept = 0;
    int recordID = kFirstRecordId;
    for (int i = 0; i < n; ++i) {
        // Kept: the end of the repository cannot be told from a failure, and the record that is
        // still in the buffer is looked at again. IDs are signed, so that one from 0x8000 on ends
        // the walk, too.
        recordID = GetSDR(kNoReservation, recordID, record.data(), kWholeRecord);
        sdr = record.data();
        if (sdr.GetSensorRecordType() != SDR::FULL_SENSOR_RECORD) continue;
        if (sdr.GetSensorNumber() == kNoSensor) continue;
        SensorsInformation = entries;  // another walk may have run within the request
        FillWalkEntry(kept, entries[kept]);
        ++kept;
        if ((recordID & kNoMoreRecords) == kNoMoreRecords) break;
    }
    SensorsInformation = entries;  // of walks within each other, the one that ends last counts
    return 0;
}

// Fills walk entry k from the sensor data record at hand. The order decides what the texts are made
// of: the limits are written before the unit is known.
void Sensor::FillWalkEntry(int k, SensorDescription& entry) {
    entry.SensorNumbers = sdr.GetSensorNumber();
    entry.sfp.Unit1 = sdr.GetUnit1();
    entry.sfp.M = sdr.GetValueM();
    entry.sfp.B = sdr.GetValueB();
    entry.sfp.BExp = static_cast<signed char>(sdr.GetBExpValue());
    entry.sfp.RExp = static_cast<signed char>(sdr.GetRExpValue());
    entry.sfp.SensorLinearization = sdr.GetLinearization();

    entry.SensorEventReadingCode = sdr.GetEventType();
    if (entry.SensorEventReadingCode == kSensorSpecificType &&
        GetSensorStatus(entry.SensorNumbers, kSensorSpecificType, entry.SensorCodeOffset) != 0)
        entry.SensorCodeOffset = kUnknownState;

    if (sdr.IsAnalog() == 0) entry.isAnalogReading = 1;
    entry.SensorType = sdr.GetSensorType();
    if (entry.isAnalogReading == 0) {
        if (GetReadingConversion(entry.sfp, sdr.GetSensorReadingMax(), entry.SensorReadingMaxD) !=
            0)
            entry.SensorReadingMaxD = 0.0;
        if (ReadSensorMax(k, entry.SensorReadingMax) != 0) entry.SensorReadingMax[0] = '\0';
        if (ReadSensorMin(k, entry.SensorReadingMin) != 0) entry.SensorReadingMin[0] = '\0';
    }

    const unsigned char entity = sdr.GetEntityID();
    entry.SensorEntityID = entity == kUnknownEntity ? static_cast<unsigned char>(0) : entity;
    entry.SensorEntityInstance = InstanceOf(sdr.GetEntityInstance());

    // Result not used: the output is not null.
    (void)GetSensorUnit(entry.SensorUnit, sizeof entry.SensorUnit);
    // Kept: the thresholds are asked for by the entry's index, not by the sensor's number. Result
    // not used: thresholds that cannot be read are zero.
    (void)GetSensorThreshold(static_cast<unsigned char>(k), entry.sfp, entry.stir, entry.stic);
    entry.stir.deviceID = entry.stic.deviceID = entry.SensorEntityID;
    entry.stir.sensorType = entry.stic.sensorType = entry.SensorType;
    entry.stir.settableFlag = entry.stic.settableFlag = SettableThresholds(sdr.GetThresholdInfo());

    if (sdr.GetIDstring(entry.IDString) != 0) entry.IDString[0] = '\0';
}

int Sensor::GetSensorNumberInfo(unsigned char entityID, unsigned char sensorType, int n,
                                SensorNumberInfo& info) {
    info = {};
    constexpr int kMaxMatches = sizeof info.sensorNumber;
    for (int j = 0; j < n && info.quantity < kMaxMatches; ++j) {
        const SensorDescription* const entry = WalkEntries(SensorsInformation).At(j);
        if (entry == nullptr) break;
        if (entry->SensorEntityID != entityID || entry->SensorType != sensorType) continue;
        info.sensorOrder[info.quantity] = j;
        info.sensorNumber[info.quantity] = entry->SensorNumbers;
        ++info.quantity;
    }
    return 0;
}

int Sensor::GetSensorFormulaParameter(unsigned char index, SensorFormulaParameter& out) {
    const SensorDescription* const entry = WalkEntries(SensorsInformation).At(index);
    if (entry == nullptr) return -1;
    out = entry->sfp;
    return 0;
}

int Sensor::GetThreshold(int index, SensorThresholdInfoRaw& raw,
                         SensorThresholdInfoConverted& converted) {
    const SensorDescription* const entry = WalkEntries(SensorsInformation).At(index);
    if (entry == nullptr) return -1;
    raw = entry->stir;
    converted = entry->stic;
    return 0;
}
