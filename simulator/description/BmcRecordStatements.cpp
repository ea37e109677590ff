// SPDX-License-Identifier: MIT
//
// The statements about the repository: sensors' records field by field, records of other kinds and
// dumps, and what can be wrong with them.

#include <exception>

#include "simulator/description/MachineDraft.h"

namespace sim {
namespace {

void readDump(MachineLine& line, MachineDraft& draft) {
    Bytes dump = draft.capture(line);
    BmcDraft& bmc = controllerOf(line, draft);
    bmc.sensorIsLast = false;
    bmc.records.push_back({std::nullopt, std::move(dump), true, line});
}

void readSensor(MachineLine& line, MachineDraft& draft) {
    const std::uint8_t number = line.byte("the sensor number");
    const std::string name = line.text("the sensor name");
    BmcDraft& bmc = controllerOf(line, draft);
    try {
        bmc.records.push_back({SdrRecord(name, number), {}, false, line});
    } catch (const std::exception& error) {
        line.fail(error.what());
    }
    bmc.sensorIsLast = true;
}

// A record of another kind than a sensor's: its type, and the bytes behind the header.
void readRecord(MachineLine& line, MachineDraft& draft) {
    constexpr std::uint8_t kVersion = 0x51;
    constexpr std::size_t kMost = 0xFF;
    Bytes bytes{0, 0, kVersion, line.byte("the record type"), 0};
    while (line.more()) bytes.push_back(line.hexByte("the byte"));
    const std::size_t length = bytes.size() - SdrRecord::kHeaderSize;
    if (length > kMost) line.fail("a record has at most 255 bytes behind its header");
    bytes[4] = static_cast<std::uint8_t>(length);
    BmcDraft& bmc = controllerOf(line, draft);
    bmc.sensorIsLast = false;
    bmc.records.push_back({std::nullopt, std::move(bytes), false, line});
}

std::uint16_t wordOf(MachineLine& line, const char* what) {
    constexpr std::uint32_t kMost = 0xFFFF;
    return static_cast<std::uint16_t>(line.number(what, kMost));
}

void readRepository(MachineLine& line, MachineDraft& draft) {
    BmcDraft& bmc = controllerOf(line, draft);
    if (line.takeIf("count")) {
        if (bmc.recordCount) line.fail("the count was given already");
        bmc.recordCount = wordOf(line, "the count");
        return;
    }
    line.expect("next");
    const std::uint16_t id = wordOf(line, "the record ID");
    const std::uint16_t next = wordOf(line, "the next record ID");
    if (!bmc.nextRecords.try_emplace(id, NextRecordDraft{next, line}).second)
        line.fail("what follows the record was given already");
}

// The sensor's record that a field statement belongs to.
RecordDraft& lastSensor(const char* word, MachineLine& line, MachineDraft& draft) {
    BmcDraft& bmc = controllerOf(line, draft);
    if (!bmc.sensorIsLast) line.fail(std::string(word) + " belongs to a sensor, and there is none");
    return bmc.records.back();
}

// The same, each field once.
SdrRecord& field(const char* word, MachineLine& line, MachineDraft& draft) {
    RecordDraft& last = lastSensor(word, line, draft);
    const auto [before, isNew] = last.fields.emplace(word, line.number());
    if (!isNew)
        line.fail(std::string(word) + " was given in line " + std::to_string(before->second));
    return *last.sensor;
}

void readType(MachineLine& line, MachineDraft& draft) {
    (void)field("type", line, draft).kind(line.byte("the sensor type"));
}

void readEntity(MachineLine& line, MachineDraft& draft) {
    SdrRecord& record = field("entity", line, draft);
    const std::uint8_t id = line.byte("the entity");
    const std::uint8_t instance = line.more() ? line.byte("the instance") : std::uint8_t{1};
    (void)record.entity(id, instance);
}

void readEvent(MachineLine& line, MachineDraft& draft) {
    (void)field("event", line, draft).event(line.byte("the event/reading type"));
}

void readUnit(MachineLine& line, MachineDraft& draft) {
    SdrRecord& record = field("unit", line, draft);
    const std::uint8_t base = line.byte("the unit");
    (void)record.unit(base, line.more() ? line.byte("the modifier unit") : std::uint8_t{0});
}

void readFormat(MachineLine& line, MachineDraft& draft) {
    (void)field("format", line, draft).unit1(line.byte("the format byte"));
}

void readFactors(MachineLine& line, MachineDraft& draft) {
    SdrRecord& record = field("factors", line, draft);
    const int m = line.integer("M", -512, 511);
    const int b = line.integer("B", -512, 511);
    const int bExponent = line.integer("the exponent of B", -8, 7);
    (void)record.factors(m, b, bExponent, line.integer("the result exponent", -8, 7));
}

void readLinearization(MachineLine& line, MachineDraft& draft) {
    (void)field("linearization", line, draft).linearization(line.byte("the linearization"));
}

void readLimits(MachineLine& line, MachineDraft& draft) {
    SdrRecord& record = field("limits", line, draft);
    const std::uint8_t maximum = line.byte("the maximum reading");
    (void)record.limits(maximum, line.byte("the minimum reading"));
}

void readMasks(MachineLine& line, MachineDraft& draft) {
    SdrRecord& record = field("masks", line, draft);
    const std::uint8_t readable = line.byte("the readable thresholds");
    (void)record.thresholdMasks(readable, line.byte("the settable thresholds"));
}

void readDelivered(MachineLine& line, MachineDraft& draft) {
    (void)field("delivered", line, draft);
    lastSensor("delivered", line, draft).quirks.delivered =
        line.number("the number of bytes", SdrRecord::kSize);
}

void readReread(MachineLine& line, MachineDraft& draft) {
    RecordDraft& last = lastSensor("reread", line, draft);
    const std::size_t offset = line.number("the offset", SdrRecord::kSize - 1);
    if (!last.quirks.reread.emplace(offset, line.byte("the byte")).second)
        line.fail("the byte was given already");
}

constexpr MachineStatement kStatements[] = {
    {"sdr", readDump},
    {"sensor", readSensor},
    {"record", readRecord},
    {"repository", readRepository},
    {"type", readType},
    {"entity", readEntity},
    {"event", readEvent},
    {"unit", readUnit},
    {"format", readFormat},
    {"factors", readFactors},
    {"linearization", readLinearization},
    {"limits", readLimits},
    {"masks", readMasks},
    {"delivered", readDelivered},
    {"reread", readReread},
};

}  // namespace

std::span<const MachineStatement> bmcRecordStatements() {
    return kStatements;
}

}  // namespace sim
