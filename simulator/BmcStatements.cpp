// SPDX-License-Identifier: MIT
//
// The statements about the management controller: its interfaces, sensor records, the sensors'
// readings, the inventory and the channels.

#include <exception>
#include <limits>

#include "Machine.h"
#include "MachineDraft.h"

namespace sim {
namespace {

constexpr std::uint32_t kMostByte = 0xFF;

std::uint8_t byteOf(MachineLine& line, const char* what, std::uint32_t max = kMostByte) {
    return static_cast<std::uint8_t>(line.number(what, max));
}

BmcDraft& controller(MachineLine& line, MachineDraft& draft) {
    if (!draft.bmc) draft.bmc.emplace(line);
    return *draft.bmc;
}

std::uint8_t bcd(unsigned value) {
    return static_cast<std::uint8_t>(value / 10 << 4 | value % 10);
}

void readFirmware(MachineLine& line, BmcDraft& bmc) {
    constexpr std::uint32_t kMostMajor = 127;
    constexpr std::uint32_t kMostMinor = 99;
    bmc.major = byteOf(line, "the major firmware revision", kMostMajor);
    bmc.minorBcd = bcd(line.number("the minor firmware revision", kMostMinor));
}

void readBmc(MachineLine& line, MachineDraft& draft) {
    BmcDraft& bmc = controller(line, draft);
    if (bmc.line)
        line.fail("the controller was given in line " + std::to_string(bmc.line->number()));
    bmc.line = line;
    const std::string interface = line.word("the interface");
    bmc.kcs = interface == "kcs" || interface == "both";
    bmc.smic = interface == "smic" || interface == "both";
    if (!bmc.kcs && !bmc.smic && interface != "none")
        line.fail("the interface \"" + interface + "\" is none of kcs, smic, both, none");
    if (!line.more()) return;
    line.expect("firmware");
    readFirmware(line, bmc);
}

void readRepository(MachineLine& line, MachineDraft& draft) {
    Bytes dump = draft.capture(line);
    BmcDraft& bmc = controller(line, draft);
    bmc.recordIsLast = false;
    bmc.records.push_back({std::nullopt, std::move(dump), line, {}});
}

void readSensor(MachineLine& line, MachineDraft& draft) {
    const std::uint8_t number = byteOf(line, "the sensor number");
    const std::string name = line.text("the sensor name");
    BmcDraft& bmc = controller(line, draft);
    try {
        bmc.records.push_back({SdrRecord(name, number), {}, line, {}});
    } catch (const std::exception& error) {
        line.fail(error.what());
    }
    bmc.recordIsLast = true;
}

// The record that a field statement belongs to, each field once.
SdrRecord& field(const char* word, MachineLine& line, MachineDraft& draft) {
    BmcDraft& bmc = controller(line, draft);
    if (!bmc.recordIsLast) line.fail(std::string(word) + " belongs to a sensor, and there is none");
    RecordDraft& last = bmc.records.back();
    const auto [before, isNew] = last.fields.emplace(word, line.number());
    if (!isNew)
        line.fail(std::string(word) + " was given in line " + std::to_string(before->second));
    return *last.record;
}

void readType(MachineLine& line, MachineDraft& draft) {
    (void)field("type", line, draft).kind(byteOf(line, "the sensor type"));
}

void readEntity(MachineLine& line, MachineDraft& draft) {
    SdrRecord& record = field("entity", line, draft);
    const std::uint8_t id = byteOf(line, "the entity");
    const std::uint8_t instance = line.more() ? byteOf(line, "the instance") : std::uint8_t{1};
    (void)record.entity(id, instance);
}

void readEvent(MachineLine& line, MachineDraft& draft) {
    (void)field("event", line, draft).event(byteOf(line, "the event/reading type"));
}

void readUnit(MachineLine& line, MachineDraft& draft) {
    SdrRecord& record = field("unit", line, draft);
    const std::uint8_t base = byteOf(line, "the unit");
    (void)record.unit(base, line.more() ? byteOf(line, "the modifier unit") : std::uint8_t{0});
}

void readFormat(MachineLine& line, MachineDraft& draft) {
    (void)field("format", line, draft).unit1(byteOf(line, "the format byte"));
}

void readFactors(MachineLine& line, MachineDraft& draft) {
    SdrRecord& record = field("factors", line, draft);
    const int m = line.integer("M", -512, 511);
    const int b = line.integer("B", -512, 511);
    const int bExponent = line.integer("the exponent of B", -8, 7);
    (void)record.factors(m, b, bExponent, line.integer("the result exponent", -8, 7));
}

void readLinearization(MachineLine& line, MachineDraft& draft) {
    (void)field("linearization", line, draft).linearization(byteOf(line, "the linearization"));
}

void readLimits(MachineLine& line, MachineDraft& draft) {
    SdrRecord& record = field("limits", line, draft);
    const std::uint8_t maximum = byteOf(line, "the maximum reading");
    (void)record.limits(maximum, byteOf(line, "the minimum reading"));
}

void readMasks(MachineLine& line, MachineDraft& draft) {
    SdrRecord& record = field("masks", line, draft);
    const std::uint8_t readable = byteOf(line, "the readable thresholds");
    (void)record.thresholdMasks(readable, byteOf(line, "the settable thresholds"));
}

SensorDraft& sensor(MachineLine& line, MachineDraft& draft) {
    const std::uint8_t number = byteOf(line, "the sensor number");
    return controller(line, draft).sensors[number];
}

void readReading(MachineLine& line, MachineDraft& draft) {
    SensorDraft& of = sensor(line, draft);
    if (of.reading) line.fail("the sensor has a reading already");
    of.reading = byteOf(line, "the raw reading");
}

void readStates(MachineLine& line, MachineDraft& draft) {
    SensorDraft& of = sensor(line, draft);
    if (of.states) line.fail("the sensor has states already");
    const std::uint8_t low = byteOf(line, "the states 0 to 7");
    of.states.emplace(low, line.more() ? byteOf(line, "the states 8 to 15") : std::uint8_t{0});
}

void readThresholds(MachineLine& line, MachineDraft& draft) {
    SensorDraft& of = sensor(line, draft);
    if (of.thresholds) line.fail("the sensor has thresholds already");
    constexpr std::uint32_t kAll = 0x3F;
    BmcThresholds thresholds;
    thresholds.readable = byteOf(line, "the readable thresholds", kAll);
    for (std::uint8_t& value : thresholds.values) value = byteOf(line, "the raw threshold");
    of.thresholds = thresholds;
}

void readInventory(MachineLine& line, MachineDraft& draft) {
    Bytes image = draft.capture(line);
    BmcDraft& bmc = controller(line, draft);
    if (!bmc.inventory.empty()) line.fail("the controller has an inventory already");
    constexpr std::size_t kMost = 0xFFFF;
    if (image.size() > kMost) line.fail("an inventory has at most 65535 bytes");
    bmc.inventory = std::move(image);
}

void readChannel(MachineLine& line, MachineDraft& draft) {
    constexpr std::uint32_t kMostChannel = 0x0F;
    const std::uint8_t number = byteOf(line, "the channel", kMostChannel);
    const std::uint8_t medium = byteOf(line, "the medium");
    const std::uint8_t protocol = byteOf(line, "the protocol");
    if (!controller(line, draft).channels.try_emplace(number, BmcChannel{medium, protocol}).second)
        line.fail("the controller has this channel already");
}

constexpr MachineStatement kStatements[] = {
    {"bmc", readBmc},
    {"sdr", readRepository},
    {"sensor", readSensor},
    {"type", readType},
    {"entity", readEntity},
    {"event", readEvent},
    {"unit", readUnit},
    {"format", readFormat},
    {"factors", readFactors},
    {"linearization", readLinearization},
    {"limits", readLimits},
    {"masks", readMasks},
    {"reading", readReading},
    {"states", readStates},
    {"thresholds", readThresholds},
    {"inventory", readInventory},
    {"channel", readChannel},
};

}  // namespace

std::span<const MachineStatement> bmcStatements() {
    return kStatements;
}

void buildBmc(const BmcDraft& draft, Machine& machine) {
    if (!draft.line) draft.first.fail("this belongs to a controller, and no line begins with bmc");
    machine.giveBmc(draft.kcs, draft.smic);
    Bmc& bmc = machine.bmc();
    bmc.setFirmware(draft.major, draft.minorBcd);
    for (const RecordDraft& record : draft.records) {
        if (record.record) {
            bmc.add(*record.record);
            continue;
        }
        try {
            bmc.loadRepository(record.dump);
        } catch (const std::exception& error) {
            record.line.fail(error.what());
        }
    }
    for (const auto& [number, sensor] : draft.sensors) {
        if (sensor.reading) bmc.setReading(number, *sensor.reading);
        if (sensor.states) bmc.setStates(number, sensor.states->first, sensor.states->second);
        if (sensor.thresholds) bmc.setThresholds(number, *sensor.thresholds);
    }
    bmc.setInventory(draft.inventory);
    for (const auto& [number, channel] : draft.channels) bmc.setChannel(number, channel);
}

}  // namespace sim
