// SPDX-License-Identifier: MIT
//
// Readings, states and thresholds of the sensors (IPMI 2.0, 35).

#include "Bmc.h"

namespace sim {
namespace {

constexpr std::uint8_t kNotPresent = 0xCB;

}  // namespace

void Bmc::setReading(std::uint8_t sensor, std::uint8_t raw) {
    sensors_[sensor].reading = raw;
}

void Bmc::setStates(std::uint8_t sensor, std::uint8_t low, std::uint8_t high) {
    sensors_[sensor].states = {low, high};
}

void Bmc::setThresholds(std::uint8_t sensor, const BmcThresholds& thresholds) {
    sensors_[sensor].thresholds = thresholds;
}

BmcThresholds Bmc::thresholds(std::uint8_t sensor) const {
    const auto found = sensors_.find(sensor);
    return found == sensors_.end() ? BmcThresholds{} : found->second.thresholds;
}

Bmc::Reply Bmc::getReading(const Bytes& data) {
    const auto sensor = sensors_.find(data[0]);
    if (sensor == sensors_.end()) return {kNotPresent, {}};
    constexpr std::uint8_t kScanning = 0xC0;  // event messages and scanning enabled
    const SensorState& state = sensor->second;
    return {0, {state.reading, kScanning, state.states[0], state.states[1]}};
}

Bmc::Reply Bmc::getThresholds(const Bytes& data) {
    const auto sensor = sensors_.find(data[0]);
    if (sensor == sensors_.end()) return {kNotPresent, {}};
    const BmcThresholds& thresholds = sensor->second.thresholds;
    Bytes reply{thresholds.readable};
    reply.insert(reply.end(), thresholds.values.begin(), thresholds.values.end());
    return {0, reply};
}

Bmc::Reply Bmc::setThresholdValues(const Bytes& data) {
    const auto sensor = sensors_.find(data[0]);
    if (sensor == sensors_.end()) return {kNotPresent, {}};
    auto& values = sensor->second.thresholds.values;
    for (std::size_t i = 0; i < values.size(); ++i)
        if ((data[1] >> i & 1) != 0) values[i] = data[2 + i];
    return {};
}

}  // namespace sim
