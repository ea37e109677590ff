// SPDX-License-Identifier: MIT
//
// Memory banks and the total, from the memory devices.

#include "ExpectedMemory.h"

#include <algorithm>

#include "CodeNames.h"
#include "Expectation.h"

namespace captures {

namespace {

constexpr std::size_t kTypeDetailSize = 32;
constexpr std::size_t kManufacturerSize = 32;
constexpr unsigned long kLargestDevice = 0x7FFF;  // MB

bool Contains(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

// "DIMM 12": 12. The number that a reader sees; 0 without one.
unsigned long LastNumber(const std::string& locator) {
    const std::size_t last = locator.find_last_of("0123456789");
    if (last == std::string::npos) return 0;
    const std::size_t before = locator.find_last_not_of("0123456789", last);
    return LeadingNumber(locator.substr(before == std::string::npos ? 0 : before + 1)).value_or(0);
}

// The library's: the last digit of the text, or a digit's group with A or B after it.
unsigned SlotOf(const std::string& locator) {
    unsigned slot = 0;
    for (std::size_t i = 0; i < locator.size(); ++i) {
        if (locator[i] < '0' || locator[i] > '9') continue;
        const unsigned digit = static_cast<unsigned>(locator[i] - '0');
        if (i + 1 == locator.size())
            slot = digit;
        else if (locator[i + 1] == 'A')
            slot = 4 * digit + 1;
        else if (locator[i + 1] == 'B')
            slot = 4 * digit + 2;
    }
    return slot;
}

unsigned long Megabytes(const PeerStructure& structure, const char* key) {
    return Kilobytes(structure.text.Value(key)).value_or(0) >> 10;
}

std::string SizeText(const PeerStructure& device) {
    constexpr std::size_t kSize = 12;  // SMBIOS 7.18; bit 15 stands for kilobytes
    const auto kilobytes = Kilobytes(device.text.Value("Size"));
    if (!kilobytes) return "Unknown";
    if ((device.raw.Word(kSize) & 0x8000) != 0) return std::to_string(*kilobytes) + " KB";
    return std::to_string(*kilobytes >> 10) + " MB";
}

void ExpectDevice(const PeerStructure& device, const std::string& prefix, ExpectedFields& fields) {
    ExpectedField& size = fields.Add(prefix + "size", SizeText(device));
    if (Megabytes(device, "Size") > kLargestDevice)
        size.By(Rule::kSizeBeyond32GiB, std::to_string(kLargestDevice) + " MB");
    const std::string type = device.text.Value("Type");
    if (const auto name = OurName(MemoryTypes(), type))
        fields.Add(prefix + "type", type).By(Rule::kMemoryTypeNewer, *name);
    ExpectTypeDetail(device, prefix, fields);
    const std::string speed = device.text.Value("Speed");
    const auto number = LeadingNumber(speed);
    ExpectedField& field =
        fields.Add(prefix + "speed", number ? std::to_string(*number) + " MHZ" : speed);
    if (!number) field.By(Rule::kUnknownSpeedEmpty, "");
    device.AddText(fields, prefix + "manufacturer", "Manufacturer", 23, kManufacturerSize);
    ExpectSlot(device.StringText("Locator", kDeviceLocator), prefix, fields);
}

}  // namespace

void ExpectSlot(const std::string& locator, const std::string& prefix, ExpectedFields& fields) {
    fields.Add(prefix + "SlotNumber", LastNumber(locator))
        .By(Rule::kSlotDigit, std::to_string(SlotOf(locator)));
}

void ExpectTypeDetail(const PeerStructure& device, const std::string& prefix,
                      ExpectedFields& fields) {
    const std::string detail = device.text.Value("Type Detail");
    ExpectedField& field = fields.Add(prefix + "TypeDetail", detail == "None" ? "" : detail);
    std::string known;
    std::string words;
    for (const NamePair& pair : TypeDetails()) {
        if (!Contains(" " + detail + " ", " " + std::string(pair.peer) + " ")) continue;
        words += pair.ours;
        if (!pair.ours.empty()) known += (known.empty() ? "" : " ") + std::string(pair.peer);
    }
    field.By(Rule::kTypeDetailNewer, known).By(Rule::kTypeDetailName, words).CutTo(kTypeDetailSize);
}

bool IsPopulated(const PeerStructure& device) {
    return device.text.Value("Size") != "No Module Installed";
}

bool DevicesRecognised(const PeerTable& peer) {
    constexpr std::size_t kBankLocator = 17;
    for (const PeerStructure* device : peer.OfType(17)) {
        if (!device->raw.String(kBankLocator)) return false;
        const std::string bank = device->text.Value("Bank Locator");
        const std::string locator = device->StringText("Locator", kDeviceLocator);
        if (Contains(bank, "Bank") || (Contains(bank, "BANK") && IsPopulated(*device)) ||
            Contains(locator, "Dimm") || Contains(locator, "DIMM"))
            return true;
    }
    return false;
}

ExpectedField& ExpectTotal(const PeerTable& peer, ExpectedFields& fields) {
    unsigned long modules = 0;
    for (const PeerStructure* module : peer.OfType(6))
        modules += Megabytes(*module, "Installed Size");
    unsigned long devices = 0;
    unsigned long capped = 0;
    for (const PeerStructure* device : peer.OfType(17)) {
        const unsigned long size = Megabytes(*device, "Size");
        devices += size;
        capped += std::min(size, kLargestDevice);
    }
    ExpectedField& total = fields.Add("memory.TotalSize", devices != 0 ? devices : modules);
    if (modules % 65536 != 0)
        return total.By(Rule::kTotalFromModules, std::to_string(modules))
            .By(Rule::kTotalModulo65536, std::to_string(modules % 65536));
    return total.By(Rule::kSizeBeyond32GiB, std::to_string(capped))
        .By(Rule::kTotalModulo65536, std::to_string(capped % 65536));
}

void ExpectDevices(const PeerTable& peer, ExpectedFields& fields) {
    std::vector<const PeerStructure*> populated = peer.OfType(17);
    std::erase_if(populated, [](const auto* device) { return !IsPopulated(*device); });
    ExpectedField& quantity = fields.Add("memory.quantity", populated.size());
    ExpectedField& total = ExpectTotal(peer, fields);
    if (!DevicesRecognised(peer)) {
        quantity.By(Rule::kBankLocatorNeeded, "0");
        total.By(Rule::kBankLocatorNeeded, "0");
        return;
    }
    const std::size_t count = std::min(populated.size(), kMaxBanks);
    quantity.By(Rule::kSixteenBanks, std::to_string(count));
    for (std::size_t i = 0; i < count; ++i)
        ExpectDevice(*populated[i], Element("bank", i + 1), fields);
}

void ExpectMemory(const PeerTable& peer, ExpectedFields& fields) {
    if (ModulesRecognised(peer))
        ExpectModules(peer, fields);
    else
        ExpectDevices(peer, fields);
}

}  // namespace captures
