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
    const std::string type = port.text.Value("Port Type");
    const auto name = OurName(PortTypes(), type);
    if (name)
        fields.Add(prefix + "type", type)
            .By(*name == "Unknown" ? Rule::kPortTypeNewer : Rule::kPortTypeName, *name);
    ExpectedField& description =
        fields.Add(prefix + "description", port.StringText("External Reference Designator", 6));
    if (description.Exact().size() >= kDescriptionSize)
        description.By(Rule::kEllipsis,
                       description.Exact().substr(0, kDescriptionSize - 4) + "...");
}

// The state words of a supply, in the order of their bits.
std::string SupplyState(const DmidecodeStructure& supply) {
    std::string state;
    const auto add = [&state](const char* word) {
        if (!state.empty()) state += ", ";
        state += word;
    };
    if (supply.Value("Hot Replaceable") == "Yes") add("hot replaceable");
    if (supply.Value("Status").starts_with("Present")) add("present");
    if (supply.Value("Plugged") == "No") add("unplugged from the wall");
    return state;
}

void ExpectSupply(const PeerStructure& supply, const std::string& prefix, ExpectedFields& fields) {
    supply.AddText(fields, prefix + "DeviceName", "Name", 6, 32);
    supply.AddText(fields, prefix + "manufacturer", "Manufacturer", 7, 32);
    supply.AddText(fields, prefix + "SerialNo", "Serial Number", 8, 16);
    const std::string state = SupplyState(supply.text);
    ExpectedField& status = fields.Add(prefix + "status", state);
    if (state.empty() || state.find(", ") != std::string::npos)
        status.By(Rule::kPowerStatusCombination, "Other");
}

// Whether the supply's type bits, the lowest left out, are a subset of UPS (6).
bool PassesAsUps(const PeerStructure& supply) {
    constexpr std::size_t kCharacteristics = 14;  // SMBIOS 7.40
    constexpr unsigned kUps = 6;
    const unsigned type = (unsigned{supply.raw.Word(kCharacteristics)} >> 10) & 0x0E;
    return (type | kUps) == kUps;
}

// The value of the first processor probe, were it found.
void ExpectProbeValue(const std::vector<const PeerStructure*>& probes, const char* field,
                      const char* key, ExpectedFields& fields) {
    for (const PeerStructure* probe : probes) {
        if (probe->text.Value("Location") != "Processor") continue;
        fields.Add(field, probe->text.Value(key)).By(Rule::kProbeNeverFound, "");
        return;
    }
}

}  // namespace

void ExpectPorts(const PeerTable& peer, ExpectedFields& fields) {
    const std::vector<const PeerStructure*> ports = peer.OfType(8);
    fields.Add("ports.quantity", ports.size());
    for (std::size_t i = 0; i < ports.size(); ++i)
        ExpectPort(*ports[i], Element("port", i + 1), fields);
}

void ExpectPower(const PeerTable& peer, ExpectedFields& fields) {
    const std::vector<const PeerStructure*> supplies = peer.OfType(39);
    fields.Add("power.TotalNumber", supplies.size());
    fields.Add("power.RedundantNumber",
               static_cast<unsigned long>(std::ranges::count_if(supplies, [](const auto* supply) {
                   return supply->text.Find("Power Unit Group").has_value();
               })));
    for (std::size_t i = 0; i < supplies.size(); ++i)
        ExpectSupply(*supplies[i], Element("supply", i + 1), fields);

    const auto isUps = [](const auto* supply) { return supply->text.Value("Type") == "UPS"; };
    const auto passes = [](const auto* supply) { return PassesAsUps(*supply); };
    fields
        .Add("ups.TotalNumber", static_cast<unsigned long>(std::ranges::count_if(supplies, isUps)))
        .By(Rule::kUpsMask, std::to_string(std::ranges::count_if(supplies, passes)));
    std::size_t number = 0;
    for (const PeerStructure* supply : supplies)
        if (PassesAsUps(*supply)) ExpectSupply(*supply, Element("ups", ++number), fields);
}

void ExpectCoolingAndProbes(const PeerTable& peer, ExpectedFields& fields) {
    const std::vector<const PeerStructure*> fans = peer.OfType(27);
    fields.Add("fans.quantity", fans.size());
    for (std::size_t i = 0; i < fans.size(); ++i) {
        const std::string speed = fans[i]->text.Value("Nominal Speed");
        ExpectedField& field = fields.Add(Element("fan", i + 1) + "speed", speed);
        if (speed == "Unknown Or Non-rotating")
            field.By(Rule::kFanSpeedText, "Unknown or the FAN is non-rotating");
        else if (speed.empty())
            field.By(Rule::kFanSpeedText, "SmBios can not supply this information");
    }

    const std::vector<const PeerStructure*> voltages = peer.OfType(26);
    fields.Add("voltages.quantity", voltages.size());
    ExpectProbeValue(voltages, "voltages.CurrentVoltage", "Nominal Value", fields);
    ExpectProbeValue(voltages, "voltages.max", "Maximum Value", fields);
    ExpectProbeValue(voltages, "voltages.min", "Minimum Value", fields);

    const std::vector<const PeerStructure*> temperatures = peer.OfType(28);
    fields.Add("temperatures.quantity", temperatures.size());
    ExpectProbeValue(temperatures, "temperatures.CurrentTemperature", "Nominal Value", fields);
}

}  // namespace captures
