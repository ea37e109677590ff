// SPDX-License-Identifier: MIT
//
// A signal comes within every call of the machine, and its handler calls the library: it gets the
// busy answer, and the interrupted call answers what it answers without a signal.
#include <csignal>
#include <cstring>
#include <vector>

#include "Talvane.h"
#include "faults/FaultyController.h"
#include "simulator/machine/SmbiosTable.h"

namespace faults {
namespace {

sim::SimulatedServer* current = nullptr;
const char* interrupted = "";
bool isOver = false;
bool isInHandler = false;
int signals = 0;
std::vector<int> nestedResults;

void CallInventory(int) {
    SysInformation system{};
    nestedResults.push_back(GetInfo(TALVANE_SYSTEM, &system));
    (void)IsSmBiosSupport();
}

void CallBmc(int) {
    TemperatureInformation temperatures{};
    nestedResults.push_back(GetIpmiInfo(TALVANE_TEMPERATURES, &temperatures));
    unsigned char major = 0;
    unsigned char minor = 0;
    nestedResults.push_back(GetBMCVersion(&major, &minor));
}

// Arms itself again, so that the next use of the call is interrupted, too.
void InterruptOnce() {
    if (isOver) return;
    if (!isInHandler) {
        isInHandler = true;
        ++signals;
        (void)std::raise(SIGUSR1);
        isInHandler = false;
    }
    current->During(interrupted, InterruptOnce);
}

class SignalTest : public FaultyController {
protected:
    SignalTest() {
        sim::SmbiosTable table;
        table.Add(0, 0, 20);
        table.Add(1, 1, 8).String(4, "Maker").String(5, "Product");
        sim::SmbiosPlacement low;
        low.table = 0x8000;
        server.GetMemory().PlaceSmbios(table.Image(), low);
        current = &server;
    }
    ~SignalTest() override { (void)std::signal(SIGUSR1, SIG_DFL); }

    static void InterruptEvery(const char* call, void (*handler)(int)) {
        interrupted = call;
        isOver = false;
        signals = 0;
        nestedResults.clear();
        (void)std::signal(SIGUSR1, handler);
        current->During(call, InterruptOnce);
    }

    static void ExpectBusyAnswers() {
        EXPECT_GT(signals, 0) << interrupted;
        EXPECT_THAT(nestedResults, ::testing::Each(1)) << interrupted;
    }
};

TEST_F(SignalTest, HandlerWithinEachCallOfTheReaderFindsItBusyAndChangesNothing) {
    for (const char* call : {"open", "lseek", "read", "close"}) {
        ASSERT_EQ(release(), 0);
        InterruptEvery(call, CallInventory);
        SysInformation system{};
        EXPECT_EQ(GetInfo(TALVANE_SYSTEM, &system), 0) << call;
        EXPECT_STREQ(system.manufacturer, "Maker") << call;
        ExpectBusyAnswers();
        isOver = true;
    }
}

TEST_F(SignalTest, HandlerWithinEachRequestOfTheFirstWalkFindsItBusyAndChangesNothing) {
    InterruptEvery("ioctl", CallBmc);
    TemperatureInformation interruptedWalk{};
    ASSERT_EQ(GetIpmiInfo(TALVANE_TEMPERATURES, &interruptedWalk), 0);
    ExpectBusyAnswers();
    isOver = true;
    TemperatureInformation temperatures{};
    ASSERT_EQ(GetIpmiInfo(TALVANE_TEMPERATURES, &temperatures), 0);
    EXPECT_EQ(temperatures.quantity, 1);
    EXPECT_EQ(std::memcmp(&interruptedWalk, &temperatures, sizeof temperatures), 0);
}

TEST_F(SignalTest, HandlerWithinTheSleepOfALoadQueryCanCallTheInventory) {
    server.GetStat().SetRates(0, {.user = 20, .idle = 80});
    InterruptEvery("sleep", CallInventory);
    CpuUsageRageInformation usage{};
    EXPECT_EQ(GetCpuUsageRate(1, &usage), 0);
    EXPECT_EQ(usage.UsageRate[0], 20);
    EXPECT_GT(signals, 0);
    EXPECT_THAT(nestedResults, ::testing::Each(0)) << "another function: it is not busy";
}

}  // namespace
}  // namespace faults
