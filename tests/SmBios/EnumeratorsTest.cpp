// SPDX-License-Identifier: MIT
//
// The codes that agents are compiled with: structure types and power supply types.
#include <gtest/gtest.h>

#include "SmBios/SmBios.h"

namespace {

struct StructureType {
    SmBios::type code;
    int value;
};

constexpr StructureType kStructureTypes[] = {
    {SmBios::TYPE_BIOS_INFO, 0},
    {SmBios::TYPE_SYSTEM_INFO, 1},
    {SmBios::TYPE_BASE_BOARD, 2},
    {SmBios::TYPE_SYSTEM_ENCLOSURE, 3},
    {SmBios::TYPE_PROCESSOR_INFO, 4},
    {SmBios::TYPE_MEMORY_CONTROLLER, 5},
    {SmBios::TYPE_MEMORY_MODULE, 6},
    {SmBios::TYPE_CACHE_INFO, 7},
    {SmBios::TYPE_PORT_CONNECTOR_INFO, 8},
    {SmBios::TYPE_SYSTEM_SLOTS, 9},
    {SmBios::TYPE_ON_BOARD_DEVICE_INFO, 10},
    {SmBios::TYPE_OEM_STRINGS, 11},
    {SmBios::TYPE_SYSTEM_CONFIGURE_OPTION, 12},
    {SmBios::TYPE_BIOS_LANGUAGE_INFO, 13},
    {SmBios::TYPE_GROUP_ASSOCIATIONS, 14},
    {SmBios::TYPE_SYSTEM_EVENT_LOG, 15},
    {SmBios::TYPE_PHSICAL_MEMORY_ARRAY, 16},
    {SmBios::TYPE_MEMORY_DEVICE, 17},
    {SmBios::TYPE_MEMEORY_ARRAY_MAPPED_ADDR, 19},
    {SmBios::TYPE_MEMEORY_DEVICE_MAPPED_ADDR, 20},
    {SmBios::TYPE_BUILDING_IN_POINTING_DEVICE, 21},
    {SmBios::TYPE_PORTABLE_BATTERY, 22},
    {SmBios::TYPE_SYSTEM_RESET, 23},
    {SmBios::TYPE_HARDWARE_SEQURITY, 24},
    {SmBios::TYPE_SYSTEM_POWER_CONTROL, 25},
    {SmBios::TYPE_VOLTAGE_PROBE, 26},
    {SmBios::TYPE_COOLING_DEVICE, 27},
    {SmBios::TYPE_TEMPERATURE_PROBE, 28},
    {SmBios::TYPE_ELECTRICAL_CURRENT_PROBE, 29},
    {SmBios::TYPE_OUT_OF_BAND_REMOTE_ACCESS, 30},
    {SmBios::TYPE_BIS_ENTRY_POINT, 31},
    {SmBios::TYPE_SYSTEM_BOOT_INFO, 32},
    {SmBios::TYPE_BIT64_MEMORY_ERROR_INFO, 33},
    {SmBios::TYPE_MANAGEMENT_DEVICE, 34},
    {SmBios::TYPE_MANAGEMENT_DEVICE_COMPONENT, 35},
    {SmBios::TYPE_MANAGEMENT_DEVICE_THRESHOLD, 36},
    {SmBios::TYPE_MEMORY_CHANNEL, 37},
    {SmBios::TYPE_IPMI_DEVICE_INFO, 38},
    {SmBios::TYPE_SYSTEM_POWER_SUPPLY, 39},
    {SmBios::TYPE_INACTIVE, 126},
    {SmBios::TYPE_END_OF_TABLE, 127},
};
static_assert(std::size(kStructureTypes) == 41);

TEST(EnumeratorsTest, StructureTypesAreThoseOfTheStandard) {
    for (const auto& [code, value] : kStructureTypes) EXPECT_EQ(code, value);
}

struct SupplyType {
    SmBios::ps code;
    int value;
};

constexpr SupplyType kSupplyTypes[] = {
    {SmBios::PS_OTHER, 1},     {SmBios::PS_UNKNOWN, 2},   {SmBios::PS_LINEAR, 3},
    {SmBios::PS_SWITCHING, 4}, {SmBios::PS_BATTERY, 5},   {SmBios::PS_UPS, 6},
    {SmBios::PS_CONVERTER, 7}, {SmBios::PS_REGULATOR, 8},
};

TEST(EnumeratorsTest, PowerSupplyTypesAreThoseOfTheStandard) {
    for (const auto& [code, value] : kSupplyTypes) EXPECT_EQ(code, value);
}

}  // namespace
