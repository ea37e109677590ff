// SPDX-License-Identifier: MIT
//
// Reads and shows GetAllThresholdInfo.

#include "tools/records/Thresholds.h"

#include <nlohmann/json.hpp>

#include "Talvane.h"
#include "tools/base/JsonValue.h"
#include "tools/base/Layout.h"
#include "tools/sensors/EntityNames.h"
#include "tools/sensors/SensorStates.h"

namespace tool {

std::optional<Thresholds> ReadThresholds() {
    if (IsIpmiSupport() == 0) return std::nullopt;
    SensorThresholdInformation record{};
    // The library answers -1 for an empty repository, too.
    if (GetAllThresholdInfo(&record) != 0) return Thresholds{};
    Thresholds thresholds;
    for (int i = 0; i < record.quantity; ++i) {
        const SensorThresholdInfo& info = record.SensorThreshold[i];
        thresholds.push_back({info.DeviceID, info.SensorType, AllOf(LimitValues<double>(info))});
    }
    return thresholds;
}

std::string ToText(const Thresholds& thresholds) {
    std::vector<Column> columns{{"No.", Column::Align::kRight}, {"Entity"}, {"Type"}};
    AddLimitColumns(columns);
    std::vector<Row> rows;
    for (const Threshold& threshold : thresholds) {
        Row row{std::to_string(rows.size() + 1), EntityText(threshold.entity),
                SensorTypeText(threshold.type)};
        AddLimitCells(row, threshold.limits);
        rows.push_back(row);
    }
    std::vector<std::string> blocks{TableBlock(columns, rows)};
    if (!rows.empty()) {
        blocks.push_back(NoteBlock(kLimitLegend));
        blocks.push_back(
            NoteBlock("This is the list that agents get from the library. It has 0 for a threshold "
                      "that there is not."));
        blocks.push_back(
            NoteBlock("The library asks for a sensor's thresholds by its place in the repository, "
                      "not by its number, so a row can hold those of another sensor."));
        blocks.push_back(NoteBlock("What the BMC holds for each sensor: talvane sensors."));
    }
    return Section("Thresholds", blocks);
}

Json ToJson(const Thresholds& thresholds) {
    Json list = Json::array();
    for (const Threshold& threshold : thresholds)
        list.push_back({{"entity", CodeJson(threshold.entity, EntityName(threshold.entity))},
                        {"type", CodeJson(threshold.type, SensorTypeName(threshold.type))},
                        {"thresholds", LimitsJson(threshold.limits)}});
    return list;
}

}  // namespace tool
