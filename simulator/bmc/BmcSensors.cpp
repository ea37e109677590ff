// SPDX-License-Identifier: MIT
//
// Readings, states and thresholds of the sensors (IPMI 2.0, 35).

#include "simulator/bmc/Bmc.h"
#include "simulator/bmc/BmcReply.h"

namespace sim {

void Bmc::SetReading(std::uint8_t sensor, std::uint8_t raw, std::chrono::seconds from) {
    sensors_[sensor].timeline.readings[from] = {raw, true};
}

void Bmc::SetUnavailable(std::uint8_t sensor, std::chrono::seconds from) {
    sensors_[sensor].timeline.readings[from] = {0, false};
}

void Bmc::SetStates(std::uint8_t sensor, std::uint8_t low, std::uint8_t high,
                    std::chrono::seconds from) {
    sensors_[sensor].timeline.states[from] = {low, high};
}

void Bmc::SetTimeline(std::uint8_t sensor, BmcTimeline timeline) {
    sensors_[sensor].timeline = std::move(timeline);
}

void Bmc::SetThresholds(std::uint8_t sensor, const BmcThresholds& thresholds) {
    sensors_[sensor].thresholds = thresholds;
}

BmcThresholds Bmc::Thresholds(std::uint8_t sensor) const {
    const auto found = sensors_.find(sensor);
    return found == sensors_.end() ? BmcThresholds{} : found->second.thresholds;
}

// What the sensor shows now; nothing when there is no such sensor.
std::optional<Bmc::Shown> Bmc::ShownNow(std::uint8_t sensor) {
    const std::chrono::seconds now = clock_();
    const auto own = sensors_.find(sensor);
    std::optional<Shown> shown;
    if (own != sensors_.end()) {
        const BmcTimeline& timeline = own->second.timeline;
        shown.emplace(Shown{ValueAt(timeline.readings, now).value_or(BmcReading{}),
                            ValueAt(timeline.states, now).value_or(BmcStates{})});
    }
    if (!timelineSource_) return shown;
    const auto& timelines = timelineSource_();
    const auto controlled = timelines.find(sensor);
    if (controlled == timelines.end()) return shown;
    if (!shown) shown.emplace();
    shown->reading = ValueAt(controlled->second.readings, now).value_or(shown->reading);
    shown->states = ValueAt(controlled->second.states, now).value_or(shown->states);
    return shown;
}

Bmc::Reply Bmc::GetReading(const Bytes& data) {
    const std::optional<Shown> shown = ShownNow(data[0]);
    if (!shown) return {kNotPresent, {}};
    constexpr std::uint8_t kScanning = 0xC0;  // event messages and scanning enabled
    constexpr std::uint8_t kUnavailable = 0x20;
    const std::uint8_t flags = shown->reading.available ? kScanning : kScanning | kUnavailable;
    return {0, {shown->reading.raw, flags, shown->states[0], shown->states[1]}};
}

Bmc::Reply Bmc::GetThresholds(const Bytes& data) {
    const auto sensor = sensors_.find(data[0]);
    if (sensor == sensors_.end()) return {kNotPresent, {}};
    const BmcThresholds& thresholds = sensor->second.thresholds;
    Bytes reply{thresholds.readable};
    reply.insert(reply.end(), thresholds.values.begin(), thresholds.values.end());
    return {0, reply};
}

Bmc::Reply Bmc::SetThresholdValues(const Bytes& data) {
    const auto sensor = sensors_.find(data[0]);
    if (sensor == sensors_.end()) return {kNotPresent, {}};
    ForgetAnswers(0x04, 0x27, {data[0]});  // Get Sensor Thresholds
    auto& values = sensor->second.thresholds.values;
    for (std::size_t i = 0; i < values.size(); ++i)
        if ((data[1] >> i & 1) != 0) values[i] = data[2 + i];
    return {};
}

}  // namespace sim
