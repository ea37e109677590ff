// SPDX-License-Identifier: MIT
//
// Asks the BMC whatever the library and this tool ask it. Answers that a simulated BMC would give
// anyway, with the same records, readings, thresholds and inventory, are noted by these. All others
// are noted as they came.

#include <fcntl.h>
#include <sys/io.h>

#include <algorithm>
#include <cerrno>
#include <set>

#include "Talvane.h"
#include "base/Bytes.h"
#include "base/PortIo.h"
#include "tools/base/Descriptor.h"
#include "tools/base/Text.h"
#include "tools/capture/FruRequests.h"
#include "tools/capture/MachineCapture.h"
#include "tools/library/BmcPorts.h"
#include "tools/sensors/BmcRequest.h"
#include "tools/sensors/SensorRecord.h"

namespace tool {
namespace {

constexpr int kEventFunction = IPMIbase::SENSER_EVENT_CMD;
constexpr int kStorageFunction = IPMIbase::STORAGE_CMD;
constexpr int kAppFunction = IPMIbase::APP_CMD;

std::string InterfaceAtPorts() {
    if (iopl(3) != 0) return "none";
    const bool kcs = talvane::ReadPort8(kKcsStatusPort) != kNoInterface;
    const bool smic = talvane::ReadPort8(kSmicControlPort) != kNoInterface;
    (void)iopl(0);  // result not used: lowering is always allowed
    return kcs && smic ? "both" : kcs ? "kcs" : smic ? "smic" : "none";
}

BmcExchange Exchange(const char* name, int function, int command, int lun, CapturedBytes data) {
    const BmcAnswer answer = AskExactly({function, command, lun, {data.begin(), data.end()}});
    return {name, lun, std::move(data), {answer.begin(), answer.end()}};
}

class Reader {
public:
    explicit Reader(BmcCapture& bmc) : bmc_(bmc) {}

    void Read() {
        ReadFirmware();
        ReadRecords();
        ReadSensors();
        Note(Exchange("Get Watchdog Timer", kAppFunction, IPMIbase::get_watchdog_timer, 0, {}),
             CapturedBytes(8));
        ReadChannels();
        ReadInventory();
    }

private:
    // Keeps the exchange if a simulated BMC would answer otherwise.
    void Note(const BmcExchange& exchange, const CapturedBytes& expected) {
        if (exchange.answer != expected) bmc_.others.push_back(exchange);
    }

    void ReadFirmware() {
        const BmcExchange id =
            Exchange("Get Device ID", kAppFunction, IPMIbase::get_device_id, 0, {});
        if (id.answer.size() > 3) {
            const int minor = id.answer[3];
            bmc_.majorFirmware = id.answer[2] & 0x7F;
            bmc_.minorFirmware = std::min(minor / 16, 9) * 10 + std::min(minor % 16, 9);
        }
        const auto bcd =
            static_cast<std::uint8_t>(bmc_.minorFirmware / 10 * 16 + bmc_.minorFirmware % 10);
        Note(id,
             {0x20, 1, static_cast<std::uint8_t>(bmc_.majorFirmware), bcd, 2, 0x0B, 0, 0, 0, 0, 0});
    }

    static BmcExchange RecordExchange(int id) {
        constexpr std::uint8_t kWhole = 0xFF;
        return Exchange(kGetSdr, kStorageFunction, IPMIbase::Get_SDR, 0,
                        {0, 0, talvane::LowByte(id), talvane::HighByte(id), 0, kWhole});
    }

    // Whether the answer holds a record that ends where it says, and has an ID of its own.
    bool IsWhole(const CapturedBytes& answer) const {
        constexpr std::size_t kHeader = kNextId + 5;
        if (answer.size() < kHeader || answer.size() != kHeader + answer[kHeader - 1]) return false;
        const auto id = IdOf(answer, kNextId);
        return id != kNoMore &&
               std::none_of(bmc_.records.begin(), bmc_.records.end(),
                            [id](const CapturedBytes& known) { return IdOf(known, 0) == id; });
    }

    static int IdOf(const CapturedBytes& bytes, std::size_t at) {
        return talvane::Le16(talvane::ByteView(bytes), at);
    }

    // What a simulated BMC with these records answers.
    CapturedBytes ExpectedRecord(const BmcExchange& exchange) const {
        const int id = IdOf(exchange.data, 2);
        const auto& records = bmc_.records;
        const auto record = std::find_if(
            records.begin(), records.end(),
            [id](const CapturedBytes& candidate) { return id == 0 || IdOf(candidate, 0) == id; });
        if (record == records.end()) return {};
        const int next = record + 1 == records.end() ? kNoMore : IdOf(*(record + 1), 0);
        CapturedBytes answer{talvane::LowByte(next), talvane::HighByte(next)};
        answer.insert(answer.end(), record->begin(), record->end());
        return answer;
    }

    void ReadRecords() {
        constexpr std::size_t kMaxRecords = 4096;
        std::vector<BmcExchange> exchanges;
        std::set<int> asked;
        for (int id = 0; asked.insert(id).second && asked.size() <= kMaxRecords;) {
            exchanges.push_back(RecordExchange(id));
            const CapturedBytes& answer = exchanges.back().answer;
            if (answer.size() <= kNextId) break;
            if (IsWhole(answer)) bmc_.records.push_back({answer.begin() + kNextId, answer.end()});
            AddSensors(answer);
            id = IdOf(answer, 0);
            if (id == kNoMore) break;
        }
        // The library asks for this record, too, where the last one describes no full sensor.
        exchanges.push_back(RecordExchange(kNoMore));
        for (const BmcExchange& exchange : exchanges) Note(exchange, ExpectedRecord(exchange));
        const int count = static_cast<int>(bmc_.records.size());
        CapturedBytes expected(14);
        expected[0] = 0x51;
        expected[1] = talvane::LowByte(count);
        expected[2] = talvane::HighByte(count);
        Note(Exchange("Get SDR Repository Info", kStorageFunction, IPMIbase::Get_SDR_RepositoryInfo,
                      0, {}),
             expected);
    }

    void AddSensors(const CapturedBytes& answer) {
        constexpr std::size_t kNumberAt = kNextId + 7;
        ++recordCount_;
        for (const SensorRecord& sensor :
             DecodeSensorRecord(talvane::ByteView(answer).subspan(kNextId))) {
            if (sensor.kind == SensorRecord::Kind::kEventOnly) continue;
            sensors_.insert({sensor.lun, sensor.number});
            bmc_.names.emplace(sensor.number, sensor.name);
        }
        // The library asks the BMC's own LUN, whatever the record says, and takes what is short.
        if (answer.size() > kNumberAt) sensors_.insert({0, answer[kNumberAt]});
    }

    void ReadSensors() {
        for (const auto& [lun, number] : sensors_)
            bmc_.readings.push_back(Exchange("Get Sensor Reading", kEventFunction,
                                             IPMIbase::Get_sensor_reading, lun,
                                             {static_cast<std::uint8_t>(number)}));
        // The library asks for thresholds by a sensor's place in the repository, too.
        constexpr int kMaxNumber = 0xFF;
        auto asked = sensors_;
        for (int place = 0; place < std::min(recordCount_, kMaxNumber); ++place)
            asked.insert({0, place});
        for (const auto& [lun, number] : asked)
            bmc_.thresholds.push_back(Exchange("Get Sensor Thresholds", kEventFunction,
                                               IPMIbase::get_sensor_threshold, lun,
                                               {static_cast<std::uint8_t>(number)}));
    }

    void ReadChannels() {
        constexpr std::uint8_t kLastChannel = 7;  // that the library asks for
        for (std::uint8_t channel = 1; channel <= kLastChannel; ++channel) {
            const CapturedBytes answer =
                Exchange("Get Channel Info", kAppFunction, IPMIbase::Get_channel_info, 0, {channel})
                    .answer;
            if (answer.size() > 2) bmc_.channels.push_back({channel, answer[1], answer[2]});
        }
    }

    void ReadInventory() {
        const auto ask = [](int command, const CapturedBytes& data) {
            const char* const name =
                command == IPMIbase::Get_FRU_info ? "Get FRU Inventory Area Info" : kReadFruData;
            return Exchange(name, kStorageFunction, command, 0, data);
        };
        const BmcExchange info = ask(IPMIbase::Get_FRU_info, {0});
        const auto read = [&](const CapturedBytes& data) {
            return ask(IPMIbase::Read_FRU_info, data);
        };
        bmc_.inventory = ReadFruImage(info.answer, read);
        const int size = static_cast<int>(bmc_.inventory.size());
        Note(info, size == 0 ? CapturedBytes()
                             : CapturedBytes{talvane::LowByte(size), talvane::HighByte(size), 0});
        for (const BmcExchange& exchange : FruRequestsOfLibrary(read))
            Note(exchange, AnswerFromFruImage(bmc_.inventory, exchange.data));
    }

    static constexpr std::size_t kNextId = 2;  // bytes before the record
    static constexpr int kNoMore = 0xFFFF;

    BmcCapture& bmc_;
    std::set<std::pair<int, int>> sensors_;  // LUN and number
    int recordCount_ = 0;
};

}  // namespace

void CaptureBmc(MachineCapture& capture) {
    const Descriptor device("/dev/ipmi", O_RDONLY);
    if (!device.IsOpen()) {
        capture.unopened.push_back({"/dev/ipmi", errno});
        capture.notRead.push_back(&kBmc);
        return;
    }
    BmcCapture& bmc = capture.bmc.emplace();
    bmc.interface = InterfaceAtPorts();
    if (IsIpmiSupport() == 0) {
        bmc.interface = "none";
        capture.notRead.push_back(&kBmc);
        return;
    }
    Reader(bmc).Read();
}

}  // namespace tool
