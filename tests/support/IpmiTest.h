// SPDX-License-Identifier: MIT
//
// Fixture of the IPMI tests: a simulated server with a controller, and sensors of a few kinds.
#ifndef TALVANE_TESTS_SUPPORT_IPMITEST_H
#define TALVANE_TESTS_SUPPORT_IPMITEST_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "simulator/SimulatedServer.h"
#include "simulator/bmc/SdrRecord.h"
#include "support/Answer.h"
#include "support/OpenIpmi.h"

class IpmiTest : public ::testing::Test {
protected:
    static constexpr std::uint8_t kTemperature = 1;
    static constexpr std::uint8_t kVoltage = 2;
    static constexpr std::uint8_t kFan = 4;
    static constexpr std::uint8_t kProcessor = 7;

    // A sensor with one degree, 0.02 volts or 50 turns a minute per step.
    static sim::SdrRecord Temperature(const std::string& name, std::uint8_t number) {
        return sim::SdrRecord(name, number).Kind(kTemperature).Unit(1);
    }
    static sim::SdrRecord Voltage(const std::string& name, std::uint8_t number) {
        return sim::SdrRecord(name, number).Kind(kVoltage).Unit(4).Factors(2, 0, 0, -2);
    }
    static sim::SdrRecord Fan(const std::string& name, std::uint8_t number) {
        return sim::SdrRecord(name, number).Kind(kFan).Unit(18).Factors(50, 0, 0, 0);
    }

    // A sensor in the repository, with its reading.
    void Add(const sim::SdrRecord& record, std::uint8_t reading) {
        bmc.Add(record);
        bmc.SetReading(record.Image()[7], reading);
    }

    // Two temperatures of the processor and a fan; thresholds are those of the entry's index.
    void AddThree() {
        Add(Temperature("T1", 0x10).Entity(3).ThresholdMasks(0x3F, 0x3F), 40);
        Add(Temperature("T2", 0x11).Entity(3).ThresholdMasks(0x3F, 0x38), 40);
        Add(Fan("F1", 0x30).Entity(29).ThresholdMasks(0x3F, 0x00), 70);
        bmc.SetThresholds(0, {0x3F, {30, 20, 10, 100, 110, 120}});
        bmc.SetThresholds(1, {0x3F, {31, 21, 11, 101, 111, 121}});
        bmc.SetThresholds(2, {0x3F, {3, 2, 1, 100, 110, 120}});
    }

    // The object that finds the controller; made on first use.
    IPMIsupport& Support() {
        if (support == nullptr) support = std::make_unique<IPMIsupport>();
        return *support;
    }
    Sensor& Sensors() { return Support().sensor; }

    // Walks the whole repository and fills the tables.
    Sensor& Loaded() {
        EXPECT_EQ(Support().GetSensorInfo(), 0);
        return Sensors();
    }

    Answer Ask(int (Sensor::*getter)(int, char*), int i) {
        return AskWith(Buffer::kMarked, [&](char* b) { return (Sensors().*getter)(i, b); });
    }

    sim::SimulatedServer server;
    sim::Bmc& bmc = server.GetBmc();
    std::unique_ptr<IPMIsupport> support;
};

#endif
