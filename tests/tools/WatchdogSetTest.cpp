// SPDX-License-Identifier: MIT
//
// Changes to the watchdog: what takes a confirmation, what reaches the BMC.

#include <gmock/gmock.h>

#include "simulator/machine/Machine.h"
#include "support/IpmiTest.h"
#include "tools/changes/WatchdogChange.h"
#include "tools/records/Watchdog.h"

namespace tool {
namespace {

using testing::HasSubstr;

constexpr int kHardReset = 1;
constexpr std::uint8_t kSetTimer = 0x24;

class WatchdogSetTest : public IpmiTest {
protected:
    static Order With(int action, int timeout, bool confirmed) {
        return {.threshold = {}, .watchdog = {action, timeout}, .confirmed = confirmed};
    }
};

TEST_F(WatchdogSetTest, AsksForConfirmationOfAnActionAndLeavesTheTimerAlone) {
    const Outcome outcome = SetWatchdog(With(kHardReset, 30000, false));
    EXPECT_EQ(outcome.problem,
              "this would start a timer that does a hard-reset of this machine after 30.0 s; "
              "nothing was changed, --yes does it");
    EXPECT_FALSE(bmc.Watchdog().initialised);
    EXPECT_THAT(outcome.text, HasSubstr("  Action   none\n"));
}

TEST_F(WatchdogSetTest, SetsAndStartsTheTimerWhenConfirmed) {
    const Outcome outcome = SetWatchdog(With(kHardReset, 30550, true));
    EXPECT_EQ(outcome.problem, "");
    EXPECT_TRUE(bmc.Watchdog().running);
    EXPECT_EQ(bmc.Watchdog().actions, kHardReset);
    EXPECT_EQ(bmc.Watchdog().initial, 305U) << "in tenths of a second, cut";
    EXPECT_EQ(outcome.json["timeout"]["value"], 30.5);
}

TEST_F(WatchdogSetTest, NeedsNoConfirmationWithoutAnAction) {
    EXPECT_EQ(SetWatchdog(With(kNoAction, 30000, false)).problem, "");
    EXPECT_TRUE(bmc.Watchdog().running);
    EXPECT_EQ(bmc.Watchdog().actions, 0);
}

TEST_F(WatchdogSetTest, StartsTheTimerOverOnlyWhenConfirmed) {
    ASSERT_EQ(SetWatchdog(With(kHardReset, 30000, true)).problem, "");
    (void)server.GetMachine().Sleep(5);
    EXPECT_EQ(bmc.WatchdogPresent(), 250U);
    EXPECT_EQ(ResetWatchdog(With(0, 0, false)).problem,
              "this would start the timer over, whose action is hard-reset; nothing was changed, "
              "--yes does it");
    EXPECT_EQ(bmc.WatchdogPresent(), 250U);
    EXPECT_EQ(ResetWatchdog(With(0, 0, true)).problem, "");
    EXPECT_EQ(bmc.WatchdogPresent(), 300U);
}

TEST_F(WatchdogSetTest, DoesNotStartATimerThatWasNeverSet) {
    EXPECT_EQ(ResetWatchdog(With(0, 0, true)).problem,
              "the watchdog has not been set: nothing to start");
}

TEST_F(WatchdogSetTest, StopsTheTimerWithoutConfirmation) {
    ASSERT_EQ(SetWatchdog(With(kHardReset, 30000, true)).problem, "");
    EXPECT_EQ(StopWatchdog({}).problem, "");
    EXPECT_FALSE(bmc.Watchdog().running);
}

TEST_F(WatchdogSetTest, ReportsATimerThatCountsOnAfterStop) {
    bmc.MakeWatchdogUnstoppable();
    ASSERT_EQ(SetWatchdog(With(kHardReset, 30000, true)).problem, "");
    const Outcome outcome = StopWatchdog({});
    EXPECT_EQ(outcome.problem,
              "the BMC did not stop the timer: it counts on, though without an action");
    EXPECT_THAT(outcome.text, HasSubstr("  Left     179.0 s\n"));
}

TEST_F(WatchdogSetTest, SaysWhenTheBmcRefusesToStop) {
    ASSERT_EQ(SetWatchdog(With(kHardReset, 30000, true)).problem, "");
    bmc.Inject("Set Watchdog Timer", sim::BmcFault::Kind::kRefused, 0xD5);
    const Outcome outcome = StopWatchdog({});
    EXPECT_EQ(outcome.problem, "the BMC did not take the watchdog's settings");
    EXPECT_THAT(outcome.text, HasSubstr("  Action   hard-reset\n"));
}

TEST_F(WatchdogSetTest, ReportsSettingsThatTheBmcDidNotTake) {
    bmc.Intercept([](const sim::BmcRequest& request) -> std::optional<sim::Bytes> {
        if (request.command == kSetTimer) return sim::Bytes{};
        return std::nullopt;
    });
    EXPECT_EQ(SetWatchdog(With(kNoAction, 30000, true)).problem,
              "the BMC did not take the watchdog's settings");
}

TEST(WatchdogSetWithoutBmcTest, NamesTheMissingDevice) {
    const sim::SimulatedServer server;
    for (const auto change : {SetWatchdog, ResetWatchdog, StopWatchdog})
        EXPECT_THAT(change({}).problem, HasSubstr("cannot open /dev/ipmi"));
}

}  // namespace
}  // namespace tool
