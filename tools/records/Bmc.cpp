// SPDX-License-Identifier: MIT
//
// Reads firmware and inventory through the library's IPMIsupport class.

#include "tools/records/Bmc.h"

#include <cstdio>
#include <nlohmann/json.hpp>

#include "Talvane.h"
#include "tools/base/JsonValue.h"
#include "tools/base/Layout.h"
#include "tools/base/Text.h"
#include "tools/library/SensorRepository.h"

namespace tool {
namespace {

constexpr std::size_t kInventoryTextSize = 64;

std::string InventoryText(int (IPMIsupport::*get)(char*)) {
    char text[kInventoryTextSize] = {};
    if ((Controller().*get)(text) != 0) return "";
    return FieldText(text);
}

// The library drops the last character.
std::string SerialStart(const Bmc& bmc) {
    const std::string& start = bmc.productSerialStart;
    return start.empty() ? "" : start + " (the library drops the last character)";
}

}  // namespace

std::optional<Bmc> ReadBmc() {
    unsigned char major = 0;
    unsigned char minor = 0;
    if (GetBMCVersion(&major, &minor) != 0) return std::nullopt;
    // Result not used: an inventory that cannot be read has empty texts.
    (void)Controller().GetFRUInfo();
    char firmware[16];
    std::snprintf(firmware, sizeof firmware, "%d.%02d", major, minor);
    // The library keeps the product's last fields one place too far: the version as the serial
    // number, and the serial number, with its length byte in front, as the asset tag.
    const std::string serial = InventoryText(&IPMIsupport::GetProductAssetTag);
    return Bmc{.firmware = firmware,
               .boardManufacturer = InventoryText(&IPMIsupport::GetBoardManufacturer),
               .boardProduct = InventoryText(&IPMIsupport::GetBoardProductName),
               .boardSerialNumber = InventoryText(&IPMIsupport::GetBoardSerialNumber),
               .boardPartNumber = InventoryText(&IPMIsupport::GetBoardPartNumber),
               .chassisPartNumber = InventoryText(&IPMIsupport::GetChassisPartNumber),
               .chassisSerialNumber = InventoryText(&IPMIsupport::GetChassisSerialNumber),
               .productManufacturer = InventoryText(&IPMIsupport::GetProductManufacturerName),
               .productName = InventoryText(&IPMIsupport::GetProductName),
               .productPartNumber = InventoryText(&IPMIsupport::GetProductPartName),
               .productVersion = InventoryText(&IPMIsupport::GetProductSerialNumber),
               .productSerialStart = serial.empty() ? "" : serial.substr(1)};
}

std::vector<Fact> BmcFacts(const Bmc& bmc) {
    return {{"Firmware", bmc.firmware},
            {"Board manufacturer", bmc.boardManufacturer},
            {"Board product", bmc.boardProduct},
            {"Board serial number", bmc.boardSerialNumber},
            {"Board part number", bmc.boardPartNumber},
            {"Chassis part number", bmc.chassisPartNumber},
            {"Chassis serial number", bmc.chassisSerialNumber},
            {"Product manufacturer", bmc.productManufacturer},
            {"Product", bmc.productName},
            {"Product part number", bmc.productPartNumber},
            {"Product version", bmc.productVersion},
            {"Product serial number", SerialStart(bmc)}};
}

std::string ToText(const Bmc& bmc) {
    return Section("BMC", {FactBlock(BmcFacts(bmc))});
}

Json ToJson(const Bmc& bmc) {
    return {{"firmware", TextJson(bmc.firmware)},
            {"board",
             {{"manufacturer", TextJson(bmc.boardManufacturer)},
              {"product", TextJson(bmc.boardProduct)},
              {"serialNumber", TextJson(bmc.boardSerialNumber)},
              {"partNumber", TextJson(bmc.boardPartNumber)}}},
            {"chassis",
             {{"partNumber", TextJson(bmc.chassisPartNumber)},
              {"serialNumber", TextJson(bmc.chassisSerialNumber)}}},
            {"product",
             {{"manufacturer", TextJson(bmc.productManufacturer)},
              {"name", TextJson(bmc.productName)},
              {"partNumber", TextJson(bmc.productPartNumber)},
              {"version", TextJson(bmc.productVersion)},
              {"serialNumberStart", TextJson(bmc.productSerialStart)}}}};
}

}  // namespace tool
