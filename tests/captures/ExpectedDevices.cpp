// SPDX-License-Identifier: MIT
//
// Ports, power supplies, fans and probes.

#include <algorithm>

#include "CodeNames.h"
#include "Expectation.h"

namespace captures {

namespace {

constexpr std::size_t kDescriptionSize = 32;

void ExpectPort(const PeerStructure& port, const std::string& prefix, ExpectedFields& fields) {
    const std::string type = port.text.value("Port Type");
    const auto name = OurName(PortTypes(), type);
    if (name)
        fields.add(prefix + "type", type)
            .by(*name == "Unknown" ? Rule::portTypeNewer : Rule::portTypeName, *name);
    ExpectedField& description =
        fields.add(prefix + "description", port.stringText("External Reference Designator", 6));
    if (description.exact().size() >= kDescriptionSize)
        description.by(Rule::ellipsis, description.exact().substr(0, kDescriptionSize - 4) + "...");
}

// The state words of a supply, in the order of their bits.
std::string SupplyState(const DmidecodeStructure& supply) {
    std::string state;
    const auto add = [&state](const char* word) {
        if (!state.empty()) state += ", ";
        state += word;
    };
    if (supply.value("Hot Replaceable") == "Yes") add("hot replaceable");
    if (supply.value("Status").starts_with("Present")) add("present");
    if (supply.value("Plugged") == "No") add("unplugged from the wall");
    return state;
}

void ExpectSupply(const PeerStructure& supply, const std::string& prefix, ExpectedFields& fields) {
    supply.addText(fields, prefix + "DeviceName", "Name", 6, 32);
    supply.addText(fields, prefix + "manufacturer", "Manufacturer", 7, 32);
    supply.addText(fields, prefix + "SerialNo", "Serial Number", 8, 16);
    const std::string state = SupplyState(supply.text);
    ExpectedField& status = fields.add(prefix + "status", state);
    if (state.empty() || state.find(", ") != std::string::npos)
        status.by(Rule::powerStatusCombination, "Other");
}

// Whether the supply's type bits, the lowest left out, are a subset of UPS (6).
bool PassesAsUps(const PeerStructure& supply) {
    constexpr std::size_t kCharacteristics = 14;  // SMBIOS 7.40
    constexpr unsigned kUps = 6;
    const unsigned type = (unsigned{supply.raw.word(kCharacteristics)} >> 10) & 0x0E;
    return (type | kUps) == kUps;
}

// The value of the first processor probe, were it found.
void ExpectProbeValue(const std::vector<const PeerStructure*>& probes, const char* field,
                      const char* key, ExpectedFields& fields) {
    for (const PeerStructure* probe : probes) {
        if (probe->text.value("Location") != "Processor") continue;
        fields.add(field, probe->text.value(key)).by(Rule::probeNeverFound, "");
        return;
    }
}

}  // namespace

void ExpectPorts(const PeerTable& peer, ExpectedFields& fields) {
    const std::vector<const PeerStructure*> ports = peer.ofType(8);
    fields.add("ports.quantity", ports.size());
    for (std::size_t i = 0; i < ports.size(); ++i)
        ExpectPort(*ports[i], Element("port", i + 1), fields);
}

void ExpectPower(const PeerTable& peer, ExpectedFields& fields) {
    const std::vector<const PeerStructure*> supplies = peer.ofType(39);
    fields.add("power.TotalNumber", supplies.size());
    fields.add("power.RedundantNumber",
               static_cast<unsigned long>(std::ranges::count_if(supplies, [](const auto* supply) {
                   return supply->text.find("Power Unit Group").has_value();
               })));
    for (std::size_t i = 0; i < supplies.size(); ++i)
        ExpectSupply(*supplies[i], Element("supply", i + 1), fields);

    const auto isUps = [](const auto* supply) { return supply->text.value("Type") == "UPS"; };
    const auto passes = [](const auto* supply) { return PassesAsUps(*supply); };
    fields
        .add("ups.TotalNumber", static_cast<unsigned long>(std::ranges::count_if(supplies, isUps)))
        .by(Rule::upsMask, std::to_string(std::ranges::count_if(supplies, passes)));
    std::size_t number = 0;
    for (const PeerStructure* supply : supplies)
        if (PassesAsUps(*supply)) ExpectSupply(*supply, Element("ups", ++number), fields);
}

void ExpectCoolingAndProbes(const PeerTable& peer, ExpectedFields& fields) {
    const std::vector<const PeerStructure*> fans = peer.ofType(27);
    fields.add("fans.quantity", fans.size());
    for (std::size_t i = 0; i < fans.size(); ++i) {
        const std::string speed = fans[i]->text.value("Nominal Speed");
        ExpectedField& field = fields.add(Element("fan", i + 1) + "speed", speed);
        if (speed == "Unknown Or Non-rotating")
            field.by(Rule::fanSpeedText, "Unknown or the FAN is non-rotating");
        else if (speed.empty())
            field.by(Rule::fanSpeedText, "SmBios can not supply this information");
    }

    const std::vector<const PeerStructure*> voltages = peer.ofType(26);
    fields.add("voltages.quantity", voltages.size());
    ExpectProbeValue(voltages, "voltages.CurrentVoltage", "Nominal Value", fields);
    ExpectProbeValue(voltages, "voltages.max", "Maximum Value", fields);
    ExpectProbeValue(voltages, "voltages.min", "Minimum Value", fields);

    const std::vector<const PeerStructure*> temperatures = peer.ofType(28);
    fields.add("temperatures.quantity", temperatures.size());
    ExpectProbeValue(temperatures, "temperatures.CurrentTemperature", "Nominal Value", fields);
}

}  // namespace captures
