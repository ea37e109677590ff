// SPDX-License-Identifier: MIT
//
// The statements about the repository: sensors' records field by field, records of other kinds and
// dumps, and what can be wrong with them.

#include <exception>

#include "simulator/description/MachineDraft.h"

namespace sim {
namespace {

void ReadDump(MachineLine& line, MachineDraft& draft) {
    Bytes dump = draft.Capture(line);
    BmcDraft& bmc = ControllerOf(line, draft);
    bmc.sensorIsLast = false;
    bmc.records.push_back({std::nullopt, std::move(dump), true, line});
}

void ReadSensor(MachineLine& line, MachineDraft& draft) {
    const std::uint8_t number = line.Byte("the sensor number");
    const std::string name = line.Text("the sensor name");
    BmcDraft& bmc = ControllerOf(line, draft);
    try {
        bmc.records.push_back({SdrRecord(name, number), {}, false, line});
    } catch (const std::exception& error) {
        line.Fail(error.what());
    }
    bmc.sensorIsLast = true;
}

// A record of another kind than a sensor's: its type, and the bytes behind the header.
void ReadRecord(MachineLine& line, MachineDraft& draft) {
    constexpr std::uint8_t kVersion = 0x51;
    constexpr std::size_t kMost = 0xFF;
    Bytes bytes{0, 0, kVersion, line.Byte("the record type"), 0};
    while (line.More()) bytes.push_back(line.HexByte("the byte"));
    const std::size_t length = bytes.size() - SdrRecord::kHeaderSize;
    if (length > kMost) line.Fail("a record has at most 255 bytes behind its header");
    bytes[4] = static_cast<std::uint8_t>(length);
    BmcDraft& bmc = ControllerOf(line, draft);
    bmc.sensorIsLast = false;
    bmc.records.push_back({std::nullopt, std::move(bytes), false, line});
}

std::uint16_t WordOf(MachineLine& line, const char* what) {
    constexpr std::uint32_t kMost = 0xFFFF;
    return static_cast<std::uint16_t>(line.Number(what, kMost));
}

void ReadRepository(MachineLine& line, MachineDraft& draft) {
    BmcDraft& bmc = ControllerOf(line, draft);
    if (line.TakeIf("count")) {
        if (bmc.recordCount) line.Fail("the count was given already");
        bmc.recordCount = WordOf(line, "the count");
        return;
    }
    line.Expect("next");
    const std::uint16_t id = WordOf(line, "the record ID");
    const std::uint16_t next = WordOf(line, "the next record ID");
    if (!bmc.nextRecords.try_emplace(id, NextRecordDraft{next, line}).second)
        line.Fail("what follows the record was given already");
}

// The sensor's record that a field statement belongs to.
RecordDraft& LastSensor(const char* word, MachineLine& line, MachineDraft& draft) {
    BmcDraft& bmc = ControllerOf(line, draft);
    if (!bmc.sensorIsLast) line.Fail(std::string(word) + " belongs to a sensor, and there is none");
    return bmc.records.back();
}

// The same, each field once.
SdrRecord& Field(const char* word, MachineLine& line, MachineDraft& draft) {
    RecordDraft& last = LastSensor(word, line, draft);
    const auto [before, isNew] = last.fields.emplace(word, line.Number());
    if (!isNew)
        line.Fail(std::string(word) + " was given in line " + std::to_string(before->second));
    return *last.sensor;
}

void ReadType(MachineLine& line, MachineDraft& draft) {
    (void)Field("type", line, draft).Kind(line.Byte("the sensor type"));
}

void ReadEntity(MachineLine& line, MachineDraft& draft) {
    SdrRecord& record = Field("entity", line, draft);
    const std::uint8_t id = line.Byte("the entity");
    const std::uint8_t instance = line.More() ? line.Byte("the instance") : std::uint8_t{1};
    (void)record.Entity(id, instance);
}

void ReadEvent(MachineLine& line, MachineDraft& draft) {
    (void)Field("event", line, draft).Event(line.Byte("the event/reading type"));
}

void ReadUnit(MachineLine& line, MachineDraft& draft) {
    SdrRecord& record = Field("unit", line, draft);
    const std::uint8_t base = line.Byte("the unit");
    (void)record.Unit(base, line.More() ? line.Byte("the modifier unit") : std::uint8_t{0});
}

void ReadFormat(MachineLine& line, MachineDraft& draft) {
    (void)Field("format", line, draft).Unit1(line.Byte("the format byte"));
}

void ReadFactors(MachineLine& line, MachineDraft& draft) {
    SdrRecord& record = Field("factors", line, draft);
    const int m = line.Integer("M", -512, 511);
    const int b = line.Integer("B", -512, 511);
    const int bExponent = line.Integer("the exponent of B", -8, 7);
    (void)record.Factors(m, b, bExponent, line.Integer("the result exponent", -8, 7));
}

void ReadLinearization(MachineLine& line, MachineDraft& draft) {
    (void)Field("linearization", line, draft).Linearization(line.Byte("the linearization"));
}

void ReadLimits(MachineLine& line, MachineDraft& draft) {
    SdrRecord& record = Field("limits", line, draft);
    const std::uint8_t maximum = line.Byte("the maximum reading");
    (void)record.Limits(maximum, line.Byte("the minimum reading"));
}

void ReadMasks(MachineLine& line, MachineDraft& draft) {
    SdrRecord& record = Field("masks", line, draft);
    const std::uint8_t readable = line.Byte("the readable thresholds");
    (void)record.ThresholdMasks(readable, line.Byte("the settable thresholds"));
}

void ReadDelivered(MachineLine& line, MachineDraft& draft) {
    (void)Field("delivered", line, draft);
    LastSensor("delivered", line, draft).quirks.delivered =
        line.Number("the number of bytes", SdrRecord::kSize);
}

void ReadReread(MachineLine& line, MachineDraft& draft) {
    RecordDraft& last = LastSensor("reread", line, draft);
    const std::size_t offset = line.Number("the offset", SdrRecord::kSize - 1);
    if (!last.quirks.reread.emplace(offset, line.Byte("the byte")).second)
        line.Fail("the byte was given already");
}

constexpr MachineStatement kStatements[] = {
    {"sdr", ReadDump},
    {"sensor", ReadSensor},
    {"record", ReadRecord},
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
    return kStatements;
}

}  // namespace sim
