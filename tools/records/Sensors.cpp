// SPDX-License-Identifier: MIT
//
// Shows the sensors in one table, and their thresholds in another.

#include "tools/records/Sensors.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "Talvane.h"
#include "tools/base/Layout.h"
#include "tools/sensors/EntityNames.h"
#include "tools/sensors/SensorStates.h"
#include "tools/sensors/SensorText.h"

namespace tool {
namespace {

std::string StateTable(const AllSensors& all) {
    std::vector<Row> rows;
    for (const SensorNow& sensor : all.sensors) {
        const SensorRecord& record = sensor.record;
        rows.push_back({SensorNumberText(record), SensorName(record), SensorTypeName(record.type),
                        EntityInstanceName(record.entity, record.instance), ReadingText(sensor),
                        StateCell(sensor)});
    }
    return TableBlock({{"No.", Column::Align::kRight},
                       {"Sensor"},
                       {"Type"},
                       {"Entity"},
                       {"Reading", Column::Align::kRight},
                       {"State"}},
                      rows);
}

bool HasLimits(const SensorNow& sensor) {
    return HasAny(sensor.limits);
}

std::string ThresholdTable(const AllSensors& all) {
    std::vector<Column> columns{{"No.", Column::Align::kRight}, {"Sensor"}};
    AddLimitColumns(columns);
    std::vector<Row> rows;
    for (const SensorNow& sensor : all.sensors) {
        if (!HasLimits(sensor)) continue;
        Row row{SensorNumberText(sensor.record), SensorName(sensor.record)};
        AddLimitCells(row, sensor.limits);
        rows.push_back(row);
    }
    return TableBlock(columns, rows);
}

Json SensorJson(const SensorNow& sensor) {
    Json json = IdentityJson(sensor.record);
    json["reading"] = ReadingJson(sensor, sensor.value);
    json["states"] = IsRead(sensor) ? Json(StateWords(sensor)) : Json();
    json["unavailable"] = IsRead(sensor) ? Json() : Json(WhyNoReading(sensor));
    json["thresholds"] = ThresholdsJson(sensor);
    return json;
}

}  // namespace

std::optional<AllSensors> ReadSensors() {
    if (IsIpmiSupport() == 0) return std::nullopt;
    return ReadAllSensors();
}

std::string ToText(const AllSensors& all) {
    std::vector<std::string> blocks{StateTable(all)};
    if (std::any_of(all.sensors.begin(), all.sensors.end(), HasLimits)) {
        blocks.push_back(ThresholdTable(all));
        blocks.push_back(NoteBlock(kLimitLegend));
    }
    if (!all.isComplete)
        blocks.push_back(
            NoteBlock("The BMC's sensor repository could not be read to its end: after record " +
                      std::to_string(all.records) + ", the BMC gave no other record."));
    return Section("Sensors", blocks);
}

Json ToJson(const AllSensors& all) {
    Json list = Json::array();
    for (const SensorNow& sensor : all.sensors) list.push_back(SensorJson(sensor));
    return {{"records", all.records}, {"complete", all.isComplete}, {"sensors", list}};
}

}  // namespace tool
