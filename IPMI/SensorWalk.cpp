// SPDX-License-Identifier: MIT
//
// The walk over the sensor data record repository, and access to what it keeps.

#include <array>
#include <cstddef>
#include <limits>
#include <memory>
#include <new>

#include "IPMI/Sensor.h"

namespace {

// Kept: records are read whole, with the largest count that a request can state.
constexpr int kWholeRecord = 0xFF;
constexpr int kRecordBuffer = 256;

constexpr int kNoRecord = 0xFFFF;
constexpr unsigned char kUnknown = 0xFF;
constexpr unsigned char kSensorSpecific = 0x6F;

// Entity instances that are counted from 0 within a device (IPMI 2.0, 39.1).
constexpr int kFirstRelative = 0x60;
constexpr int kLastRelative = 0x7F;

// What stands in memory in front of a walk's entries. The walks of an object form a ring: a call
// from within a request of a walk may start another one, so none is freed before the object is, and
// any of them can become the current one.
struct WalkHeader {
    int count;
    WalkHeader* next;
};
static_assert(sizeof(WalkHeader) % alignof(SensorDescription) == 0, "entries follow at once");
static_assert(alignof(WalkHeader) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__, "plain memory will do");

WalkHeader& HeaderOf(SensorDescription* entries) {
    return reinterpret_cast<WalkHeader*>(entries)[-1];
}

// Zeroed entries, in the ring behind those of `current` unless that is null. What cannot be
// allocated throws as an array would and leaves the ring as it is.
SensorDescription* NewEntries(int count, SensorDescription* current) {
    constexpr std::size_t kMostBytes = std::numeric_limits<std::size_t>::max() - sizeof(WalkHeader);
    const std::size_t entryCount = static_cast<std::size_t>(count);
    if (entryCount > kMostBytes / sizeof(SensorDescription)) throw std::bad_array_new_length();
    void* const memory =
        ::operator new(sizeof(WalkHeader) + entryCount * sizeof(SensorDescription));
    WalkHeader* const header = new (memory) WalkHeader{count, nullptr};
    WalkHeader& before = current == nullptr ? *header : HeaderOf(current);
    header->next = current == nullptr ? header : before.next;
    before.next = header;
    SensorDescription* const entries = reinterpret_cast<SensorDescription*>(header + 1);
    std::uninitialized_value_construct_n(entries, count);
    return entries;
}

unsigned char InstanceOf(int instance) {
    if (instance >= kFirstRelative && instance <= kLastRelative) instance -= kFirstRelative;
    return static_cast<unsigned char>(instance);
}

// Bits 8 to 13 of the record's masks; bits 0 to 5 tell the readable thresholds.
unsigned char SettableThresholds(int masks) {
    return static_cast<unsigned char>((masks >> 8) & 0x3F);
}

}  // namespace

SensorDescription* Sensor::WalkEntry(int index) {
    if (SensorsInformation == nullptr) return nullptr;
    if (index < 0 || index >= HeaderOf(SensorsInformation).count) return nullptr;
    return &SensorsInformation[index];
}

void Sensor::FreeWalks() {
    if (SensorsInformation == nullptr) return;
    WalkHeader* const first = &HeaderOf(SensorsInformation);
    WalkHeader* walk = first;
    do {
        WalkHeader* const next = walk->next;
        ::operator delete(walk);
        walk = next;
    } while (walk != first);
}

int Sensor::GetSensorNumbers(int n) {
    if (IsInitOK() == 0 || n <= 0) return -1;
    SensorDescription* const entries = NewEntries(n, SensorsInformation);
    SensorsInformation = entries;

    std::array<unsigned char, kRecordBuffer> record{};
    int kept = 0;
    int recordID = 0;
    for (int i = 0; i < n; ++i) {
        // Kept: the end of the repository reads like a failure, and the record that the buffer
        // still holds is looked at again. IDs are signed: those from 0x8000 on end the walk, too.
        recordID = GetSDR(0, recordID, record.data(), kWholeRecord);
        sdr = record.data();
        if (sdr.GetSensorRecordType() != SDR::FULL_SENSOR_RECORD) continue;
        if (sdr.GetSensorNumber() == kUnknown) continue;
        SensorsInformation = entries;  // another walk may have run within the request
        DescribeRecord(kept, entries[kept]);
        ++kept;
        if ((recordID & kNoRecord) == kNoRecord) break;
    }
    SensorsInformation = entries;  // of walks within each other, the one that ends last counts
    return 0;
}

// Fills walk entry k from the record at hand. The order decides what the texts are made of: the
// limits are written before their unit is known.
void Sensor::DescribeRecord(int k, SensorDescription& entry) {
    entry.SensorNumbers = sdr.GetSensorNumber();
    entry.sfp.Unit1 = sdr.GetUnit1();
    entry.sfp.M = sdr.GetValueM();
    entry.sfp.B = sdr.GetValueB();
    entry.sfp.BExp = static_cast<signed char>(sdr.GetBExpValue());
    entry.sfp.RExp = static_cast<signed char>(sdr.GetRExpValue());
    entry.sfp.SensorLinearization = sdr.GetLinearization();

    entry.SensorEventReadingCode = sdr.GetEventType();
    if (entry.SensorEventReadingCode == kSensorSpecific &&
        GetSensorStatus(entry.SensorNumbers, kSensorSpecific, entry.SensorCodeOffset) != 0)
        entry.SensorCodeOffset = kUnknown;

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
    entry.SensorEntityID = entity == kUnknown ? static_cast<unsigned char>(0) : entity;
    entry.SensorEntityInstance = InstanceOf(sdr.GetEntityInstance());

    (void)GetSensorUnit(entry.SensorUnit, sizeof entry.SensorUnit);  // result not used: not null
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
    constexpr int kSlots = sizeof info.sensorNumber;
    for (int j = 0; j < n && info.quantity < kSlots; ++j) {
        const SensorDescription* const entry = WalkEntry(j);
        if (entry == nullptr) break;
        if (entry->SensorEntityID != entityID || entry->SensorType != sensorType) continue;
        info.sensorOrder[info.quantity] = j;
        info.sensorNumber[info.quantity] = entry->SensorNumbers;
        ++info.quantity;
    }
    return 0;
}

int Sensor::GetSensorFormulaParameter(unsigned char index, SensorFormulaParameter& out) {
    const SensorDescription* const entry = WalkEntry(index);
    if (entry == nullptr) return -1;
    out = entry->sfp;
    return 0;
}

int Sensor::GetThreshold(int index, SensorThresholdInfoRaw& raw,
                         SensorThresholdInfoConverted& converted) {
    const SensorDescription* const entry = WalkEntry(index);
    if (entry == nullptr) return -1;
    raw = entry->stir;
    converted = entry->stic;
    return 0;
}
