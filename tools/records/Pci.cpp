// SPDX-License-Identifier: MIT
//
// Reads and shows TALVANE_PCI, after a check that the library can list the functions.

#include "tools/records/Pci.h"

#include <sys/io.h>

#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>

#include "PCI/PCIscan.h"
#include "Talvane.h"
#include "tools/base/JsonValue.h"
#include "tools/base/Layout.h"
#include "tools/base/Text.h"

namespace tool {
namespace {

// The library's own limits: the buses that it scans, and the functions that its record holds.
constexpr int kScannedBuses = 11;
constexpr int kMaxPciFunctions = sizeof DeviceInformation::dev / sizeof(DEV);

// REQUIRES: I/O privilege level 3. Makes a sixteenth of the reads that the listing makes.
int CountFunctions() {
    constexpr int kDevices = 32;
    constexpr int kFunctions = 8;
    PCIscan scan;
    scan.m_InitOK = 1;
    int count = 0;
    for (int i = 0; i < kScannedBuses * kDevices * kFunctions; ++i) {
        const auto bus = static_cast<unsigned char>(i / kFunctions / kDevices);
        const auto device = static_cast<unsigned char>(i / kFunctions % kDevices);
        const auto function = static_cast<unsigned char>(i % kFunctions);
        const unsigned vendor = scan.readPCIDeviceRegister(bus, device, function, 0) & 0xFFFF;
        if (vendor != 0 && vendor != 0xFFFF) ++count;
    }
    return count;
}

// To be asked before the library is. Without port access the library lists nothing. With more
// functions than its record holds it sleeps 5000 seconds and tries again.
bool CanBeListed() {
    if (iopl(3) != 0) return false;
    const int count = CountFunctions();
    (void)iopl(0);  // result not used: lowering is always allowed
    return count <= kMaxPciFunctions;
}

// A base address register (PCI 3.0, 6.2.5.1). Bit 0 is set for I/O and clear for memory.
std::string BaseText(std::uint32_t base) {
    if (base == 0) return "";
    const bool isIo = (base & 1) != 0;
    char text[32];
    std::snprintf(text, sizeof text, "%s 0x%X", isIo ? "I/O" : "mem",
                  static_cast<unsigned>(base & (isIo ? ~3U : ~15U)));
    return text;
}

std::string RevisionText(int revision) {
    char text[16];
    std::snprintf(text, sizeof text, "%02X", static_cast<unsigned>(revision));
    return text;
}

// The texts with a blank after each semicolon, and without the last semicolon.
std::string StatusText(const std::string& status) {
    std::string text;
    for (const char c : status) text += c == ';' ? std::string("; ") : std::string(1, c);
    return text.ends_with("; ") ? text.substr(0, text.size() - 2) : text;
}

}  // namespace

std::optional<PciFunctions> ReadPci() {
    if (!CanBeListed()) return std::nullopt;
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
    return functions;
}

std::string PciAddress(const std::string& location) {
    unsigned bus = 0;
    unsigned device = 0;
    unsigned function = 0;
    if (std::sscanf(location.c_str(), "bus:%u, dev:%u, func:%u", &bus, &device, &function) != 3)
        return location;
    char text[48];
    std::snprintf(text, sizeof text, "%02x:%02x.%x", bus, device, function);
    return text;
}

std::string ToText(const PciFunctions& functions) {
    std::vector<Row> rows;
    for (const PciFunction& function : functions)
        rows.push_back({PciAddress(function.location), function.className, function.subClass,
                        function.irq == 0 ? "" : std::to_string(function.irq),
                        BaseText(function.base), RevisionText(function.revision),
                        StatusText(function.status)});
    return Section("PCI functions", {TableBlock({{"Address"},
                                                 {"Class"},
                                                 {"Sub-class"},
                                                 {"IRQ", Column::Align::kRight},
                                                 {"Base"},
                                                 {"Rev."},
                                                 {"Status"}},
                                                rows)});
}

Json ToJson(const PciFunctions& functions) {
    Json list = Json::array();
    for (const PciFunction& function : functions)
        list.push_back({{"address", PciAddress(function.location)},
                        {"location", TextJson(function.location)},
                        {"class", TextJson(function.className)},
                        {"subClass", TextJson(function.subClass)},
                        {"irq", function.irq == 0 ? Json() : Json(function.irq)},
                        {"baseAddress", function.base == 0 ? Json() : Json(function.base)},
                        {"revision", function.revision},
                        {"status", TextJson(function.status)}});
    return list;
}

}  // namespace tool
