// SPDX-License-Identifier: MIT
//
// The command table, and how a request comes to its answer.

#include "Bmc.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "AccessLog.h"

namespace sim {
namespace {

constexpr std::uint8_t kUnknownCommand = 0xC1;
constexpr std::uint8_t kWrongLength = 0xC7;

std::string hexBytes(const Bytes& bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        char digits[4];
        std::snprintf(digits, sizeof digits, " %02X", byte);
        text += digits;
    }
    return text;
}

}  // namespace

// By network function and command; IPMI 2.0, appendix G.
std::span<const Bmc::Command> Bmc::commands() {
    static constexpr Command kCommands[] = {
        {0x04, 0x26, 8, "Set Sensor Thresholds", &Bmc::setThresholdValues},
        {0x04, 0x27, 1, "Get Sensor Thresholds", &Bmc::getThresholds},
        {0x04, 0x2D, 1, "Get Sensor Reading", &Bmc::getReading},
        {0x06, 0x01, 0, "Get Device ID", &Bmc::getDeviceId},
        {0x06, 0x22, 0, "Reset Watchdog Timer", &Bmc::resetWatchdog},
        {0x06, 0x24, 6, "Set Watchdog Timer", &Bmc::setWatchdog},
        {0x06, 0x25, 0, "Get Watchdog Timer", &Bmc::getWatchdog},
        {0x06, 0x42, 1, "Get Channel Info", &Bmc::getChannelInfo},
        {0x06, 0x47, 2, "Set User Password", &Bmc::setUserPassword},
        {0x0A, 0x10, 1, "Get FRU Inventory Area Info", &Bmc::getInventoryArea},
        {0x0A, 0x11, 4, "Read FRU Data", &Bmc::readInventory},
        {0x0A, 0x20, 0, "Get SDR Repository Info", &Bmc::getRepositoryInfo},
        {0x0A, 0x22, 0, "Reserve SDR Repository", &Bmc::reserveRepository},
        {0x0A, 0x23, 6, "Get SDR", &Bmc::getRecord},
        {0x0C, 0x01, 3, "Set LAN Configuration Parameters", &Bmc::setLanParameter},
    };
    return kCommands;
}

std::string BmcRequest::text() const {
    for (const Bmc::Command& row : Bmc::commands())
        if (row.netFn == netFn && row.command == command) return row.name + hexBytes(data);
    return "Command" + hexBytes({netFn, command}) + " with" + hexBytes(data);
}

Bmc::Bmc(Clock clock, AccessLog& log) : clock_(std::move(clock)), log_(log) {}

Bmc::Reply Bmc::execute(const BmcRequest& request) {
    for (const Command& row : commands()) {
        if (row.netFn != request.netFn || row.command != request.command) continue;
        if (request.data.size() < row.leastData) return {kWrongLength, {}};
        return (this->*row.run)(request.data);
    }
    return {kUnknownCommand, {}};
}

void Bmc::answer(BmcRequest& request) {
    const std::optional<Bytes> given = interceptor_ ? interceptor_(request) : std::nullopt;
    Reply reply = given ? Reply{0, *given} : execute(request);
    request.completion = reply.completion;
    request.response = std::move(reply.data);
    const std::string completion = hexBytes({request.completion}).substr(1);
    log_.add({"ipmi", request.text(), completion + hexBytes(request.response)});
    requests_.push_back(request);
}

std::vector<std::string> Bmc::requestTexts() const {
    std::vector<std::string> texts;
    for (const BmcRequest& request : requests_) texts.push_back(request.text());
    return texts;
}

std::size_t Bmc::count(std::uint8_t netFn, std::uint8_t command) const {
    return static_cast<std::size_t>(
        std::count_if(requests_.begin(), requests_.end(), [=](const BmcRequest& request) {
            return request.netFn == netFn && request.command == command;
        }));
}

}  // namespace sim
