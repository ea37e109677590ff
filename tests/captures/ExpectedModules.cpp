// SPDX-License-Identifier: MIT
//
// Memory banks from the memory module structures, which go before the memory devices.

#include <algorithm>

#include "CodeNames.h"
#include "Expectation.h"
#include "ExpectedMemory.h"

namespace captures {

namespace {

constexpr std::size_t kModuleLocator = 4;  // SMBIOS 7.7: the socket designation

// Handles of the controller's slots as dmidecode lists them.
std::vector<unsigned long> SlotHandles(const PeerTable& peer) {
    std::vector<unsigned long> handles;
    const PeerStructure* controller = peer.First(5);
    if (controller == nullptr) return handles;
    const DmidecodeStructure::Line* slots = controller->text.FindLine("Associated Memory Slots");
    if (slots == nullptr) return handles;
    for (const std::string& item : slots->items) handles.push_back(LeadingNumber(item).value_or(0));
    return handles;
}

// The modules in the controller's slots that hold memory.
std::vector<const PeerStructure*> Installed(const PeerTable& peer) {
    std::vector<const PeerStructure*> installed;
    for (const unsigned long handle : SlotHandles(peer)) {
        const PeerStructure* module = peer.ByHandle(6, static_cast<unsigned>(handle));
        if (module != nullptr && Kilobytes(module->text.Value("Installed Size")))
            installed.push_back(module);
    }
    return installed;
}

void ExpectType(const PeerStructure& module, const std::string& prefix, ExpectedFields& fields) {
    const std::string types = module.text.Value("Type");
    ExpectedField& field = fields.Add(prefix + "type", types == "None" ? "" : types);
    const std::string spaced = " " + types + " ";
    for (const NamePair& pair : ModuleTypes()) {
        if (spaced.find(" " + std::string(pair.peer) + " ") == std::string::npos) continue;
        if (spaced.ends_with(" " + std::string(pair.peer) + " "))
            field.By(Rule::kModuleTypeHighestBit, std::string(pair.peer))
                .By(Rule::kModuleTypeName, std::string(pair.ours));
    }
}

// The memory device with the module's locator; null without one.
const PeerStructure* DeviceAt(const PeerTable& peer, const std::string& locator) {
    if (!DevicesRecognised(peer)) return nullptr;
    for (const PeerStructure* device : peer.OfType(17))
        if (device->StringText("Locator", kDeviceLocator) == locator) return device;
    return nullptr;
}

void ExpectModule(const PeerTable& peer, const PeerStructure& module, const std::string& prefix,
                  ExpectedFields& fields) {
    const unsigned long kilobytes = Kilobytes(module.text.Value("Installed Size")).value_or(0);
    fields.Add(prefix + "size", std::to_string(kilobytes >> 10) + " MB");
    ExpectType(module, prefix, fields);
    const std::string speed = module.text.Value("Current Speed");
    ExpectedField& field = fields.Add(prefix + "speed", speed);
    if (speed == "Unknown") field.By(Rule::kUnknownSpeedEmpty, "");
    const std::string locator = module.StringText("Socket Designation", kModuleLocator);
    ExpectSlot(locator, prefix, fields);
    if (const PeerStructure* device = DeviceAt(peer, locator)) {
        ExpectTypeDetail(*device, prefix, fields);
        device->AddText(fields, prefix + "manufacturer", "Manufacturer", 23, 32);
    }
}

}  // namespace

bool ModulesRecognised(const PeerTable& peer) {
    const std::vector<unsigned long> handles = SlotHandles(peer);
    return !handles.empty() && std::ranges::find(handles, 0u) == handles.end();
}

void ExpectModules(const PeerTable& peer, ExpectedFields& fields) {
    const std::vector<const PeerStructure*> installed = Installed(peer);
    const std::size_t count = std::min(installed.size(), kMaxBanks);
    fields.Add("memory.quantity", installed.size()).By(Rule::kSixteenBanks, std::to_string(count));
    ExpectTotal(peer, fields);
    for (std::size_t i = 0; i < count; ++i)
        ExpectModule(peer, *installed[i], Element("bank", i + 1), fields);
}

}  // namespace captures
