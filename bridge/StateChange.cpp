// SPDX-License-Identifier: MIT
//
// The commands that only read (IPMI 2.0, appendix G).

#include "bridge/StateChange.h"

#include <algorithm>
#include <iterator>

namespace bridge {
namespace {

struct Command {
    std::uint8_t netFn;
    std::uint8_t number;
};

constexpr std::uint8_t kChassis = 0x00;
constexpr std::uint8_t kSensorEvent = 0x04;
constexpr std::uint8_t kApplication = 0x06;
constexpr std::uint8_t kStorage = 0x0A;
constexpr std::uint8_t kTransport = 0x0C;

// Reservations end by themselves. An agent resets the watchdog every few seconds, and who has set
// it is logged.
constexpr Command kReading[] = {
    {kChassis, 0x00},      // Get Chassis Capabilities
    {kChassis, 0x01},      // Get Chassis Status
    {kChassis, 0x07},      // Get System Restart Cause
    {kChassis, 0x09},      // Get System Boot Options
    {kChassis, 0x0F},      // Get POH Counter
    {kSensorEvent, 0x01},  // Get Event Receiver
    {kSensorEvent, 0x10},  // Get PEF Capabilities
    {kSensorEvent, 0x13},  // Get PEF Configuration Parameters
    {kSensorEvent, 0x15},  // Get Last Processed Event ID
    {kSensorEvent, 0x20},  // Get Device SDR Info
    {kSensorEvent, 0x21},  // Get Device SDR
    {kSensorEvent, 0x22},  // Reserve Device SDR Repository
    {kSensorEvent, 0x23},  // Get Sensor Reading Factors
    {kSensorEvent, 0x25},  // Get Sensor Hysteresis
    {kSensorEvent, 0x27},  // Get Sensor Threshold
    {kSensorEvent, 0x29},  // Get Sensor Event Enable
    {kSensorEvent, 0x2B},  // Get Sensor Event Status
    {kSensorEvent, 0x2D},  // Get Sensor Reading
    {kSensorEvent, 0x2F},  // Get Sensor Type
    {kApplication, 0x01},  // Get Device ID
    {kApplication, 0x04},  // Get Self Test Results
    {kApplication, 0x07},  // Get ACPI Power State
    {kApplication, 0x08},  // Get Device GUID
    {kApplication, 0x22},  // Reset Watchdog Timer
    {kApplication, 0x25},  // Get Watchdog Timer
    {kApplication, 0x2F},  // Get BMC Global Enables
    {kApplication, 0x31},  // Get Message Flags
    {kApplication, 0x36},  // Get BT Interface Capabilities
    {kApplication, 0x37},  // Get System GUID
    {kApplication, 0x38},  // Get Channel Authentication Capabilities
    {kApplication, 0x3D},  // Get Session Info
    {kApplication, 0x41},  // Get Channel Access
    {kApplication, 0x42},  // Get Channel Info
    {kApplication, 0x44},  // Get User Access
    {kApplication, 0x46},  // Get User Name
    {kApplication, 0x4D},  // Get User Payload Access
    {kApplication, 0x54},  // Get Channel Cipher Suites
    {kApplication, 0x59},  // Get System Info Parameters
    {kStorage, 0x10},      // Get FRU Inventory Area Info
    {kStorage, 0x11},      // Read FRU Data
    {kStorage, 0x20},      // Get SDR Repository Info
    {kStorage, 0x21},      // Get SDR Repository Allocation Info
    {kStorage, 0x22},      // Reserve SDR Repository
    {kStorage, 0x23},      // Get SDR
    {kStorage, 0x28},      // Get SDR Repository Time
    {kStorage, 0x40},      // Get SEL Info
    {kStorage, 0x41},      // Get SEL Allocation Info
    {kStorage, 0x42},      // Reserve SEL
    {kStorage, 0x43},      // Get SEL Entry
    {kStorage, 0x48},      // Get SEL Time
    {kStorage, 0x5A},      // Get Auxiliary Log Status
    {kStorage, 0x5C},      // Get SEL Time UTC Offset
    {kTransport, 0x02},    // Get LAN Configuration Parameters
    {kTransport, 0x11},    // Get Serial/Modem Configuration
    {kTransport, 0x22},    // Get SOL Configuration Parameters
};

}  // namespace

bool MayChangeState(std::uint8_t netFn, std::uint8_t command) {
    return std::none_of(std::begin(kReading), std::end(kReading), [&](const Command& reading) {
        return reading.netFn == netFn && reading.number == command;
    });
}

}  // namespace bridge
