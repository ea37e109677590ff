// SPDX-License-Identifier: MIT
//
// Shows the disks.

#include "tools/records/Drives.h"

#include <nlohmann/json.hpp>

#include "tools/base/ByteSize.h"
#include "tools/base/JsonValue.h"
#include "tools/base/Layout.h"
#include "tools/base/Text.h"

namespace tool {

std::string SerialText(const Drive& drive) {
    constexpr std::size_t kSerialSize = 20;
    return drive.serialNumber.substr(0, kSerialSize);
}

std::string ToText(const Drives& drives) {
    std::vector<Row> rows;
    for (const Drive& drive : drives)
        rows.push_back({DevicePath(drive), drive.controller, drive.position, drive.model,
                        SizeText(drive.size), SerialText(drive)});
    return Section("Drives", {TableBlock({{"Device"},
                                          {"Controller"},
                                          {"Position"},
                                          {"Model"},
                                          {"Size", Column::Align::kRight},
                                          {"Serial number"}},
                                         rows)});
}

Json ToJson(const Drives& drives) {
    Json list = Json::array();
    for (const Drive& drive : drives)
        list.push_back({{"device", TextJson(DevicePath(drive))},
                        {"controller", TextJson(drive.controller)},
                        {"position", TextJson(drive.position)},
                        {"model", TextJson(drive.model)},
                        {"size", SizeJson(drive.size)},
                        {"serialNumber", TextJson(SerialText(drive))},
                        {"serialNumberRead", TextJson(drive.serialNumber)}});
    return list;
}

}  // namespace tool
