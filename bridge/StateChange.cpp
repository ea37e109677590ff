// SPDX-License-Identifier: MIT
//
// Commands that are not logged though talvane-host does not let them pass (IPMI 2.0, appendix G).

#include "bridge/StateChange.h"

#include <algorithm>
#include <iterator>

#include "transport/ReadingCommands.h"

namespace bridge {
namespace {

struct Command {
    std::uint8_t netFn;
    std::uint8_t number;
};

constexpr std::uint8_t kSensorEvent = 0x04;
constexpr std::uint8_t kApplication = 0x06;
constexpr std::uint8_t kStorage = 0x0A;
constexpr std::uint8_t kTransport = 0x0C;

// No agent needs these for an inventory. All but one only get something: an agent resets the
// watchdog every few seconds, and who has set it is logged.
constexpr Command kNotLogged[] = {
    {kSensorEvent, 0x01},  // Get Event Receiver
    {kSensorEvent, 0x10},  // Get PEF Capabilities
    {kSensorEvent, 0x13},  // Get PEF Configuration Parameters
    {kSensorEvent, 0x15},  // Get Last Processed Event ID
    {kApplication, 0x22},  // Reset Watchdog Timer
    {kApplication, 0x31},  // Get Message Flags
    {kApplication, 0x36},  // Get BT Interface Capabilities
    {kApplication, 0x38},  // Get Channel Authentication Capabilities
    {kApplication, 0x3D},  // Get Session Info
    {kApplication, 0x4D},  // Get User Payload Access
    {kApplication, 0x54},  // Get Channel Cipher Suites
    {kApplication, 0x59},  // Get System Info Parameters
    {kStorage, 0x41},      // Get SEL Allocation Info
    {kStorage, 0x5A},      // Get Auxiliary Log Status
    {kStorage, 0x5C},      // Get SEL Time UTC Offset
    {kTransport, 0x11},    // Get Serial/Modem Configuration
    {kTransport, 0x22},    // Get SOL Configuration Parameters
};

}  // namespace

bool MayChangeState(std::uint8_t netFn, std::uint8_t command) {
    if (transport::OnlyReads(netFn, command)) return false;
    return std::none_of(std::begin(kNotLogged), std::end(kNotLogged), [&](const Command& quiet) {
        return quiet.netFn == netFn && quiet.number == command;
    });
}

}  // namespace bridge
