// SPDX-License-Identifier: MIT
//
// Commands of IPMI 2.0, appendix G, that get something. All others could change something.

#include "transport/ReadingCommands.h"

#include <algorithm>
#include <iterator>

namespace transport {
namespace {

struct ReadingCommand {
    std::uint8_t netFn;
    std::uint8_t command;
    bool operator==(const ReadingCommand&) const = default;
};

constexpr ReadingCommand kReadingCommands[] = {
    {0x00, 0x00},  // Get Chassis Capabilities
    {0x00, 0x01},  // Get Chassis Status
    {0x00, 0x07},  // Get System Restart Cause
    {0x00, 0x09},  // Get System Boot Options
    {0x00, 0x0F},  // Get POH Counter
    {0x04, 0x20},  // Get Device SDR Info
    {0x04, 0x21},  // Get Device SDR
    {0x04, 0x22},  // Reserve Device SDR Repository
    {0x04, 0x23},  // Get Sensor Reading Factors
    {0x04, 0x25},  // Get Sensor Hysteresis
    {0x04, 0x27},  // Get Sensor Threshold
    {0x04, 0x29},  // Get Sensor Event Enable
    {0x04, 0x2B},  // Get Sensor Event Status
    {0x04, 0x2D},  // Get Sensor Reading
    {0x04, 0x2F},  // Get Sensor Type
    {0x06, 0x01},  // Get Device ID
    {0x06, 0x04},  // Get Self Test Results
    {0x06, 0x07},  // Get ACPI Power State
    {0x06, 0x08},  // Get Device GUID
    {0x06, 0x25},  // Get Watchdog Timer
    {0x06, 0x2F},  // Get BMC Global Enables
    {0x06, 0x37},  // Get System GUID
    {0x06, 0x41},  // Get Channel Access
    {0x06, 0x42},  // Get Channel Info
    {0x06, 0x44},  // Get User Access
    {0x06, 0x46},  // Get User Name
    {0x0A, 0x10},  // Get FRU Inventory Area Info
    {0x0A, 0x11},  // Read FRU Data
    {0x0A, 0x20},  // Get SDR Repository Info
    {0x0A, 0x21},  // Get SDR Repository Allocation Info
    {0x0A, 0x22},  // Reserve SDR Repository
    {0x0A, 0x23},  // Get SDR
    {0x0A, 0x28},  // Get SDR Repository Time
    {0x0A, 0x40},  // Get SEL Info
    {0x0A, 0x42},  // Reserve SEL
    {0x0A, 0x43},  // Get SEL Entry
    {0x0A, 0x48},  // Get SEL Time
    {0x0C, 0x02},  // Get LAN Configuration Parameters
};

}  // namespace

bool OnlyReads(std::uint8_t netFn, std::uint8_t command) {
    return std::find(std::begin(kReadingCommands), std::end(kReadingCommands),
                     ReadingCommand{netFn, command}) != std::end(kReadingCommands);
}

}  // namespace transport
