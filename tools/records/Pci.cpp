// SPDX-License-Identifier: MIT
//
// Reads and shows TALVANE_PCI, after a check that the library can list the functions.

#include "tools/records/Pci.h"

#include <sys/io.h>

#include <cstdio>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>

#include "PCI/PCIscan.h"
#include "Talvane.h"
#include "tools/base/JsonValue.h"
#include "tools/base/Layout.h"
#include "tools/base/Text.h"

namespace tool {
namespace {

// The library's own limits: the buses that it scans, and the functions that its record holds.
constexpr unsigned kScannedBuses = 11;
constexpr std::size_t kMaxPciFunctions = sizeof DeviceInformation::dev / sizeof(DEV);

std::string AddressText(unsigned bus, unsigned device, unsigned function) {
    char text[48];
    std::snprintf(text, sizeof text, "%02x:%02x.%x", bus, device, function);
    return text;
}

// What the library's record does not have (PCI 3.0, 6.1; PCI-to-PCI bridges 1.2, 3.2).
struct FunctionHeader {
    PciId id;
    std::optional<int> secondaryBus;
};

using Headers = std::map<std::string, FunctionHeader>;  // by address

class HeaderScan {
public:
    // REQUIRES: I/O privilege level 3.
    HeaderScan() { scan_.m_InitOK = 1; }

    // The function's header; nothing when no function answers there.
    std::optional<FunctionHeader> HeaderAt(unsigned char bus, unsigned char device,
                                           unsigned char function) {
        constexpr unsigned char kIds = 0x00;
        constexpr unsigned char kHeaderType = 0x0C;
        constexpr unsigned char kBusNumbers = 0x18;
        constexpr unsigned long kBridge = 0x01;
        const auto read = [&](unsigned char at) {
            return scan_.readPCIDeviceRegister(bus, device, function, at);
        };
        const unsigned long ids = read(kIds);
        const int vendor = static_cast<int>(ids & 0xFFFF);
        if (vendor == 0 || vendor == 0xFFFF) return std::nullopt;
        FunctionHeader header{{vendor, static_cast<int>(ids >> 16 & 0xFFFF)}, {}};
        if ((read(kHeaderType) >> 16 & 0x7F) == kBridge) {
            const int secondary = static_cast<int>(read(kBusNumbers) >> 8 & 0xFF);
            if (secondary != 0) header.secondaryBus = secondary;  // 0: the bridge is not set up
        }
        return header;
    }

private:
    PCIscan scan_;
};

// REQUIRES: I/O privilege level 3. Makes a sixteenth of the reads that the listing makes, and two
// more for each function.
Headers ScanHeaders() {
    constexpr unsigned kDevices = 32;
    constexpr unsigned kFunctions = 8;
    HeaderScan scan;
    Headers headers;
    for (unsigned i = 0; i < kScannedBuses * kDevices * kFunctions; ++i) {
        const unsigned bus = i / kFunctions / kDevices;
        const unsigned device = i / kFunctions % kDevices;
        const unsigned function = i % kFunctions;
        const auto header =
            scan.HeaderAt(static_cast<unsigned char>(bus), static_cast<unsigned char>(device),
                          static_cast<unsigned char>(function));
        if (header) headers.emplace(AddressText(bus, device, function), *header);
    }
    return headers;
}

// To be asked before the library is; nothing when the library must not be asked. Without port
// access it lists nothing. With more functions than its record holds it sleeps 5000 seconds and
// tries again.
std::optional<Headers> HeadersOfListable() {
    if (iopl(3) != 0) return std::nullopt;
    Headers headers = ScanHeaders();
    (void)iopl(0);  // result not used: lowering is always allowed
    if (headers.size() > kMaxPciFunctions) return std::nullopt;
    return headers;
}

void AddHeaders(PciFunctions& functions, const Headers& headers) {
    std::set<PciId> ids;
    for (const auto& [address, header] : headers) ids.insert(header.id);
    const auto names = KnownPciNames(ids);
    for (PciFunction& function : functions) {
        const auto header = headers.find(PciAddress(function.location));
        if (header == headers.end()) continue;
        function.id = header->second.id;
        function.secondaryBus = header->second.secondaryBus;
        const auto name = names.find(*function.id);
        if (name != names.end()) function.name = name->second;
    }
}

Json PciNumberJson(int number, const std::string& name) {
    return {{"code", number}, {"name", TextJson(name)}};
}

std::string RevisionText(int revision) {
    char text[16];
    std::snprintf(text, sizeof text, "%02X", static_cast<unsigned>(revision));
    return text;
}

}  // namespace

std::optional<PciFunctions> ReadPci() {
    const auto headers = HeadersOfListable();
    if (!headers) return std::nullopt;
    const auto record = std::make_unique<DeviceInformation>();
    if (GetInfo(TALVANE_PCI, record.get()) != 0) return std::nullopt;
    PciFunctions functions;
    for (int i = 0; i < record->quantity; ++i) {
        const DEV& dev = record->dev[i];
        functions.push_back({.location = FieldText(dev.desc),
                             .className = FieldText(dev.model),
                             .subClass = FieldText(dev.type),
                             .irq = dev.IRQ,
                             .base = static_cast<std::uint32_t>(dev.IOBase),
                             .revision = dev.revision,
                             .status = FieldText(dev.status)});
    }
    AddHeaders(functions, *headers);
    return functions;
}

std::string PciAddress(const std::string& location) {
    unsigned bus = 0;
    unsigned device = 0;
    unsigned function = 0;
    if (std::sscanf(location.c_str(), "bus:%u, dev:%u, func:%u", &bus, &device, &function) != 3)
        return location;
    return AddressText(bus, device, function);
}

std::string PciIdText(const PciFunction& function) {
    if (!function.id) return "";
    char text[32];
    std::snprintf(text, sizeof text, "%04x:%04x", static_cast<unsigned>(function.id->vendor),
                  static_cast<unsigned>(function.id->device));
    return text;
}

// Bit 0 is set for I/O and clear for memory (PCI 3.0, 6.2.5.1).
std::string PciBaseText(const PciFunction& function) {
    if (function.base == 0) return "";
    const bool isIo = (function.base & 1) != 0;
    char text[32];
    std::snprintf(text, sizeof text, "%s 0x%X", isIo ? "I/O" : "mem",
                  static_cast<unsigned>(function.base & (isIo ? ~3U : ~15U)));
    return text;
}

std::string PciStatusText(const PciFunction& function) {
    std::string text;
    for (const char c : function.status) text += c == ';' ? std::string("; ") : std::string(1, c);
    return text.ends_with("; ") ? text.substr(0, text.size() - 2) : text;
}

std::string ToText(const PciFunctions& functions) {
    std::vector<Row> rows;
    std::vector<Row> named;
    std::vector<Row> statuses;
    for (const PciFunction& function : functions) {
        const std::string address = PciAddress(function.location);
        rows.push_back({address, PciIdText(function), function.className, function.subClass,
                        function.irq == 0 ? "" : std::to_string(function.irq),
                        PciBaseText(function), RevisionText(function.revision)});
        if (!function.name.vendor.empty())
            named.push_back({address, function.name.vendor, function.name.device});
        if (!function.status.empty()) statuses.push_back({address, PciStatusText(function)});
    }
    std::vector<std::string> blocks{TableBlock({{"Address"},
                                                {"ID"},
                                                {"Class"},
                                                {"Sub-class"},
                                                {"IRQ", Column::Align::kRight},
                                                {"Base"},
                                                {"Rev."}},
                                               rows)};
    if (!named.empty()) blocks.push_back(TableBlock({{"Address"}, {"Vendor"}, {"Device"}}, named));
    if (!statuses.empty()) blocks.push_back(TableBlock({{"Address"}, {"Status"}}, statuses));
    return Section("PCI functions", blocks);
}

Json ToJson(const PciFunctions& functions) {
    Json list = Json::array();
    for (const PciFunction& function : functions)
        list.push_back(
            {{"address", PciAddress(function.location)},
             {"location", TextJson(function.location)},
             {"vendor",
              function.id ? PciNumberJson(function.id->vendor, function.name.vendor) : Json()},
             {"device",
              function.id ? PciNumberJson(function.id->device, function.name.device) : Json()},
             {"class", TextJson(function.className)},
             {"subClass", TextJson(function.subClass)},
             {"irq", function.irq == 0 ? Json() : Json(function.irq)},
             {"baseAddress", function.base == 0 ? Json() : Json(function.base)},
             {"revision", function.revision},
             {"status", TextJson(function.status)},
             {"secondaryBus", function.secondaryBus ? Json(*function.secondaryBus) : Json()}});
    return list;
}

}  // namespace tool
