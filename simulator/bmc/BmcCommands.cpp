// SPDX-License-Identifier: MIT
//
// The table of the commands that the controller knows, and the few words by which the log describes
// each request and each response.

#include <cstdio>
#include <stdexcept>

#include "simulator/base/CallText.h"
#include "simulator/bmc/Bmc.h"
#include "simulator/bmc/BmcReply.h"

namespace sim {
namespace {

template <typename... Values>
std::string FormatText(const char* pattern, Values... values) {
    char text[96];
    (void)std::snprintf(text, sizeof text, pattern, values...);
    return text;
}

unsigned WordAt(const Bytes& bytes, std::size_t at) {
    return bytes[at] | (unsigned{bytes[at + 1]} << 8);
}

std::string DescribeSeconds(unsigned tenths) {
    return FormatText("%u.%u s", tenths / 10, tenths % 10);
}

std::string DescribeSixThresholds(const Bytes& bytes, std::size_t at) {
    return FormatText("lower %u %u %u, upper %u %u %u", bytes[at], bytes[at + 1], bytes[at + 2],
                      bytes[at + 3], bytes[at + 4], bytes[at + 5]);
}

std::string DescribeSensorNumber(const Bytes& data) {
    return FormatText("0x%02X", data[0]);
}

std::string DescribeNewThresholds(const Bytes& data) {
    return FormatText("0x%02X, mask 0x%02X, ", data[0], data[1]) + DescribeSixThresholds(data, 2);
}

std::string DescribeThresholds(const Bytes& response) {
    return FormatText("readable 0x%02X, ", response[0]) + DescribeSixThresholds(response, 1);
}

std::string DescribeReading(const Bytes& response) {
    constexpr std::uint8_t kUnavailable = 0x20;
    const std::string raw = (response[1] & kUnavailable) != 0
                                ? "unavailable"
                                : "reading " + std::to_string(response[0]);
    return raw + FormatText(", states 0x%02X 0x%02X", response[2],
                            response.size() > 3 ? response[3] : std::uint8_t{0});
}

std::string DescribeFirmware(const Bytes& response) {
    return FormatText("firmware %u.%02X", response[2] & 0x7Fu, response[3]);
}

std::string DescribeNewWatchdog(const Bytes& data) {
    return FormatText("action %u, ", data[1] & 0x07u) + DescribeSeconds(WordAt(data, 4));
}

std::string DescribeWatchdogNow(const Bytes& response) {
    constexpr std::uint8_t kRunning = 0x40;
    return FormatText("action %u, ", response[1] & 0x07u) + DescribeSeconds(WordAt(response, 4)) +
           ", " + DescribeSeconds(WordAt(response, 6)) + " left, " +
           ((response[0] & kRunning) != 0 ? "running" : "stopped");
}

std::string DescribeChannelNumber(const Bytes& data) {
    return FormatText("%u", data[0] & 0x0Fu);
}

std::string DescribeChannel(const Bytes& response) {
    return FormatText("medium %u, protocol %u", response[1], response[2]);
}

// Without the password itself.
std::string DescribeUser(const Bytes& data) {
    return FormatText("user %u, operation %u", data[0] & 0x3Fu, data[1] & 0x03u);
}

std::string DescribeLanParameter(const Bytes& data) {
    return FormatText("channel %u, parameter %u, %zu bytes", data[0] & 0x0Fu, data[1],
                      data.size() - 2);
}

std::string DescribeInventoryDevice(const Bytes& data) {
    return FormatText("device %u", data[0]);
}

std::string DescribeInventorySize(const Bytes& response) {
    return FormatText("%u bytes", WordAt(response, 0));
}

std::string DescribeInventoryPlace(const Bytes& data) {
    return FormatText("device %u, 0x%04X, %u bytes", data[0], WordAt(data, 1), data[3]);
}

std::string DescribeInventoryBytes(const Bytes& response) {
    return FormatText("%u bytes", response[0]);
}

std::string DescribeRepositoryInfo(const Bytes& response) {
    return FormatText("%u records", WordAt(response, 1));
}

std::string DescribeReservation(const Bytes& response) {
    return FormatText("reservation 0x%04X", WordAt(response, 0));
}

std::string DescribeRecordId(const Bytes& data) {
    const std::string id = FormatText("0x%04X", WordAt(data, 2));
    constexpr std::uint8_t kWhole = 0xFF;
    if (data[4] == 0 && data[5] == kWhole) return id;
    return id + FormatText(", %u bytes from %u on", data[5], data[4]);
}

std::string DescribeRecord(const Bytes& response) {
    return FormatText("%zu bytes, next 0x%04X", response.size() - 2, WordAt(response, 0));
}

// Completion codes: the generic ones of IPMI 2.0, 5.2, and those of single commands.
std::string DescribeRefusal(std::uint8_t completion) {
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
    const std::string refused = FormatText("refused, 0x%02X", completion);
    for (const Meaning& row : kMeanings)
        if (row.code == completion) return refused + " " + row.text;
    return refused;
}

}  // namespace

// By network function and command; IPMI 2.0, appendix G.
std::span<const Bmc::Command> Bmc::Commands() {
    static constexpr Command kCommands[] = {
        {0x04, 0x26, 8, "Set Sensor Thresholds", &Bmc::SetThresholdValues, DescribeNewThresholds, 0,
         nullptr},
        {0x04, 0x27, 1, "Get Sensor Thresholds", &Bmc::GetThresholds, DescribeSensorNumber, 7,
         DescribeThresholds},
        {0x04, 0x2D, 1, "Get Sensor Reading", &Bmc::GetReading, DescribeSensorNumber, 3,
         DescribeReading},
        {0x06, 0x01, 0, "Get Device ID", &Bmc::GetDeviceId, nullptr, 4, DescribeFirmware},
        {0x06, 0x22, 0, "Reset Watchdog Timer", &Bmc::ResetWatchdog, nullptr, 0, nullptr},
        {0x06, 0x24, 6, "Set Watchdog Timer", &Bmc::SetWatchdog, DescribeNewWatchdog, 0, nullptr},
        {0x06, 0x25, 0, "Get Watchdog Timer", &Bmc::GetWatchdog, nullptr, 8, DescribeWatchdogNow},
        {0x06, 0x42, 1, "Get Channel Info", &Bmc::GetChannelInfo, DescribeChannelNumber, 3,
         DescribeChannel},
        {0x06, 0x47, 2, "Set User Password", &Bmc::SetUserPassword, DescribeUser, 0, nullptr},
        {0x0A, 0x10, 1, "Get FRU Inventory Area Info", &Bmc::GetInventoryArea,
         DescribeInventoryDevice, 3, DescribeInventorySize},
        {0x0A, 0x11, 4, "Read FRU Data", &Bmc::ReadInventory, DescribeInventoryPlace, 1,
         DescribeInventoryBytes},
        {0x0A, 0x20, 0, "Get SDR Repository Info", &Bmc::GetRepositoryInfo, nullptr, 3,
         DescribeRepositoryInfo},
        {0x0A, 0x22, 0, "Reserve SDR Repository", &Bmc::ReserveRepository, nullptr, 2,
         DescribeReservation},
        {0x0A, 0x23, 6, "Get SDR", &Bmc::GetRecord, DescribeRecordId, 2, DescribeRecord},
        {0x0C, 0x01, 3, "Set LAN Configuration Parameters", &Bmc::SetLanParameter,
         DescribeLanParameter, 0, nullptr},
    };
    return kCommands;
}

const Bmc::Command* Bmc::Find(std::uint8_t netFn, std::uint8_t command) {
    for (const Command& row : Commands())
        if (row.netFn == netFn && row.command == command) return &row;
    return nullptr;
}

const Bmc::Command& Bmc::FindByName(std::string_view name) {
    for (const Command& row : Commands())
        if (row.name == name) return row;
    throw std::invalid_argument("the controller knows no command \"" + std::string(name) + "\"");
}

std::string BmcRequest::DescribeRequest() const {
    const Bmc::Command* const row = Bmc::Find(netFn, command);
    if (row == nullptr) return FormatText("command 0x%02X of function 0x%02X", command, netFn);
    if (data.size() < row->minData) return row->name + FormatText(", %zu bytes", data.size());
    return row->describeRequest == nullptr ? row->name
                                           : row->name + (" " + row->describeRequest(data));
}

std::string BmcRequest::DescribeResponse() const {
    if (error != 0) return "-1 " + ErrorName(error);
    if (completion != 0) return DescribeRefusal(completion);
    const Bmc::Command* const row = Bmc::Find(netFn, command);
    if (row != nullptr && row->describeResponse != nullptr && response.size() >= row->minResponse)
        return row->describeResponse(response);
    return response.empty() && (row == nullptr || row->minResponse == 0)
               ? "ok"
               : FormatText("%zu bytes", response.size());
}

}  // namespace sim
