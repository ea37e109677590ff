// SPDX-License-Identifier: MIT
//
// Reads and shows TALVANE_SYSTEM.

#include "tools/records/System.h"

#include <nlohmann/json.hpp>

#include "Talvane.h"
#include "tools/base/JsonValue.h"
#include "tools/base/Layout.h"
#include "tools/base/Text.h"

namespace tool {

std::optional<System> ReadSystem() {
    SysInformation record{};
    if (GetInfo(TALVANE_SYSTEM, &record) != 0) return std::nullopt;
    return System{.manufacturer = FieldText(record.manufacturer),
                  .product = FieldText(record.SysProductName),
                  .version = FieldText(record.version)};
}

std::string ToText(const System& system) {
    return Section("System", {FactBlock({{"Manufacturer", system.manufacturer},
                                         {"Product", system.product},
                                         {"Version", system.version}})});
}

Json ToJson(const System& system) {
    return {{"manufacturer", TextJson(system.manufacturer)},
            {"product", TextJson(system.product)},
            {"version", TextJson(system.version)}};
}

}  // namespace tool
