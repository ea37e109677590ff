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

// The library's: the last digit of the text, or a digit's group with A or B behind it.
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
    return Kilobytes(structure.text.value(key)).value_or(0) >> 10;
}

std::string SizeText(const PeerStructure& device) {
    constexpr std::size_t kSize = 12;  // SMBIOS 7.18; bit 15 stands for kilobytes
    const auto kilobytes = Kilobytes(device.text.value("Size"));
    if (!kilobytes) return "Unknown";
    if ((device.raw.word(kSize) & 0x8000) != 0) return std::to_string(*kilobytes) + " KB";
    return std::to_string(*kilobytes >> 10) + " MB";
}

void ExpectDevice(const PeerStructure& device, const std::string& prefix, ExpectedFields& fields) {
    ExpectedField& size = fields.add(prefix + "size", SizeText(device));
    if (Megabytes(device, "Size") > kLargestDevice)
        size.by(Rule::sizeBeyond32GiB, std::to_string(kLargestDevice) + " MB");
    const std::string type = device.text.value("Type");
    if (const auto name = OurName(MemoryTypes(), type))
        fields.add(prefix + "type", type).by(Rule::memoryTypeNewer, *name);
    ExpectTypeDetail(device, prefix, fields);
    const std::string speed = device.text.value("Speed");
    const auto number = LeadingNumber(speed);
    ExpectedField& field =
        fields.add(prefix + "speed", number ? std::to_string(*number) + " MHZ" : speed);
    if (!number) field.by(Rule::unknownSpeedEmpty, "");
    device.addText(fields, prefix + "manufacturer", "Manufacturer", 23, kManufacturerSize);
    ExpectSlot(device.stringText("Locator", kDeviceLocator), prefix, fields);
}

}  // namespace

void ExpectSlot(const std::string& locator, const std::string& prefix, ExpectedFields& fields) {
    fields.add(prefix + "SlotNumber", LastNumber(locator))
        .by(Rule::slotDigit, std::to_string(SlotOf(locator)));
}

void ExpectTypeDetail(const PeerStructure& device, const std::string& prefix,
                      ExpectedFields& fields) {
    const std::string detail = device.text.value("Type Detail");
    ExpectedField& field = fields.add(prefix + "TypeDetail", detail == "None" ? "" : detail);
    std::string known;
    std::string words;
    for (const NamePair& pair : TypeDetails()) {
        if (!Contains(" " + detail + " ", " " + std::string(pair.peer) + " ")) continue;
        words += pair.ours;
        if (!pair.ours.empty()) known += (known.empty() ? "" : " ") + std::string(pair.peer);
    }
    field.by(Rule::typeDetailNewer, known).by(Rule::typeDetailName, words).cutTo(kTypeDetailSize);
}

bool IsPopulated(const PeerStructure& device) {
    return device.text.value("Size") != "No Module Installed";
}

bool DevicesRecognised(const PeerTable& peer) {
    constexpr std::size_t kBankLocator = 17;
    for (const PeerStructure* device : peer.ofType(17)) {
        if (!device->raw.string(kBankLocator)) return false;
        const std::string bank = device->text.value("Bank Locator");
        const std::string locator = device->stringText("Locator", kDeviceLocator);
        if (Contains(bank, "Bank") || (Contains(bank, "BANK") && IsPopulated(*device)) ||
            Contains(locator, "Dimm") || Contains(locator, "DIMM"))
            return true;
    }
    return false;
}

ExpectedField& ExpectTotal(const PeerTable& peer, ExpectedFields& fields) {
    unsigned long modules = 0;
    for (const PeerStructure* module : peer.ofType(6))
        modules += Megabytes(*module, "Installed Size");
    unsigned long devices = 0;
    unsigned long capped = 0;
    for (const PeerStructure* device : peer.ofType(17)) {
        const unsigned long size = Megabytes(*device, "Size");
        devices += size;
        capped += std::min(size, kLargestDevice);
    }
    ExpectedField& total = fields.add("memory.TotalSize", devices != 0 ? devices : modules);
    if (modules % 65536 != 0)
        return total.by(Rule::totalFromModules, std::to_string(modules))
            .by(Rule::totalModulo65536, std::to_string(modules % 65536));
    return total.by(Rule::sizeBeyond32GiB, std::to_string(capped))
        .by(Rule::totalModulo65536, std::to_string(capped % 65536));
}

void ExpectDevices(const PeerTable& peer, ExpectedFields& fields) {
    std::vector<const PeerStructure*> populated = peer.ofType(17);
    std::erase_if(populated, [](const auto* device) { return !IsPopulated(*device); });
    ExpectedField& quantity = fields.add("memory.quantity", populated.size());
    ExpectedField& total = ExpectTotal(peer, fields);
    if (!DevicesRecognised(peer)) {
        quantity.by(Rule::bankLocatorNeeded, "0");
        total.by(Rule::bankLocatorNeeded, "0");
        return;
    }
    const std::size_t count = std::min(populated.size(), kMostBanks);
    quantity.by(Rule::sixteenBanks, std::to_string(count));
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
