// SPDX-License-Identifier: MIT
//
// Reads and shows TALVANE_POWER and TALVANE_UPS.

#include "tools/records/Power.h"

#include <cstddef>
#include <nlohmann/json.hpp>

#include "Talvane.h"
#include "tools/base/JsonValue.h"
#include "tools/base/Layout.h"
#include "tools/base/Text.h"
#include "tools/library/WideRecord.h"

namespace tool {
namespace {

constexpr std::size_t kMaxSupplies = 32;

using PowerRecord = WideRecord<SystemPowerInformation, SYS_POWER>;

PowerRecord EmptyRecord() {
    return PowerRecord(offsetof(SystemPowerInformation, PowerSupply), kMaxSupplies);
}

std::vector<PowerSupply> SuppliesOf(const PowerRecord& record) {
    std::vector<PowerSupply> supplies;
    for (const SYS_POWER& supply : record.Elements(record.Head().TotalNumber))
        supplies.push_back(
            {.name = FieldText(supply.DeviceName),
             .manufacturer = FieldText(supply.manufacturer),
             .serialNumber = FieldText(supply.SerialNo),
             // The longest status runs on into the next field, which is the element's last.
             .status = TextWithin(supply, offsetof(SYS_POWER, status), sizeof(SYS_POWER))});
    return supplies;
}

std::string SupplyTable(const std::vector<PowerSupply>& supplies) {
    std::vector<Row> rows;
    for (const PowerSupply& supply : supplies)
        rows.push_back({std::to_string(rows.size() + 1), supply.name, supply.manufacturer,
                        supply.serialNumber, supply.status});
    return TableBlock(
        {{"No.", Column::Align::kRight}, {"Name"}, {"Manufacturer"}, {"Serial number"}, {"Status"}},
        rows);
}

Json SupplyList(const std::vector<PowerSupply>& supplies) {
    Json list = Json::array();
    for (const PowerSupply& supply : supplies)
        list.push_back({{"name", TextJson(supply.name)},
                        {"manufacturer", TextJson(supply.manufacturer)},
                        {"serialNumber", TextJson(supply.serialNumber)},
                        {"status", TextJson(supply.status)}});
    return list;
}

}  // namespace

std::optional<Power> ReadPower() {
    PowerRecord all = EmptyRecord();
    PowerRecord ups = EmptyRecord();
    if (GetInfo(TALVANE_POWER, all.Data()) != 0 || GetInfo(TALVANE_UPS, ups.Data()) != 0)
        return std::nullopt;
    return Power{.redundant = all.Head().RedundantNumber,
                 .supplies = SuppliesOf(all),
                 .ups = SuppliesOf(ups)};
}

std::string ToText(const Power& power) {
    return Section("Power supplies", {FactBlock({{"Redundant", std::to_string(power.redundant)}}),
                                      SupplyTable(power.supplies)}) +
           '\n' +
           Section("Uninterruptible power supplies",
                   {SupplyTable(power.ups),
                    NoteBlock("Those that the library takes for one. It compares bits of the type, "
                              "so that a supply of any type but a regulator is listed here.")});
}

Json ToJson(const Power& power) {
    return {{"redundant", power.redundant},
            {"supplies", SupplyList(power.supplies)},
            {"ups", SupplyList(power.ups)}};
}

}  // namespace tool
