// SPDX-License-Identifier: MIT
//
// The table of entities. The library's own table ends at 40 and keeps spellings that agents know.

#include "tools/sensors/EntityNames.h"

#include <algorithm>
#include <iterator>

#include "tools/base/Text.h"

namespace tool {
namespace {

struct EntityRow {
    int code;
    const char* name;
};

constexpr EntityRow kEntities[] = {
    {0x00, "unspecified"},
    {0x01, "other"},
    {0x02, "unknown"},
    {0x03, "processor"},
    {0x04, "disk"},
    {0x05, "peripheral bay"},
    {0x06, "system management module"},
    {0x07, "system board"},
    {0x08, "memory module"},
    {0x09, "processor module"},
    {0x0A, "power supply"},
    {0x0B, "add-in card"},
    {0x0C, "front panel board"},
    {0x0D, "back panel board"},
    {0x0E, "power system board"},
    {0x0F, "drive backplane"},
    {0x10, "internal expansion board"},
    {0x11, "other system board"},
    {0x12, "processor board"},
    {0x13, "power unit"},
    {0x14, "power module"},
    {0x15, "power management board"},
    {0x16, "chassis back panel board"},
    {0x17, "system chassis"},
    {0x18, "sub-chassis"},
    {0x19, "other chassis board"},
    {0x1A, "disk drive bay"},
    {0x1B, "peripheral slot"},
    {0x1C, "device bay"},
    {0x1D, "fan"},
    {0x1E, "cooling unit"},
    {0x1F, "cable"},
    {0x20, "memory device"},
    {0x21, "system management software"},
    {0x22, "BIOS"},
    {0x23, "operating system"},
    {0x24, "system bus"},
    {0x25, "group"},
    {0x26, "remote management device"},
    {0x27, "external environment"},
    {0x28, "battery"},
    {0x29, "processing blade"},
    {0x2A, "connectivity switch"},
    {0x2B, "processor/memory module"},
    {0x2C, "I/O module"},
    {0x2D, "processor/I/O module"},
    {0x2E, "controller firmware"},
    {0x2F, "IPMI channel"},
    {0x30, "PCI bus"},
    {0x31, "PCI Express bus"},
    {0x32, "SCSI bus"},
    {0x33, "SATA/SAS bus"},
    {0x34, "front-side bus"},
    {0x35, "real time clock"},
    {0x37, "air inlet"},
    {0x40, "air inlet (DCMI)"},
    {0x41, "processor (DCMI)"},
    {0x42, "system board (DCMI)"},
};

}  // namespace

std::string EntityName(int entity) {
    for (const EntityRow& row : kEntities)
        if (row.code == entity) return row.name;
    return "entity " + HexText(static_cast<unsigned>(entity));
}

std::string EntityText(int entity) {
    return EntityName(entity) + " (" + std::to_string(entity) + ')';
}

std::string EntityInstanceName(int entity, int instance) {
    return EntityName(entity) + ' ' + std::to_string(InstanceNumber(instance));
}

int InstanceNumber(int instance) {
    constexpr int kFirstRelative = 0x60;
    return instance >= kFirstRelative ? instance - kFirstRelative : instance;
}

std::optional<int> EntityNamed(const std::string& name) {
    const auto found = std::find_if(std::begin(kEntities), std::end(kEntities),
                                    [&](const EntityRow& row) { return name == row.name; });
    if (found == std::end(kEntities)) return std::nullopt;
    return found->code;
}

}  // namespace tool
