// SPDX-License-Identifier: MIT
//
// A BMC read through the kernel's messages looks as it does through the device that agents know.

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "simulator/SimulatedServer.h"
#include "simulator/description/MachineFile.h"
#include "simulator/host/HostIpmi.h"
#include "simulator/machine/Machine.h"
#include "tools/library/ChildProcess.h"
#include "tools/records/Bmc.h"
#include "tools/records/Sensors.h"
#include "tools/records/Watchdog.h"

namespace tool {
namespace {

// Carries requests to the machine's controller, as the kernel's driver carries them to a real one.
class SimulatedController : public transport::Controller {
public:
    explicit SimulatedController(sim::Bmc& bmc) : bmc_(bmc) {}

    int Exchange(const transport::Request& request, transport::Deadline,
                 transport::Response& response) override {
        sim::BmcRequest message;
        message.netFn = request.netFn;
        message.command = request.command;
        message.lun = request.lun;
        message.responder = 0x20;
        message.data = request.data;
        bmc_.Answer(message);
        response.completion = message.completion;
        response.data = message.response;
        return message.error;
    }

private:
    sim::Bmc& bmc_;
};

void PutBehindKernel(sim::Machine& machine) {
    sim::Bmc& bmc = machine.GetBmc();
    machine.Install(
        "/dev/ipmi",
        std::make_unique<sim::HostIpmi>(
            [&bmc](int&) { return std::make_unique<SimulatedController>(bmc); }, false));
}

std::string Answers() {
    Json answers;
    const auto sensors = ReadSensors();
    const auto bmc = ReadBmc();
    const auto watchdog = ReadWatchdog();
    if (sensors) answers["sensors"] = ToJson(*sensors);
    if (bmc) answers["bmc"] = ToJson(*bmc);
    if (watchdog) answers["watchdog"] = ToJson(*watchdog);
    return answers.dump(1);
}

class HostSensorsTest : public testing::TestWithParam<const char*> {};

TEST_P(HostSensorsTest, SensorsInventoryAndWatchdogAreTheSame) {
    const std::filesystem::path folder =
        std::filesystem::path(TALVANE_SOURCE) / "machines" / GetParam();
    // Each in a process of its own, as the library keeps what it has read.
    const auto ask = [&](bool behindKernel) {
        const auto output = OutputOfChildProcess([&] {
            sim::SimulatedServer server([&](sim::Machine& machine) {
                sim::LoadMachine(folder, machine);
                if (behindKernel) PutBehindKernel(machine);
            });
            (void)std::puts(Answers().c_str());
            (void)std::fflush(stdout);
        });
        return output.value_or("no output");
    };
    const std::string direct = ask(false);
    EXPECT_GT(direct.size(), 1000u);
    EXPECT_EQ(ask(true), direct);
}

INSTANTIATE_TEST_SUITE_P(Machines, HostSensorsTest, testing::Values("full-server"),
                         [](const auto&) { return std::string("fullserver"); });

}  // namespace
}  // namespace tool
