// SPDX-License-Identifier: MIT
//
// Reads and shows the three groups of GetIpmiInfo, with what the BMC holds for each sensor.

#include "tools/records/LibrarySensors.h"

#include <algorithm>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "Talvane.h"
#include "tools/base/JsonValue.h"
#include "tools/base/Layout.h"
#include "tools/base/Text.h"
#include "tools/library/SensorRepository.h"
#include "tools/sensors/EntityNames.h"
#include "tools/sensors/Judgement.h"
#include "tools/sensors/SensorStates.h"

namespace tool {
namespace {

constexpr auto kRight = Column::Align::kRight;

template <class Element, std::size_t N>
SensorState StateOf(const Element& element, const char (Element::*reading)[N]) {
    SensorState sensor{};
    sensor.name = FieldText(element.IdString);
    sensor.number = element.sensorNumber;
    sensor.entity = element.DeviceID;
    sensor.type = element.SensorType;
    sensor.reading = FieldText(element.*reading);
    sensor.state = FieldText(element.desc);
    sensor.lowest = FieldText(element.min);
    sensor.highest = FieldText(element.max);
    sensor.recordLimits = AllOf(LimitValues<double>(element.sti));
    SensorRepository& repository = SensorRepository::Get();
    sensor.isUnavailable = repository.IsUnavailable(element.sensorNumber);
    if (const auto found = repository.Find(sensor.entity, sensor.type, sensor.number)) {
        const auto current = repository.Current(*found);
        sensor.limits = OnlyIn(current.raw.readableFlag, LimitValues<double>(current.converted));
        sensor.isSigned = IsSigned(found->formula);
    }
    return sensor;
}

// The library answers -1 for a group without sensors, too. The caller has checked that there is a
// BMC.
template <class Record, class Element, std::size_t N, std::size_t M>
SensorGroup ReadGroup(unsigned long command, Element (Record::*elements)[N],
                      char (Element::*reading)[M]) {
    Record record{};
    if (GetIpmiInfo(command, &record) != 0) return {0, {}};
    SensorGroup group{record.quantity, {}};
    const std::size_t listed = std::min(static_cast<std::size_t>(record.quantity), N);
    for (std::size_t i = 0; i < listed; ++i)
        group.listed.push_back(StateOf((record.*elements)[i], reading));
    return group;
}

// "3.30V" and "1200RPM", as the record has them, with a blank before the unit.
std::string Spaced(const std::string& reading) {
    const std::size_t unit = NumberLength(reading);
    if (unit == 0 || unit == reading.size() || reading[unit] == '%') return reading;
    return reading.substr(0, unit) + ' ' + reading.substr(unit);
}

std::optional<double> ReadingNumber(const std::string& reading) {
    char* end = nullptr;
    const double value = std::strtod(reading.c_str(), &end);
    if (end == reading.c_str() || *end == '%') return std::nullopt;
    return value;
}

std::string StateText(const SensorState& sensor) {
    if (sensor.isUnavailable) return "unavailable";
    return sensor.state.empty() ? LimitState(sensor) : sensor.state;
}

// A discrete state is not judged here.
Tone StateTone(const SensorState& sensor) {
    if (sensor.isUnavailable) return Tone::kUnknown;
    const std::string limit = sensor.state.empty() ? LimitState(sensor) : "";
    const auto name = std::find(kLimitNames.begin(), kLimitNames.end(), limit);
    if (name == kLimitNames.end()) return limit.empty() ? Tone::kPlain : Tone::kGood;
    return ToneOf(VerdictOfLimit(static_cast<std::size_t>(name - kLimitNames.begin())));
}

void AddRows(std::vector<Row>& rows, const char* kind, const SensorGroup& group) {
    for (const SensorState& sensor : group.listed) {
        Row row{sensor.name, kind, EntityName(sensor.entity),
                Spaced(sensor.reading) + (sensor.isSigned ? " *" : ""),
                Cell(StateText(sensor), StateTone(sensor))};
        AddLimitCells(row, sensor.limits);
        rows.push_back(row);
    }
}

void AddNotes(std::vector<std::string>& blocks, const char* kind, const SensorGroup& group) {
    const std::size_t listed = group.listed.size();
    if (static_cast<std::size_t>(group.quantity) > listed)
        blocks.push_back(NoteBlock("Listed are the first " + std::to_string(listed) + " of " +
                                   std::to_string(group.quantity) + ' ' + kind + '.'));
}

bool HasSigned(const SensorGroup& group) {
    return std::any_of(group.listed.begin(), group.listed.end(),
                       [](const SensorState& sensor) { return sensor.isSigned; });
}

// Of an unavailable sensor, agents get the text of a byte that means nothing.
Json AgentReadingJson(const SensorState& sensor) {
    return sensor.isUnavailable ? QuantityJson(std::nullopt, "", sensor.reading)
                                : QuantityJson(sensor.reading);
}

Json ToJson(const SensorState& sensor) {
    const std::string limit = LimitState(sensor);
    Json json = {{"name", TextJson(sensor.name)},
                 {"number", sensor.number},
                 {"entity", CodeJson(sensor.entity, EntityName(sensor.entity))},
                 {"type", CodeJson(sensor.type, SensorTypeName(sensor.type))},
                 {"reading", AgentReadingJson(sensor)},
                 {"state", TextJson(sensor.state)},
                 {"limit", limit.empty() ? Json() : Json(limit)},
                 {"lowest", QuantityJson(sensor.lowest)},
                 {"highest", QuantityJson(sensor.highest)},
                 {"signed", sensor.isSigned},
                 {"unavailable", sensor.isUnavailable}};
    json["thresholds"] = LimitsJson(sensor.limits);
    json["recordThresholds"] = LimitsJson(sensor.recordLimits);
    return json;
}

Json ToJson(const SensorGroup& group) {
    Json list = Json::array();
    for (const SensorState& sensor : group.listed) list.push_back(ToJson(sensor));
    return {{"quantity", group.quantity}, {"sensors", list}};
}

}  // namespace

std::optional<LibrarySensors> ReadLibrarySensors() {
    // Checked here, since a first query without a BMC makes all later queries answer busy.
    if (IsIpmiSupport() == 0) return std::nullopt;
    return LibrarySensors{
        .records = SensorRepository::Get().Records(),
        .temperatures = ReadGroup(TALVANE_TEMPERATURES, &TemperatureInformation::temperature,
                                  &TEMPERATURE_PROBE::CurrentTemperature),
        .voltages = ReadGroup(TALVANE_VOLTAGES, &VoltageInformation::voltage,
                              &VOLTAGE_PROBE::CurrentVoltage),
        .fans = ReadGroup(TALVANE_FANS, &FanInformation::fan, &FAN_DEVICE::speed)};
}

std::string LimitState(const SensorState& sensor) {
    const auto reading = ReadingNumber(sensor.reading);
    if (!reading || !HasAny(sensor.limits) || sensor.isSigned || sensor.isUnavailable) return "";
    const auto reached = ReachedLimit(*reading, sensor.limits);
    return reached ? kLimitNames[*reached] : "ok";
}

std::string ToText(const LibrarySensors& sensors) {
    std::vector<Column> columns{{"Sensor"}, {"Kind"}, {"Entity"}, {"Reading", kRight}, {"State"}};
    AddLimitColumns(columns);
    std::vector<Row> rows;
    AddRows(rows, "temperature", sensors.temperatures);
    AddRows(rows, "voltage", sensors.voltages);
    AddRows(rows, "fan", sensors.fans);
    std::vector<std::string> blocks{TableBlock(columns, rows)};
    if (!rows.empty()) blocks.push_back(NoteBlock(kLimitLegend));
    if (HasSigned(sensors.temperatures) || HasSigned(sensors.voltages) || HasSigned(sensors.fans))
        blocks.push_back(
            NoteBlock("* The BMC counts this sensor's values with a sign, which the "
                      "library leaves out of account: what it shows can be wrong."));
    AddNotes(blocks, "temperatures", sensors.temperatures);
    AddNotes(blocks, "voltages", sensors.voltages);
    AddNotes(blocks, "fans", sensors.fans);
    if (sensors.records == 0)
        blocks.push_back(NoteBlock("The BMC's sensor repository is empty, or it did not answer."));
    return Section("Sensors as agents see them", blocks);
}

Json ToJson(const LibrarySensors& sensors) {
    return {{"records", sensors.records},
            {"temperatures", ToJson(sensors.temperatures)},
            {"voltages", ToJson(sensors.voltages)},
            {"fans", ToJson(sensors.fans)}};
}

}  // namespace tool
