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
std::string Format(const char* pattern, Values... values) {
    char text[96];
    (void)std::snprintf(text, sizeof text, pattern, values...);
    return text;
}

unsigned Word(const Bytes& bytes, std::size_t at) {
    return bytes[at] | (unsigned{bytes[at + 1]} << 8);
}

std::string Seconds(unsigned tenths) {
    return Format("%u.%u s", tenths / 10, tenths % 10);
}

std::string Threshold(const Bytes& bytes, std::size_t at) {
    return Format("lower %u %u %u, upper %u %u %u", bytes[at], bytes[at + 1], bytes[at + 2],
                  bytes[at + 3], bytes[at + 4], bytes[at + 5]);
}

std::string SensorNumber(const Bytes& data) {
    return Format("0x%02X", data[0]);
}

std::string NewThresholds(const Bytes& data) {
    return Format("0x%02X, mask 0x%02X, ", data[0], data[1]) + Threshold(data, 2);
}

std::string ReadThresholds(const Bytes& response) {
    return Format("readable 0x%02X, ", response[0]) + Threshold(response, 1);
}

std::string Reading(const Bytes& response) {
    constexpr std::uint8_t kUnavailable = 0x20;
    const std::string raw = (response[1] & kUnavailable) != 0
                                ? "unavailable"
                                : "reading " + std::to_string(response[0]);
    return raw + Format(", states 0x%02X 0x%02X", response[2],
                        response.size() > 3 ? response[3] : std::uint8_t{0});
}

std::string Firmware(const Bytes& response) {
    return Format("firmware %u.%02X", response[2] & 0x7Fu, response[3]);
}

std::string NewWatchdog(const Bytes& data) {
    return Format("action %u, ", data[1] & 0x07u) + Seconds(Word(data, 4));
}

std::string WatchdogNow(const Bytes& response) {
    constexpr std::uint8_t kRunning = 0x40;
    return Format("action %u, ", response[1] & 0x07u) + Seconds(Word(response, 4)) + ", " +
           Seconds(Word(response, 6)) + " left, " +
           ((response[0] & kRunning) != 0 ? "running" : "stopped");
}

std::string ChannelNumber(const Bytes& data) {
    return Format("%u", data[0] & 0x0Fu);
}

std::string Channel(const Bytes& response) {
    return Format("medium %u, protocol %u", response[1], response[2]);
}

// The password itself stays out of it.
std::string User(const Bytes& data) {
    return Format("user %u, operation %u", data[0] & 0x3Fu, data[1] & 0x03u);
}

std::string LanParameter(const Bytes& data) {
    return Format("channel %u, parameter %u, %zu bytes", data[0] & 0x0Fu, data[1], data.size() - 2);
}

std::string InventoryDevice(const Bytes& data) {
    return Format("device %u", data[0]);
}

std::string InventorySize(const Bytes& response) {
    return Format("%u bytes", Word(response, 0));
}

std::string InventoryPlace(const Bytes& data) {
    return Format("device %u, 0x%04X, %u bytes", data[0], Word(data, 1), data[3]);
}

std::string InventoryRead(const Bytes& response) {
    return Format("%u bytes", response[0]);
}

std::string RepositoryInfo(const Bytes& response) {
    return Format("%u records", Word(response, 1));
}

std::string Reservation(const Bytes& response) {
    return Format("reservation 0x%04X", Word(response, 0));
}

std::string RecordId(const Bytes& data) {
    const std::string id = Format("0x%04X", Word(data, 2));
    constexpr std::uint8_t kWhole = 0xFF;
    if (data[4] == 0 && data[5] == kWhole) return id;
    return id + Format(", %u bytes from %u on", data[5], data[4]);
}

std::string RecordText(const Bytes& response) {
    return Format("%zu bytes, next 0x%04X", response.size() - 2, Word(response, 0));
}

// IPMI 2.0, 5.2 and the commands' own.
std::string Refusal(std::uint8_t completion) {
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
    const std::string refused = Format("refused, 0x%02X", completion);
    for (const Meaning& row : kMeanings)
        if (row.code == completion) return refused + " " + row.text;
    return refused;
}

}  // namespace

// By network function and command; IPMI 2.0, appendix G.
std::span<const Bmc::Command> Bmc::Commands() {
    static constexpr Command kCommands[] = {
        {0x04, 0x26, 8, "Set Sensor Thresholds", &Bmc::SetThresholdValues, NewThresholds, 0,
         nullptr},
        {0x04, 0x27, 1, "Get Sensor Thresholds", &Bmc::GetThresholds, SensorNumber, 7,
         ReadThresholds},
        {0x04, 0x2D, 1, "Get Sensor Reading", &Bmc::GetReading, SensorNumber, 3, Reading},
        {0x06, 0x01, 0, "Get Device ID", &Bmc::GetDeviceId, nullptr, 4, Firmware},
        {0x06, 0x22, 0, "Reset Watchdog Timer", &Bmc::ResetWatchdog, nullptr, 0, nullptr},
        {0x06, 0x24, 6, "Set Watchdog Timer", &Bmc::SetWatchdog, NewWatchdog, 0, nullptr},
        {0x06, 0x25, 0, "Get Watchdog Timer", &Bmc::GetWatchdog, nullptr, 8, WatchdogNow},
        {0x06, 0x42, 1, "Get Channel Info", &Bmc::GetChannelInfo, ChannelNumber, 3, Channel},
        {0x06, 0x47, 2, "Set User Password", &Bmc::SetUserPassword, User, 0, nullptr},
        {0x0A, 0x10, 1, "Get FRU Inventory Area Info", &Bmc::GetInventoryArea, InventoryDevice, 3,
         InventorySize},
        {0x0A, 0x11, 4, "Read FRU Data", &Bmc::ReadInventory, InventoryPlace, 1, InventoryRead},
        {0x0A, 0x20, 0, "Get SDR Repository Info", &Bmc::GetRepositoryInfo, nullptr, 3,
         RepositoryInfo},
        {0x0A, 0x22, 0, "Reserve SDR Repository", &Bmc::ReserveRepository, nullptr, 2, Reservation},
        {0x0A, 0x23, 6, "Get SDR", &Bmc::GetRecord, RecordId, 2, RecordText},
        {0x0C, 0x01, 3, "Set LAN Configuration Parameters", &Bmc::SetLanParameter, LanParameter, 0,
         nullptr},
    };
    return kCommands;
}

const Bmc::Command* Bmc::Find(std::uint8_t netFn, std::uint8_t command) {
    for (const Command& row : Commands())
        if (row.netFn == netFn && row.command == command) return &row;
    return nullptr;
}

std::string BmcRequest::Asked() const {
    const Bmc::Command* const row = Bmc::Find(netFn, command);
    if (row == nullptr) return Format("command 0x%02X of function 0x%02X", command, netFn);
    if (data.size() < row->leastData) return row->name + Format(", %zu bytes", data.size());
    return row->asked == nullptr ? row->name : row->name + (" " + row->asked(data));
}

std::string BmcRequest::Answered() const {
    if (error != 0) return "-1 " + ErrorName(error);
    if (completion != 0) return Refusal(completion);
    const Bmc::Command* const row = Bmc::Find(netFn, command);
    if (row != nullptr && row->answered != nullptr && response.size() >= row->leastResponse)
        return row->answered(response);
    return response.empty() && (row == nullptr || row->leastResponse == 0)
               ? "ok"
               : Format("%zu bytes", response.size());
}

}  // namespace sim
