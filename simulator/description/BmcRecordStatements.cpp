// SPDX-License-Identifier: MIT
//
// The statements about the sensor data record repository: sdr, record, repository, and sensor with
// its field statements. What sensors show is in BmcReadingStatements.cpp.

#include <exception>

#include "simulator/description/MachineDraft.h"

namespace sim {
namespace {

void ReadRepositoryDump(MachineLine& line, MachineDraft& draft) {
    Bytes dump = draft.Capture(line);
    BmcDraft& bmc = ControllerOf(line, draft);
    bmc.sensorIsLast = false;
    bmc.records.push_back({std::nullopt, std::move(dump), true, line});
}

void ReadSensor(MachineLine& line, MachineDraft& draft) {
    const std::uint8_t number = line.TakeByte("the sensor number");
    const std::string name = line.TakeText("the sensor name");
    BmcDraft& bmc = ControllerOf(line, draft);
    try {
        bmc.records.push_back({SdrRecord(name, number), {}, false, line});
    } catch (const std::exception& error) {
        line.Fail(error.what());
    }
    bmc.sensorIsLast = true;
}

// A record of another type than a sensor's: its type, and the bytes after the header.
void ReadOtherRecord(MachineLine& line, MachineDraft& draft) {
    constexpr std::uint8_t kVersion = 0x51;
    constexpr std::size_t kMax = 0xFF;
    Bytes bytes{0, 0, kVersion, line.TakeByte("the record type"), 0};
    while (line.HasMore()) bytes.push_back(line.TakeHexByte("the byte"));
    const std::size_t length = bytes.size() - SdrRecord::kHeaderSize;
    if (length > kMax) line.Fail("a record has at most 255 bytes after its header");
    bytes[4] = static_cast<std::uint8_t>(length);
    BmcDraft& bmc = ControllerOf(line, draft);
    bmc.sensorIsLast = false;
    bmc.records.push_back({std::nullopt, std::move(bytes), false, line});
}

std::uint16_t TakeRecordWord(MachineLine& line, const char* what) {
    constexpr std::uint32_t kMax = 0xFFFF;
    return static_cast<std::uint16_t>(line.TakeNumber(what, kMax));
}

void ReadRepository(MachineLine& line, MachineDraft& draft) {
    BmcDraft& bmc = ControllerOf(line, draft);
    if (line.TakeIf("count")) {
        if (bmc.recordCount) line.Fail("the count was given already");
        bmc.recordCount = TakeRecordWord(line, "the count");
        return;
    }
    line.ExpectWord("next");
    const std::uint16_t id = TakeRecordWord(line, "the record ID");
    const std::uint16_t next = TakeRecordWord(line, "the next record ID");
    if (!bmc.nextRecords.try_emplace(id, NextRecordDraft{next, line}).second)
        line.Fail("what follows the record was given already");
}

// The sensor record that a field statement belongs to.
RecordDraft& LastSensorRecord(const char* word, MachineLine& line, MachineDraft& draft) {
    BmcDraft& bmc = ControllerOf(line, draft);
    if (!bmc.sensorIsLast) line.Fail(std::string(word) + " belongs to a sensor, and there is none");
    return bmc.records.back();
}

// The same for a field that may be given only once.
SdrRecord& SensorField(const char* word, MachineLine& line, MachineDraft& draft) {
    RecordDraft& last = LastSensorRecord(word, line, draft);
    const auto [before, isNew] = last.fields.emplace(word, line.LineNumber());
    if (!isNew)
        line.Fail(std::string(word) + " was given in line " + std::to_string(before->second));
    return *last.sensor;
}

void ReadType(MachineLine& line, MachineDraft& draft) {
    (void)SensorField("type", line, draft).Kind(line.TakeByte("the sensor type"));
}

void ReadEntity(MachineLine& line, MachineDraft& draft) {
    SdrRecord& record = SensorField("entity", line, draft);
    const std::uint8_t id = line.TakeByte("the entity");
    const std::uint8_t instance = line.HasMore() ? line.TakeByte("the instance") : std::uint8_t{1};
    (void)record.Entity(id, instance);
}

void ReadEvent(MachineLine& line, MachineDraft& draft) {
    (void)SensorField("event", line, draft).Event(line.TakeByte("the event/reading type"));
}

void ReadUnit(MachineLine& line, MachineDraft& draft) {
    SdrRecord& record = SensorField("unit", line, draft);
    const std::uint8_t base = line.TakeByte("the unit");
    (void)record.Unit(base, line.HasMore() ? line.TakeByte("the modifier unit") : std::uint8_t{0});
}

void ReadFormat(MachineLine& line, MachineDraft& draft) {
    (void)SensorField("format", line, draft).Unit1(line.TakeByte("the format byte"));
}

void ReadFactors(MachineLine& line, MachineDraft& draft) {
    SdrRecord& record = SensorField("factors", line, draft);
    const int m = line.TakeInteger("M", -512, 511);
    const int b = line.TakeInteger("B", -512, 511);
    const int bExponent = line.TakeInteger("the exponent of B", -8, 7);
    (void)record.Factors(m, b, bExponent, line.TakeInteger("the result exponent", -8, 7));
}

void ReadLinearization(MachineLine& line, MachineDraft& draft) {
    (void)SensorField("linearization", line, draft)
        .Linearization(line.TakeByte("the linearization"));
}

void ReadLimits(MachineLine& line, MachineDraft& draft) {
    SdrRecord& record = SensorField("limits", line, draft);
    const std::uint8_t maximum = line.TakeByte("the maximum reading");
    (void)record.Limits(maximum, line.TakeByte("the minimum reading"));
}

void ReadMasks(MachineLine& line, MachineDraft& draft) {
    SdrRecord& record = SensorField("masks", line, draft);
    const std::uint8_t readable = line.TakeByte("the readable thresholds");
    (void)record.ThresholdMasks(readable, line.TakeByte("the settable thresholds"));
}

void ReadDelivered(MachineLine& line, MachineDraft& draft) {
    (void)SensorField("delivered", line, draft);
    LastSensorRecord("delivered", line, draft).quirks.delivered =
        line.TakeNumber("the number of bytes", SdrRecord::kSize);
}

void ReadReread(MachineLine& line, MachineDraft& draft) {
    RecordDraft& last = LastSensorRecord("reread", line, draft);
    const std::size_t offset = line.TakeNumber("the offset", SdrRecord::kSize - 1);
    if (!last.quirks.reread.emplace(offset, line.TakeByte("the byte")).second)
        line.Fail("the byte was given already");
}

constexpr MachineStatement kBmcRecordStatements[] = {
    {"sdr", ReadRepositoryDump},
    {"sensor", ReadSensor},
    {"record", ReadOtherRecord},
    {"repository", ReadRepository},
    {"type", ReadType},
    {"entity", ReadEntity},
    {"event", ReadEvent},
    {"unit", ReadUnit},
    {"format", ReadFormat},
    {"factors", ReadFactors},
    {"linearization", ReadLinearization},
    {"limits", ReadLimits},
    {"masks", ReadMasks},
    {"delivered", ReadDelivered},
    {"reread", ReadReread},
};

}  // namespace

std::span<const MachineStatement> BmcRecordStatements() {
    return kBmcRecordStatements;
}

}  // namespace sim
