// SPDX-License-Identifier: MIT
//
// Reads and shows TALVANE_FANS of GetInfo.

#include "tools/records/Fans.h"

#include <cstddef>
#include <nlohmann/json.hpp>

#include "Talvane.h"
#include "tools/base/JsonValue.h"
#include "tools/base/Layout.h"
#include "tools/base/Text.h"
#include "tools/library/WideRecord.h"

namespace tool {
namespace {

constexpr std::size_t kMaxFans = 63;

}  // namespace

std::optional<Fans> ReadFans() {
    WideRecord<FanInformation, FAN_DEVICE> record(offsetof(FanInformation, fan), kMaxFans);
    if (GetInfo(TALVANE_FANS, record.Data()) != 0) return std::nullopt;
    Fans fans;
    for (const FAN_DEVICE& fan : record.Elements(record.Head().quantity))
        // A long text runs on into the fields min and max.
        fans.push_back({.speed = TextWithin(fan, offsetof(FAN_DEVICE, speed),
                                            offsetof(FAN_DEVICE, IdString))});
    return fans;
}

std::string ToText(const Fans& fans) {
    std::vector<Row> rows;
    for (const Fan& fan : fans) rows.push_back({std::to_string(rows.size() + 1), fan.speed});
    return Section("Fans", {TableBlock({{"No.", Column::Align::kRight}, {"Nominal speed"}}, rows)});
}

Json ToJson(const Fans& fans) {
    Json list = Json::array();
    for (const Fan& fan : fans) list.push_back({{"speed", QuantityJson(fan.speed)}});
    return list;
}

}  // namespace tool
