// SPDX-License-Identifier: MIT
//
// The baseboard management controller of a simulated server: what it holds, and the IPMI commands
// that it answers. Commands that it does not know are answered with completion code C1, as the
// standard asks (IPMI 2.0, 5.2).
#ifndef TALVANE_SIMULATOR_BMC_BMC_H
#define TALVANE_SIMULATOR_BMC_BMC_H

#include <array>
#include <chrono>
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

// One request as the driver was handed it, and what came back.
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
    int error = 0;  // errno when the driver's call failed

    // In bytes, "Get SDR 00 00 00 00 00 FF": the command's name, or its numbers, and the data.
    std::string Text() const;

    // For people: "Get SDR 0x0003", and "64 bytes, next 0x0004".
    std::string Asked() const;
    std::string Answered() const;
};

// In the order of the threshold masks.
struct BmcThresholds {
    std::uint8_t readable = 0;
    std::array<std::uint8_t, 6> values{};  // lower non-critical, critical, non-recoverable; upper
};

struct BmcWatchdog {
    std::uint8_t use = 0;
    std::uint8_t actions = 0;
    std::uint8_t preTimeout = 0;
    std::uint8_t expirationFlags = 0;
    unsigned initial = 0;  // tenths of a second
    bool running = false;
    bool initialised = false;  // was set since power-on
    bool expired = false;      // has counted down since it was set
};

struct BmcChannel {
    std::uint8_t medium = 0;
    std::uint8_t protocol = 0;
};

// What can be wrong with a record of the repository.
struct BmcRecordQuirks {
    std::optional<std::size_t> delivered;        // Get SDR gives no more of it than this
    std::map<std::size_t, std::uint8_t> reread;  // bytes as every read but the first shows them
};

// What befalls a request.
struct BmcFault {
    enum class Kind {
        kRefused,  // answered with the completion code `value`, and not carried out
        kCut,      // carried out; `value` bytes of the response arrive at most
        kStale,    // carried out, and answered with the response to the request before
        kFails     // the driver's call fails with the errno `value`
    };
    std::uint8_t netFn = 0;
    std::uint8_t command = 0;
    unsigned nth = 0;  // of these requests, counted from 1; 0 for each
    Kind kind = Kind::kRefused;
    unsigned value = 0;
};

class Bmc {
public:
    using Clock = std::function<std::chrono::seconds()>;

    // The clock gives the time for the watchdog; the log is told each request.
    Bmc(Clock clock, AccessLog& log);

    // Sensor data records, in the repository's order. Each gets the next record ID unless its own
    // is to be kept; std::invalid_argument for one that is there already. A record that names a
    // sensor gives it a reading of 0 and readable thresholds of 0.
    void Add(const SdrRecord& record) { AddRecord(record.Image()); }
    void AddRecord(Bytes record, bool keepId = false, BmcRecordQuirks quirks = {});

    // What `ipmitool sdr dump` wrote, record IDs kept. std::runtime_error when it is no such dump.
    void LoadRepository(std::span<const std::uint8_t> dump);

    bool HasRecord(std::uint16_t id) const;

    // What Get SDR Repository Info claims in place of the truth.
    void SetRepositoryCount(std::uint16_t count) { claimedCount_ = count; }

    // The record ID that Get SDR names behind this one, whatever follows it.
    void SetNextRecord(std::uint16_t id, std::uint16_t next) { nextIds_[id] = next; }

    // Sensors, by number; those of the repository and any other. A value holds from its moment of
    // the machine's time on.
    void SetReading(std::uint8_t sensor, std::uint8_t raw, std::chrono::seconds from = {});
    void SetUnavailable(std::uint8_t sensor, std::chrono::seconds from = {});
    void SetStates(std::uint8_t sensor, std::uint8_t low, std::uint8_t high = 0,
                   std::chrono::seconds from = {});
    void SetTimeline(std::uint8_t sensor, BmcTimeline timeline);

    // Readings and states that the source gives from now on, by sensor, stand in place of the ones
    // set here. It is asked whenever a sensor is.
    using TimelineSource = std::function<const std::map<std::uint8_t, BmcTimeline>&()>;
    void Follow(TimelineSource source) { timelineSource_ = std::move(source); }
    void SetThresholds(std::uint8_t sensor, const BmcThresholds& thresholds);
    BmcThresholds Thresholds(std::uint8_t sensor) const;

    void SetInventory(Bytes image) { inventory_ = std::move(image); }
    void SetFirmware(std::uint8_t major, std::uint8_t minorBcd);
    void SetChannel(std::uint8_t number, BmcChannel channel);

    // The watchdog as it stands now: stopped once it has counted down.
    BmcWatchdog Watchdog();
    unsigned WatchdogPresent();  // what is left, in tenths of a second
    int WatchdogExpirations();   // since power-on

    // As if something else than the program had set and started it.
    void StartWatchdog(std::uint8_t action, std::uint16_t seconds);

    // Once it runs it counts down whatever Set Watchdog Timer says.
    void MakeWatchdogUnstoppable() { watchdogStops_ = false; }

    // LAN parameters that were set, by channel and selector.
    const std::map<std::pair<std::uint8_t, std::uint8_t>, Bytes>& Lan() const { return lan_; }

    // Users whose password was set or who were switched off: the bytes behind the user ID.
    const std::map<std::uint8_t, Bytes>& Users() const { return users_; }

    // What the next requests are answered with in place of the controller: nothing for the
    // controller's own answer, else the response, empty for none at all.
    using Interceptor = std::function<std::optional<Bytes>(const BmcRequest&)>;
    void Intercept(Interceptor interceptor) { interceptor_ = std::move(interceptor); }

    // From now on. std::invalid_argument for commands that the controller does not know.
    void Inject(const BmcFault& fault);
    void Inject(std::string_view command, BmcFault::Kind kind, unsigned value, unsigned nth = 0);

    // Every request so far, in order, and the number of those of one command, by its name
    // (std::invalid_argument for one that the controller does not know) or its numbers.
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
        std::size_t leastData;
        const char* name;
        Reply (Bmc::*run)(const Bytes& data);
        std::string (*asked)(const Bytes& data);  // for people; null when there are no data
        std::size_t leastResponse;
        std::string (*answered)(const Bytes& response);  // null when there is no response
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
    friend struct BmcRequest;

    Reply Execute(const BmcRequest& request);
    void CarryOut(BmcRequest& request);
    std::optional<BmcFault> Strike(const BmcRequest& request);
    void AnswerWith(const BmcFault& fault, BmcRequest& request);
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
