// SPDX-License-Identifier: MIT
//
// One table of families for each kind of part, above the function that writes it.

#include "tools/metrics/InventoryMetrics.h"

#include <cstdio>
#include <cstdlib>
#include <optional>

#include "tools/base/ByteSize.h"
#include "tools/base/Text.h"
#include "tools/records/Drives.h"

namespace tool {
namespace {

struct BaseUnitRow {
    const char* unit;
    double factor;
};

constexpr BaseUnitRow kBaseUnits[] = {
    {"KB", 1024.0}, {"MB", 1024.0 * 1024}, {"GB", 1024.0 * 1024 * 1024}, {"MHZ", 1e6}};

// "512 MB" in bytes, "2800 MHZ" in hertz. Nothing for a text without a number or a known unit, and
// for 0, which stands for what the firmware does not know.
std::optional<double> InBaseUnit(const std::string& text) {
    const std::size_t length = NumberLength(text);
    const double value = std::strtod(text.substr(0, length).c_str(), nullptr);
    const std::string_view unit = Trimmed(std::string_view(text).substr(length));
    for (const BaseUnitRow& row : kBaseUnits)
        if (unit == row.unit && value > 0) return value * row.factor;
    return std::nullopt;
}

void AddKnown(MetricPage& page, const MetricFamily& family, const MetricLabels& labels,
              const std::optional<double>& value) {
    if (value) page.Add(family, labels, *value);
}

constexpr MetricFamily kSystemInfo = {"talvane_system_info", "The system as its maker calls it."};
constexpr MetricFamily kBoardInfo = {"talvane_board_info", "The main board."};
constexpr MetricFamily kBiosInfo = {"talvane_bios_info", "The BIOS."};

constexpr MetricFamily kBmcInfo = {"ipmi_bmc_info", "The BMC and its firmware's revision."};
constexpr MetricFamily kFruInfo = {"talvane_bmc_inventory_info",
                                   "Board, chassis and product by the BMC's inventory."};

constexpr MetricFamily kProcessorInfo = {"talvane_processor_info", "A processor."};
constexpr MetricFamily kProcessorSpeed = {"talvane_processor_speed_hertz",
                                          "Clock of the processor at start."};
constexpr MetricFamily kProcessorMaximum = {"talvane_processor_maximum_speed_hertz",
                                            "Highest clock that the processor's socket takes."};
constexpr MetricFamily kProcessorEnabled = {"talvane_processor_enabled",
                                            "Whether the processor is in use: 1 yes, 0 disabled. "
                                            "Missing where the firmware does not know."};
constexpr MetricFamily kCacheSize = {"talvane_processor_cache_size_bytes", "Installed cache."};

constexpr MetricFamily kMemorySize = {"talvane_memory_size_bytes", "Installed memory."};
constexpr MetricFamily kModuleInfo = {"talvane_memory_module_info", "A memory module."};
constexpr MetricFamily kModuleSize = {"talvane_memory_module_size_bytes",
                                      "Size of the memory module."};

constexpr MetricFamily kSupplyInfo = {"talvane_power_supply_info",
                                      "A power supply, as the firmware lists it."};
constexpr MetricFamily kPciInfo = {"talvane_pci_function_info", "A PCI function."};
constexpr MetricFamily kDriveInfo = {"talvane_drive_info", "An IDE disk."};
constexpr MetricFamily kDriveSize = {"talvane_drive_size_bytes", "Size of the IDE disk."};
constexpr MetricFamily kPartitionSize = {"talvane_partition_size_bytes", "Size of the partition."};

// The library writes this text for a module whose size the firmware does not know.
constexpr const char* kUnknownModuleSize = "32767 KB";

std::optional<double> SizeOf(const Bank& bank) {
    return bank.size == kUnknownModuleSize ? std::nullopt : InBaseUnit(bank.size);
}

// "0x8086"; empty where the function does not say.
std::string PciNumber(const std::optional<PciId>& id, int PciId::*number) {
    char text[16] = "";
    if (id) (void)std::snprintf(text, sizeof text, "0x%04x", static_cast<unsigned>((*id).*number));
    return text;
}

std::optional<double> DriveBytes(const std::string& size) {
    const auto bytes = Bytes(size);
    return bytes ? std::optional<double>(static_cast<double>(*bytes)) : std::nullopt;
}

}  // namespace

void AddInventory(MetricPage& page, const System& system) {
    page.AddInfo(kSystemInfo, {{"manufacturer", system.manufacturer},
                               {"product", system.product},
                               {"version", system.version}});
}

void AddInventory(MetricPage& page, const Board& board) {
    page.AddInfo(kBoardInfo, {{"manufacturer", board.manufacturer},
                              {"product", board.product},
                              {"serial_number", board.serialNumber}});
    page.AddInfo(kBiosInfo, {{"vendor", board.biosVendor},
                             {"version", board.biosVersion},
                             {"release_date", board.biosReleaseDate}});
}

void AddInventory(MetricPage& page, const Bmc& bmc) {
    page.AddInfo(kBmcInfo, {{"firmware_revision", bmc.firmware}});
    page.AddInfo(kFruInfo, {{"board_manufacturer", bmc.boardManufacturer},
                            {"board_product", bmc.boardProduct},
                            {"board_serial_number", bmc.boardSerialNumber},
                            {"board_part_number", bmc.boardPartNumber},
                            {"chassis_part_number", bmc.chassisPartNumber},
                            {"chassis_serial_number", bmc.chassisSerialNumber},
                            {"product_manufacturer", bmc.productManufacturer},
                            {"product_name", bmc.productName},
                            {"product_part_number", bmc.productPartNumber},
                            {"product_version", bmc.productVersion}});
}

void AddInventory(MetricPage& page, const Processors& processors) {
    int number = 0;
    for (const Processor& processor : processors) {
        const MetricLabel key = {"processor", std::to_string(++number)};
        page.AddInfo(kProcessorInfo,
                     {key, {"family", processor.family}, {"manufacturer", processor.manufacturer}});
        AddKnown(page, kProcessorSpeed, {key}, InBaseUnit(processor.currentSpeed));
        AddKnown(page, kProcessorMaximum, {key}, InBaseUnit(processor.maximumSpeed));
        if (processor.disabled || !processor.statusUnknown)
            page.Add(kProcessorEnabled, {key}, processor.disabled ? 0 : 1);
        for (const Cache& cache : processor.caches)
            AddKnown(page, kCacheSize, {key, {"level", std::to_string(cache.level)}},
                     InBaseUnit(cache.installedSize));
    }
}

void AddInventory(MetricPage& page, const Memory& memory) {
    constexpr double kMegabyte = 1024.0 * 1024;
    constexpr double kTotalWrapsAt = 65536 * kMegabyte;
    double sum = 0;
    int number = 0;
    for (const Bank& bank : memory.banks) {
        const MetricLabels key = {{"module", std::to_string(++number)},
                                  {"slot", std::to_string(bank.slot)}};
        MetricLabels labels = key;
        labels.push_back({"type", bank.type});
        labels.push_back({"type_detail", bank.typeDetail});
        labels.push_back({"speed", bank.speed});
        labels.push_back({"manufacturer", bank.manufacturer});
        page.AddInfo(kModuleInfo, labels);
        AddKnown(page, kModuleSize, key, SizeOf(bank));
        sum += SizeOf(bank).value_or(0);
    }
    // The library's total is what is left after whole 65536 MB.
    const double total = sum >= kTotalWrapsAt ? sum : memory.totalMegabytes * kMegabyte;
    if (total > 0) page.Add(kMemorySize, {}, total);
}

void AddInventory(MetricPage& page, const Power& power) {
    int number = 0;
    for (const PowerSupply& supply : power.supplies)
        page.AddInfo(kSupplyInfo, {{"supply", std::to_string(++number)},
                                   {"name", supply.name},
                                   {"manufacturer", supply.manufacturer},
                                   {"serial_number", supply.serialNumber},
                                   {"status", supply.status}});
}

void AddInventory(MetricPage& page, const PciFunctions& functions) {
    for (const PciFunction& function : functions)
        page.AddInfo(kPciInfo, {{"address", PciAddress(function.location)},
                                {"class", function.className},
                                {"sub_class", function.subClass},
                                {"vendor_id", PciNumber(function.id, &PciId::vendor)},
                                {"device_id", PciNumber(function.id, &PciId::device)},
                                {"revision", HexText(static_cast<unsigned>(function.revision))}});
}

void AddInventory(MetricPage& page, const Drives& drives) {
    for (const Drive& drive : drives) {
        const MetricLabel key = {"device", DevicePath(drive)};
        page.AddInfo(kDriveInfo, {key,
                                  {"controller", drive.controller},
                                  {"position", drive.position},
                                  {"model", drive.model},
                                  {"serial_number", SerialText(drive)}});
        AddKnown(page, kDriveSize, {key}, DriveBytes(drive.size));
    }
}

void AddInventory(MetricPage& page, const Partitions& partitions) {
    for (const Partition& partition : partitions.list)
        AddKnown(page, kPartitionSize,
                 {{"device", partition.device}, {"type", partition.fileSystem}},
                 DriveBytes(partition.size));
}

}  // namespace tool
