// SPDX-License-Identifier: MIT
//
// Fixture of the tests of what administrators know of controllers in the field: machines as their
// descriptions give them, seen through the exported functions and classes.
#ifndef TALVANE_TESTS_IPMI_FIELDQUIRKTEST_H
#define TALVANE_TESTS_IPMI_FIELDQUIRKTEST_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "IPMI/IPMIsupport.h"
#include "Talvane.h"
#include "simulator/MachineFolder.h"
#include "simulator/SimulatedServer.h"
#include "simulator/machine/Machine.h"

// Sensors whose raw readings are degrees.
inline std::string Temperature(int number, const std::string& name,
                               const std::string& fields = "") {
    return "sensor " + std::to_string(number) + " \"" + name + "\"\n type 1\n entity 3\n" +
           (fields.find("unit") == std::string::npos ? " unit 1\n" : "") + fields;
}

class FieldQuirkTest : public ::testing::Test {
protected:
    void Describe(const std::string& description) {
        folder = std::make_unique<MachineFolder>("bmc kcs firmware 1 20\n" + description);
        server = std::make_unique<sim::SimulatedServer>(folder->path);
    }

    // The temperatures' names, as many as the record's array has of them.
    std::vector<std::string> Names() {
        result = GetIpmiInfo(TALVANE_TEMPERATURES, &record);
        std::vector<std::string> names;
        if (result != 0) return names;
        for (int i = 0; i < record.quantity && i < 32; ++i)
            names.emplace_back(record.temperature[i].IdString);
        return names;
    }
    std::string Reading(int i = 0) {
        (void)Names();
        return record.temperature[i].CurrentTemperature;
    }
    std::string Speed() {
        result = GetIpmiInfo(TALVANE_FANS, &fans);
        return fans.fan[0].speed;
    }
    std::size_t Requests(std::string_view command) { return server->GetBmc().Count(command); }

    std::unique_ptr<MachineFolder> folder;
    std::unique_ptr<sim::SimulatedServer> server;
    TemperatureInformation record{};
    FanInformation fans{};
    int result = 0;
};

#endif
