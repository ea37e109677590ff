// SPDX-License-Identifier: MIT
//
// The commands that the controller knows, and how the log tells of them: what was asked and what
// was answered, in a few words each.

#include <cstdio>

#include "simulator/base/CallText.h"
#include "simulator/bmc/Bmc.h"
#include "simulator/bmc/BmcReply.h"

namespace sim {
namespace {

template <typename... Values>
std::string format(const char* pattern, Values... values) {
    char text[96];
    (void)std::snprintf(text, sizeof text, pattern, values...);
    return text;
}

unsigned word(const Bytes& bytes, std::size_t at) {
    return bytes[at] | (unsigned{bytes[at + 1]} << 8);
}

std::string seconds(unsigned tenths) {
    return format("%u.%u s", tenths / 10, tenths % 10);
}

std::string threshold(const Bytes& bytes, std::size_t at) {
    return format("lower %u %u %u, upper %u %u %u", bytes[at], bytes[at + 1], bytes[at + 2],
                  bytes[at + 3], bytes[at + 4], bytes[at + 5]);
}

std::string sensorNumber(const Bytes& data) {
    return format("0x%02X", data[0]);
}

std::string newThresholds(const Bytes& data) {
    return format("0x%02X, mask 0x%02X, ", data[0], data[1]) + threshold(data, 2);
}

std::string readThresholds(const Bytes& response) {
    return format("readable 0x%02X, ", response[0]) + threshold(response, 1);
}

std::string reading(const Bytes& response) {
    constexpr std::uint8_t kUnavailable = 0x20;
    const std::string raw = (response[1] & kUnavailable) != 0
                                ? "unavailable"
                                : "reading " + std::to_string(response[0]);
    return raw + format(", states 0x%02X 0x%02X", response[2],
                        response.size() > 3 ? response[3] : std::uint8_t{0});
}

std::string firmware(const Bytes& response) {
    return format("firmware %u.%02X", response[2] & 0x7Fu, response[3]);
}

std::string newWatchdog(const Bytes& data) {
    return format("action %u, ", data[1] & 0x07u) + seconds(word(data, 4));
}

std::string watchdogNow(const Bytes& response) {
    constexpr std::uint8_t kRunning = 0x40;
    return format("action %u, ", response[1] & 0x07u) + seconds(word(response, 4)) + ", " +
           seconds(word(response, 6)) + " left, " +
           ((response[0] & kRunning) != 0 ? "running" : "stopped");
}

std::string channelNumber(const Bytes& data) {
    return format("%u", data[0] & 0x0Fu);
}

std::string channel(const Bytes& response) {
    return format("medium %u, protocol %u", response[1], response[2]);
}

// The password itself stays out of it.
std::string user(const Bytes& data) {
    return format("user %u, operation %u", data[0] & 0x3Fu, data[1] & 0x03u);
}

std::string lanParameter(const Bytes& data) {
    return format("channel %u, parameter %u, %zu bytes", data[0] & 0x0Fu, data[1], data.size() - 2);
}

std::string inventoryDevice(const Bytes& data) {
    return format("device %u", data[0]);
}

std::string inventorySize(const Bytes& response) {
    return format("%u bytes", word(response, 0));
}

std::string inventoryPlace(const Bytes& data) {
    return format("device %u, 0x%04X, %u bytes", data[0], word(data, 1), data[3]);
}

std::string inventoryRead(const Bytes& response) {
    return format("%u bytes", response[0]);
}

std::string repositoryInfo(const Bytes& response) {
    return format("%u records", word(response, 1));
}

std::string reservation(const Bytes& response) {
    return format("reservation 0x%04X", word(response, 0));
}

std::string recordId(const Bytes& data) {
    const std::string id = format("0x%04X", word(data, 2));
    constexpr std::uint8_t kWhole = 0xFF;
    if (data[4] == 0 && data[5] == kWhole) return id;
    return id + format(", %u bytes from %u on", data[5], data[4]);
}

std::string record(const Bytes& response) {
    return format("%zu bytes, next 0x%04X", response.size() - 2, word(response, 0));
}

// IPMI 2.0, 5.2 and the commands' own.
std::string refusal(std::uint8_t completion) {
    struct Meaning {
        std::uint8_t code;
        const char* text;
    };
    constexpr Meaning kMeanings[] = {
        {0xC0, "busy"},
        {kUnknownCommand, "unknown command"},
        {0xC3, "timed out"},
        {0xC5, "reservation cancelled"},
        {kWrongLength, "wrong length"},
        {kOutOfRange, "out of range"},
        {kNotPresent, "not present"},
        {kInvalidField, "invalid field"},
        {0xCE, "cannot be answered"},
        {0xD5, "not in this state"},
        {0xFF, "unspecified error"},
    };
    const std::string refused = format("refused, 0x%02X", completion);
    for (const Meaning& row : kMeanings)
        if (row.code == completion) return refused + " " + row.text;
    return refused;
}

}  // namespace

// By network function and command; IPMI 2.0, appendix G.
std::span<const Bmc::Command> Bmc::commands() {
    static constexpr Command kCommands[] = {
        {0x04, 0x26, 8, "Set Sensor Thresholds", &Bmc::setThresholdValues, newThresholds, 0,
         nullptr},
        {0x04, 0x27, 1, "Get Sensor Thresholds", &Bmc::getThresholds, sensorNumber, 7,
         readThresholds},
        {0x04, 0x2D, 1, "Get Sensor Reading", &Bmc::getReading, sensorNumber, 3, reading},
        {0x06, 0x01, 0, "Get Device ID", &Bmc::getDeviceId, nullptr, 4, firmware},
        {0x06, 0x22, 0, "Reset Watchdog Timer", &Bmc::resetWatchdog, nullptr, 0, nullptr},
        {0x06, 0x24, 6, "Set Watchdog Timer", &Bmc::setWatchdog, newWatchdog, 0, nullptr},
        {0x06, 0x25, 0, "Get Watchdog Timer", &Bmc::getWatchdog, nullptr, 8, watchdogNow},
        {0x06, 0x42, 1, "Get Channel Info", &Bmc::getChannelInfo, channelNumber, 3, channel},
        {0x06, 0x47, 2, "Set User Password", &Bmc::setUserPassword, user, 0, nullptr},
        {0x0A, 0x10, 1, "Get FRU Inventory Area Info", &Bmc::getInventoryArea, inventoryDevice, 3,
         inventorySize},
        {0x0A, 0x11, 4, "Read FRU Data", &Bmc::readInventory, inventoryPlace, 1, inventoryRead},
        {0x0A, 0x20, 0, "Get SDR Repository Info", &Bmc::getRepositoryInfo, nullptr, 3,
         repositoryInfo},
        {0x0A, 0x22, 0, "Reserve SDR Repository", &Bmc::reserveRepository, nullptr, 2, reservation},
        {0x0A, 0x23, 6, "Get SDR", &Bmc::getRecord, recordId, 2, record},
        {0x0C, 0x01, 3, "Set LAN Configuration Parameters", &Bmc::setLanParameter, lanParameter, 0,
         nullptr},
    };
    return kCommands;
}

const Bmc::Command* Bmc::find(std::uint8_t netFn, std::uint8_t command) {
    for (const Command& row : commands())
        if (row.netFn == netFn && row.command == command) return &row;
    return nullptr;
}

std::string BmcRequest::asked() const {
    const Bmc::Command* const row = Bmc::find(netFn, command);
    if (row == nullptr) return format("command 0x%02X of function 0x%02X", command, netFn);
    if (data.size() < row->leastData) return row->name + format(", %zu bytes", data.size());
    return row->asked == nullptr ? row->name : row->name + (" " + row->asked(data));
}

std::string BmcRequest::answered() const {
    if (error != 0) return "-1 " + errorName(error);
    if (completion != 0) return refusal(completion);
    const Bmc::Command* const row = Bmc::find(netFn, command);
    if (row != nullptr && row->answered != nullptr && response.size() >= row->leastResponse)
        return row->answered(response);
    return response.empty() && (row == nullptr || row->leastResponse == 0)
               ? "ok"
               : format("%zu bytes", response.size());
}

}  // namespace sim
