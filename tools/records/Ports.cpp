// SPDX-License-Identifier: MIT
//
// Reads and shows TALVANE_PORTS.

#include "tools/records/Ports.h"

#include <cstddef>
#include <nlohmann/json.hpp>

#include "Talvane.h"
#include "tools/base/JsonValue.h"
#include "tools/base/Layout.h"
#include "tools/base/Text.h"
#include "tools/library/WideRecord.h"

namespace tool {
namespace {

constexpr std::size_t kMaxPorts = 128;

}  // namespace

std::optional<Ports> ReadPorts() {
    WideRecord<IOInformation, PORT> record(offsetof(IOInformation, port), kMaxPorts);
    if (GetInfo(TALVANE_PORTS, record.Data()) != 0) return std::nullopt;
    Ports ports;
    for (const PORT& port : record.Elements(record.Head().quantity))
        ports.push_back({.designation = FieldText(port.description), .type = FieldText(port.type)});
    return ports;
}

std::string ToText(const Ports& ports) {
    std::vector<Row> rows;
    for (const Port& port : ports)
        rows.push_back({std::to_string(rows.size() + 1), port.designation, port.type});
    return Section("Ports",
                   {TableBlock({{"No.", Column::Align::kRight}, {"Designation"}, {"Type"}}, rows)});
}

Json ToJson(const Ports& ports) {
    Json list = Json::array();
    for (const Port& port : ports)
        list.push_back(
            {{"designation", TextJson(port.designation)}, {"type", TextJson(port.type)}});
    return list;
}

}  // namespace tool
