// SPDX-License-Identifier: MIT
//
// The baseboard management controller of a simulated server: what it holds, and the IPMI commands
// that it answers. It answers a command that it does not know with completion code C1, as the
// standard requires (IPMI 2.0, 5.2).
#ifndef TALVANE_SIMULATOR_BMC_BMC_H
#define TALVANE_SIMULATOR_BMC_BMC_H

#include <array>
#include <chrono>
#include <compare>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/base/Bytes.h"
#include "simulator/bmc/BmcTimeline.h"
#include "simulator/bmc/SdrRecord.h"

namespace sim {

class AccessLog;

// One request as the driver received it, and what came back.
struct BmcRequest {
    std::uint8_t netFn = 0;
    std::uint8_t command = 0;
    std::uint8_t lun = 0;
    std::uint8_t bus = 0;
    std::uint8_t responder = 0;
    unsigned timeout = 0;
    Bytes data;
    std::uint8_t completion = 0;
    Bytes response;
    int error = 0;  // errno of the driver's call; 0 when it succeeded

    // The command and its data bytes: "Get SDR 00 00 00 00 00 FF". An unknown command shows its
    // two numbers in place of the name.
    std::string Text() const;

    // The request and its response for people: "Get SDR 0x0003", and "64 bytes, next 0x0004".
    std::string DescribeRequest() const;
    std::string DescribeResponse() const;
};

// In the order of the threshold masks.
struct BmcThresholds {
    std::uint8_t readable = 0;
    std::array<std::uint8_t, 6>
        values{};  // lower non-critical, critical, non-recoverable; then upper
};

struct BmcWatchdog {
    std::uint8_t use = 0;
    std::uint8_t actions = 0;
    std::uint8_t preTimeout = 0;
    std::uint8_t expirationFlags = 0;
    unsigned initial = 0;  // tenths of a second
    bool running = false;
    bool initialised = false;  // was set after power-on
    bool expired = false;      // has counted down after it was set
};

struct BmcChannel {
    std::uint8_t medium = 0;
    std::uint8_t protocol = 0;
};

// How a record of the repository can deviate from a sound one.
struct BmcRecordQuirks {
    std::optional<std::size_t> delivered;        // Get SDR returns at most this many bytes of it
    std::map<std::size_t, std::uint8_t> reread;  // bytes that differ from the second read on
};

// What goes wrong with a request.
struct BmcFault {
    enum class Kind {
        kRefused,  // not carried out; answered with the completion code `value`
        kCut,      // carried out; at most `value` bytes of the response arrive
        kStale,    // carried out; answered with the response to the previous request
        kFails     // the driver's call fails with the errno `value`
    };
    std::uint8_t netFn = 0;
    std::uint8_t command = 0;
    unsigned nth = 0;  // which request of this command, counted from 1; 0 for every one
    Kind kind = Kind::kRefused;
    unsigned value = 0;
};

class Bmc {
public:
    using Clock = std::function<std::chrono::seconds()>;

    // The clock gives the machine's time, for the watchdog and for timelines. Every request is
    // added to the log.
    Bmc(Clock clock, AccessLog& log);

    // Appends a sensor data record to the repository. The record gets the next record ID unless it
    // keeps its own; std::invalid_argument when that ID is taken. A sensor that the record names
    // starts with a reading of 0 and no readable threshold.
    void Add(const SdrRecord& record) { AddRecord(record.Image()); }
    void AddRecord(Bytes record, bool keepId = false, BmcRecordQuirks quirks = {});

    // Appends the records that `ipmitool sdr dump` wrote, with their IDs. std::runtime_error when
    // the bytes are not such a dump.
    void LoadRepository(std::span<const std::uint8_t> dump);

    bool HasRecord(std::uint16_t id) const;
    bool HasSensor(std::uint8_t sensor) const { return sensors_.contains(sensor); }

    // The number of records that Get SDR Repository Info claims, whatever the truth is.
    void SetRepositoryCount(std::uint16_t count) { claimedCount_ = count; }

    // The record ID that Get SDR names as the one after this record, whatever really follows.
    void SetNextRecord(std::uint16_t id, std::uint16_t next) { nextIds_[id] = next; }

    // What a sensor shows, by sensor number; the sensor need not be in the repository. A value
    // holds from the moment `from` of the machine's time on.
    void SetReading(std::uint8_t sensor, std::uint8_t raw, std::chrono::seconds from = {});
    void SetUnavailable(std::uint8_t sensor, std::chrono::seconds from = {});
    void SetStates(std::uint8_t sensor, std::uint8_t low, std::uint8_t high = 0,
                   std::chrono::seconds from = {});
    void SetTimeline(std::uint8_t sensor, BmcTimeline timeline);

    // From now on the readings and states of the source, by sensor number, replace the ones set
    // here. The source is asked at every request for a reading.
    using TimelineSource = std::function<const std::map<std::uint8_t, BmcTimeline>&()>;
    void Follow(TimelineSource source) { timelineSource_ = std::move(source); }
    void SetThresholds(std::uint8_t sensor, const BmcThresholds& thresholds);
    BmcThresholds Thresholds(std::uint8_t sensor) const;

    void SetInventory(Bytes image) { inventory_ = std::move(image); }
    void SetFirmware(std::uint8_t major, std::uint8_t minorBcd);
    void SetChannel(std::uint8_t number, BmcChannel channel);

    // The watchdog as it is now: stopped after it has counted down.
    BmcWatchdog Watchdog();
    unsigned WatchdogPresent();  // the time left, in tenths of a second
    int WatchdogExpirations();   // how often it has counted down since power-on

    // Sets and starts it, as firmware does before the program runs.
    void StartWatchdog(std::uint8_t action, std::uint16_t seconds);

    // Once it runs it goes on counting down, whatever Set Watchdog Timer says.
    void MakeWatchdogUnstoppable() { watchdogStops_ = false; }

    // The LAN parameters that were set, by channel and parameter number.
    const std::map<std::pair<std::uint8_t, std::uint8_t>, Bytes>& Lan() const { return lan_; }

    // The last Set User Password request for each user ID: the bytes after the ID.
    const std::map<std::uint8_t, Bytes>& Users() const { return users_; }

    // From now on the interceptor sees every request first. It returns nothing when the controller
    // is to answer, or the response to give instead, which may be empty.
    using Interceptor = std::function<std::optional<Bytes>(const BmcRequest&)>;
    void Intercept(Interceptor interceptor) { interceptor_ = std::move(interceptor); }

    // Adds a fault that counts requests from now on. std::invalid_argument for a command that the
    // controller does not know.
    void Inject(const BmcFault& fault);
    void Inject(std::string_view command, BmcFault::Kind kind, unsigned value, unsigned nth = 0);

    // From now on a request of this command with this LUN and data is answered with these bytes,
    // the completion code first, until a command that sets what it asks for is carried out.
    // std::invalid_argument for a command that the controller does not know, and without a byte.
    void SetAnswer(std::string_view command, std::uint8_t lun, const Bytes& data,
                   const Bytes& answer);

    // Every request so far, in order; their texts; how many were for one command, which is given by
    // its numbers or by its name. std::invalid_argument for a name that the controller does not
    // know.
    const std::vector<BmcRequest>& Requests() const { return requests_; }
    std::vector<std::string> RequestTexts() const;
    std::size_t Count(std::string_view command) const;
    std::size_t Count(std::uint8_t netFn, std::uint8_t command) const;
    void ForgetRequests() { requests_.clear(); }

    // Answers a request: fills in its completion code and response.
    void Answer(BmcRequest& request);

private:
    struct Reply {
        std::uint8_t completion = 0;
        Bytes data;
    };
    struct Command {
        std::uint8_t netFn;
        std::uint8_t command;
        std::size_t minData;
        const char* name;
        Reply (Bmc::*run)(const Bytes& data);
        std::string (*describeRequest)(const Bytes& data);  // null when the request has no data
        std::size_t minResponse;
        std::string (*describeResponse)(
            const Bytes& response);  // null when the response has no data
    };
    struct SensorState {
        BmcTimeline timeline;
        BmcThresholds thresholds;
    };
    struct Shown {
        BmcReading reading;
        BmcStates states{};
    };
    struct Record {
        Bytes bytes;
        BmcRecordQuirks quirks;
        bool wasRead = false;
    };

    static std::span<const Command> Commands();
    static const Command* Find(std::uint8_t netFn, std::uint8_t command);
    static const Command& FindByName(std::string_view name);
    friend struct BmcRequest;

    Reply Execute(const BmcRequest& request);
    void ForgetAnswers(std::uint8_t netFn, std::uint8_t command, const Bytes& data);
    void CarryOut(BmcRequest& request);
    std::optional<BmcFault> TakeFaultFor(const BmcRequest& request);
    void AnswerWithFault(const BmcFault& fault, BmcRequest& request);
    std::optional<Shown> ShownNow(std::uint8_t sensor);
    Reply GetDeviceId(const Bytes& data);
    Reply ResetWatchdog(const Bytes& data);
    Reply SetWatchdog(const Bytes& data);
    Reply GetWatchdog(const Bytes& data);
    Reply GetChannelInfo(const Bytes& data);
    Reply SetUserPassword(const Bytes& data);
    Reply SetLanParameter(const Bytes& data);
    Reply GetInventoryArea(const Bytes& data);
    Reply ReadInventory(const Bytes& data);
    Reply GetRepositoryInfo(const Bytes& data);
    Reply ReserveRepository(const Bytes& data);
    Reply GetRecord(const Bytes& data);
    Reply GetReading(const Bytes& data);
    Reply GetThresholds(const Bytes& data);
    Reply SetThresholdValues(const Bytes& data);
    void CountDown();

    Clock clock_;
    AccessLog& log_;
    Interceptor interceptor_;
    std::vector<BmcRequest> requests_;
    std::vector<BmcFault> faults_;
    struct Question {
        std::uint8_t netFn;
        std::uint8_t command;
        std::uint8_t lun;
        Bytes data;
        auto operator<=>(const Question&) const = default;
    };
    std::map<Question, Bytes> answers_;
    std::vector<Record> records_;
    std::optional<std::uint16_t> claimedCount_;
    std::map<std::uint16_t, std::uint16_t> nextIds_;
    std::map<std::uint8_t, SensorState> sensors_;
    TimelineSource timelineSource_;
    Bytes inventory_;
    std::array<std::uint8_t, 2> firmware_{1, 0x00};
    std::map<std::uint8_t, BmcChannel> channels_;
    std::map<std::pair<std::uint8_t, std::uint8_t>, Bytes> lan_;
    std::map<std::uint8_t, Bytes> users_;
    BmcWatchdog watchdog_;
    std::chrono::seconds watchdogStart_{0};
    int expirations_ = 0;
    bool watchdogStops_ = true;
    std::uint16_t reservation_ = 0;
};

}  // namespace sim

#endif
