// SPDX-License-Identifier: MIT
//
// Commands about the controller itself: device ID (IPMI 2.0, 20.1), watchdog timer (27), channels
// and users (22), LAN parameters (23).

#include "simulator/bmc/Bmc.h"
#include "simulator/bmc/BmcReply.h"

namespace sim {
namespace {

constexpr unsigned kTicksASecond = 10;
constexpr std::uint8_t kDontStop = 0x40;     // bit of the timer use
constexpr std::uint8_t kFirmwareUse = 0x02;  // BIOS power-on self-test

}  // namespace

void Bmc::SetFirmware(std::uint8_t major, std::uint8_t minorBcd) {
    firmware_ = {major, minorBcd};
}

void Bmc::SetChannel(std::uint8_t number, BmcChannel channel) {
    channels_[number] = channel;
}

Bmc::Reply Bmc::GetDeviceId(const Bytes&) {
    constexpr std::uint8_t kId = 0x20;
    constexpr std::uint8_t kRevision = 0x01;
    constexpr std::uint8_t kIpmi2 = 0x02;
    constexpr std::uint8_t kSensorsAndInventory = 0x0B;
    return {
        0,
        {kId, kRevision, firmware_[0], firmware_[1], kIpmi2, kSensorsAndInventory, 0, 0, 0, 0, 0}};
}

// Ends the countdown when its time is over.
void Bmc::CountDown() {
    if (!watchdog_.running || WatchdogPresent() != 0) return;
    watchdog_.running = false;
    watchdog_.expired = true;
    expirations_ += 1;
}

unsigned Bmc::WatchdogPresent() {
    if (!watchdog_.initialised) return 0;
    if (!watchdog_.running) return watchdog_.expired ? 0 : watchdog_.initial;
    const auto passed = static_cast<unsigned>((clock_() - watchdogStart_).count()) * kTicksASecond;
    return passed >= watchdog_.initial ? 0 : watchdog_.initial - passed;
}

void Bmc::StartWatchdog(std::uint8_t action, std::uint16_t seconds) {
    const unsigned tenths = seconds * kTicksASecond;
    (void)SetWatchdog({kFirmwareUse, action, 0, 0, Low(tenths), High(tenths)});
    (void)ResetWatchdog({});
}

BmcWatchdog Bmc::Watchdog() {
    CountDown();
    return watchdog_;
}

int Bmc::WatchdogExpirations() {
    CountDown();
    return expirations_;
}

Bmc::Reply Bmc::SetWatchdog(const Bytes& data) {
    CountDown();
    ForgetAnswers(0x06, 0x25, {});  // Get Watchdog Timer
    const bool keepsRunning = watchdog_.running && (!watchdogStops_ || (data[0] & kDontStop) != 0);
    watchdog_ = {.use = data[0],
                 .actions = data[1],
                 .preTimeout = data[2],
                 .expirationFlags = 0,
                 .initial = data[4] | (unsigned{data[5]} << 8),
                 .running = keepsRunning,
                 .initialised = true,
                 .expired = false};
    watchdogStart_ = clock_();
    return {};
}

Bmc::Reply Bmc::ResetWatchdog(const Bytes&) {
    constexpr std::uint8_t kNotInitialised = 0x80;
    CountDown();
    ForgetAnswers(0x06, 0x25, {});
    if (!watchdog_.initialised) return {kNotInitialised, {}};
    watchdog_.running = true;
    watchdog_.expired = false;
    watchdogStart_ = clock_();
    return {};
}

Bmc::Reply Bmc::GetWatchdog(const Bytes&) {
    CountDown();
    const unsigned present = WatchdogPresent();
    constexpr unsigned kRunning = 0x40;
    const unsigned use = watchdog_.use & 0x07u;
    return {0,
            {Low(watchdog_.running ? use | kRunning : use), watchdog_.actions, watchdog_.preTimeout,
             watchdog_.expirationFlags, Low(watchdog_.initial), High(watchdog_.initial),
             Low(present), High(present)}};
}

Bmc::Reply Bmc::GetChannelInfo(const Bytes& data) {
    if (data.size() != 1) return {kWrongLength, {}};
    const auto channel = channels_.find(data[0] & 0x0F);
    if (channel == channels_.end()) return {kInvalidField, {}};
    // The last six bytes: session support, vendor, auxiliary information.
    return {
        0,
        {channel->first, channel->second.medium, channel->second.protocol, 0, 0xF2, 0x1B, 0, 0, 0}};
}

Bmc::Reply Bmc::SetUserPassword(const Bytes& data) {
    users_[static_cast<std::uint8_t>(data[0] & 0x3F)] = Bytes(data.begin() + 1, data.end());
    return {};
}

Bmc::Reply Bmc::SetLanParameter(const Bytes& data) {
    constexpr std::uint8_t kSetInProgress = 0;
    constexpr std::uint8_t kInProgress = 1;
    constexpr std::uint8_t kOccupied = 0x81;
    const Bytes value(data.begin() + 2, data.end());
    Bytes& stored = lan_[{static_cast<std::uint8_t>(data[0] & 0x0F), data[1]}];
    if (data[1] == kSetInProgress && value[0] == kInProgress && stored == value)
        return {kOccupied, {}};
    stored = value;
    return {};
}

}  // namespace sim
