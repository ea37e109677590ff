// SPDX-License-Identifier: MIT
//
// Reads the fields by their offsets, which count from 0 at the record's first byte.

#include "tools/sensors/SensorRecord.h"

#include <iterator>

#include "IPMI/SensorNames.h"
#include "tools/sensors/IdString.h"

namespace tool {
namespace {

using talvane::ByteAt;
using talvane::ByteView;
using talvane::Le16;

struct RecordField {
    static constexpr std::size_t kType = 3;
    static constexpr std::size_t kOwner = 5;
    static constexpr std::size_t kLun = 6;  // bits 1-0
    static constexpr std::size_t kNumber = 7;
    static constexpr std::size_t kEntity = 8;
    static constexpr std::size_t kInstance = 9;  // bits 6-0
    // Full and compact records.
    static constexpr std::size_t kSensorType = 12;
    static constexpr std::size_t kEventType = 13;
    static constexpr std::size_t kMask = 18;
    static constexpr std::size_t kUnit1 = 20;
    static constexpr std::size_t kBaseUnit = 21;
    static constexpr std::size_t kModifierUnit = 22;
    static constexpr std::size_t kCompactSharing = 23;
    static constexpr std::size_t kCompactId = 31;
    // Full records.
    static constexpr std::size_t kLinearization = 23;  // bits 6-0
    static constexpr std::size_t kM = 24;
    static constexpr std::size_t kB = 26;
    static constexpr std::size_t kExponents = 29;  // result 7-4, B 3-0
    static constexpr std::size_t kFullId = 47;
    // Event-only records.
    static constexpr std::size_t kEventSensorType = 10;
    static constexpr std::size_t kEventEventType = 11;
    static constexpr std::size_t kEventSharing = 12;
    static constexpr std::size_t kEventId = 16;
};

constexpr int kLunBits = 0x03;
constexpr int kInstanceBits = 0x7F;
constexpr int kLinearizationBits = 0x7F;

// The value of `width` bits in two's complement.
int SignedBits(int bits, int width) {
    const int sign = 1 << (width - 1);
    return (bits ^ sign) - sign;
}

// Ten bits: the low eight in one byte, the upper two in bits 7-6 of the next.
int SignedTenBits(ByteView record, std::size_t offset) {
    const int high = ByteAt(record, offset + 1) >> 6;
    return SignedBits(high << 8 | ByteAt(record, offset), 10);
}

ReadingFormula FormulaOf(ByteView record) {
    const int exponents = ByteAt(record, RecordField::kExponents);
    return {.format = static_cast<ReadingFormula::Format>(ByteAt(record, RecordField::kUnit1) >> 6),
            .linearization = ByteAt(record, RecordField::kLinearization) & kLinearizationBits,
            .m = SignedTenBits(record, RecordField::kM),
            .b = SignedTenBits(record, RecordField::kB),
            .bExponent = SignedBits(exponents & 0x0F, 4),
            .resultExponent = SignedBits(exponents >> 4, 4)};
}

// How sensors share a record (IPMI 2.0, 43.2, bytes 24 and 25).
struct Sharing {
    int count;            // of sensors
    bool isAlphabetic;    // what follows the name: letters or digits
    int firstModifier;    // what follows the first sensor's name
    bool eachIsInstance;  // whether the entity instance is counted up, too
};

Sharing SharingOf(ByteView record, std::size_t offset) {
    const int first = ByteAt(record, offset);
    const int second = ByteAt(record, offset + 1);
    const int count = first & 0x0F;
    return {count == 0 ? 1 : count, (first >> 4 & 0x03) == 1, second & 0x7F, (second & 0x80) != 0};
}

std::string Modifier(const Sharing& sharing, int index) {
    constexpr int kLetters = 26;
    const int value = sharing.firstModifier + index;
    if (!sharing.isAlphabetic) return std::to_string(value);
    std::string text(1, static_cast<char>('A' + value % kLetters));
    if (value >= kLetters) text.insert(0, 1, static_cast<char>('A' + (value / kLetters - 1)));
    return text;
}

std::vector<SensorRecord> Shared(const SensorRecord& first, const Sharing& sharing) {
    if (sharing.count == 1) return {first};
    std::vector<SensorRecord> sensors;
    for (int i = 0; i < sharing.count; ++i) {
        SensorRecord sensor = first;
        sensor.number = (first.number + i) & 0xFF;
        if (sharing.eachIsInstance) sensor.instance = (first.instance + i) & kInstanceBits;
        sensor.name = first.name + Modifier(sharing, i);
        sensors.push_back(sensor);
    }
    return sensors;
}

}  // namespace

std::vector<SensorRecord> DecodeSensorRecord(ByteView record) {
    if (record.size() <= RecordField::kNumber) return {};
    SensorRecord sensor;
    sensor.kind = static_cast<SensorRecord::Kind>(record[RecordField::kType]);
    sensor.owner = record[RecordField::kOwner];
    sensor.lun = record[RecordField::kLun] & kLunBits;
    sensor.number = record[RecordField::kNumber];
    sensor.entity = ByteAt(record, RecordField::kEntity);
    sensor.instance = ByteAt(record, RecordField::kInstance) & kInstanceBits;
    sensor.type = ByteAt(record, RecordField::kSensorType);
    sensor.eventType = ByteAt(record, RecordField::kEventType);
    sensor.mask = Le16(record, RecordField::kMask);
    sensor.unit1 = ByteAt(record, RecordField::kUnit1);
    sensor.baseUnit = ByteAt(record, RecordField::kBaseUnit);
    sensor.modifierUnit = ByteAt(record, RecordField::kModifierUnit);
    switch (sensor.kind) {
        case SensorRecord::Kind::kFull:
            sensor.formula = FormulaOf(record);
            sensor.name = IdString(record, RecordField::kFullId);
            return {sensor};
        case SensorRecord::Kind::kCompact:
            sensor.name = IdString(record, RecordField::kCompactId);
            return Shared(sensor, SharingOf(record, RecordField::kCompactSharing));
        case SensorRecord::Kind::kEventOnly:
            sensor.type = ByteAt(record, RecordField::kEventSensorType);
            sensor.eventType = ByteAt(record, RecordField::kEventEventType);
            sensor.mask = 0;
            sensor.name = IdString(record, RecordField::kEventId);
            return Shared(sensor, SharingOf(record, RecordField::kEventSharing));
    }
    return {};
}

std::string UnitName(const SensorRecord& record) {
    constexpr int kPercentage = 0x01;
    constexpr const char* kRates[] = {
        "", " per microsecond", " per ms", " per s", " per minute", " per hour", " per day"};
    const auto nameOf = [](int code) -> std::string {
        const bool known = code > 0 && static_cast<std::size_t>(code) < std::size(SensorsUnit);
        return known ? SensorsUnit[code] : "";
    };
    if ((record.unit1 & kPercentage) != 0) return "%";
    std::string unit = nameOf(record.baseUnit);
    const int modifierUse = record.unit1 >> 1 & 0x03;
    const std::string modifier = nameOf(record.modifierUnit);
    if (modifierUse == 1 && !modifier.empty()) unit += '/' + modifier;
    if (modifierUse == 2 && !modifier.empty()) unit += '*' + modifier;
    const auto rate = static_cast<std::size_t>(record.unit1 >> 3 & 0x07);
    return rate < std::size(kRates) ? unit + kRates[rate] : unit;
}

}  // namespace tool
