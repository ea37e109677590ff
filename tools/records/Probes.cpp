// SPDX-License-Identifier: MIT
//
// Reads and shows TALVANE_VOLTAGES and TALVANE_TEMPERATURES of GetInfo.

#include "tools/records/Probes.h"

#include <nlohmann/json.hpp>

#include "Talvane.h"
#include "tools/base/Layout.h"

namespace tool {
namespace {

std::string ProbeText(const char* title, int quantity) {
    return Section(title,
                   {FactBlock({{"Probes", quantity == 0 ? "none" : std::to_string(quantity)}}),
                    NoteBlock("SMBIOS counts the probes only. Readings come from the BMC: "
                              "talvane sensors.")});
}

}  // namespace

std::optional<Voltages> ReadVoltages() {
    VoltageInformation record{};
    if (GetInfo(TALVANE_VOLTAGES, &record) != 0) return std::nullopt;
    return Voltages{record.quantity};
}

std::optional<Temperatures> ReadTemperatures() {
    TemperatureInformation record{};
    if (GetInfo(TALVANE_TEMPERATURES, &record) != 0) return std::nullopt;
    return Temperatures{record.quantity};
}

std::string ToText(const Voltages& voltages) {
    return ProbeText("Voltages", voltages.quantity);
}

std::string ToText(const Temperatures& temperatures) {
    return ProbeText("Temperatures", temperatures.quantity);
}

Json ToJson(const Voltages& voltages) {
    return {{"quantity", voltages.quantity}};
}

Json ToJson(const Temperatures& temperatures) {
    return {{"quantity", temperatures.quantity}};
}

}  // namespace tool
