// SPDX-License-Identifier: MIT
//
// The exported functions of the watchdog timer and the BMC's version.

#include "Talvane.h"
#include "simulator/Machine.h"
#include "support/IpmiTest.h"

namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;

class Watchdog : public IpmiTest {};

TEST_F(Watchdog, SettingItStartsTheCountdown) {
    EXPECT_EQ(SetWatchDogTimer(1, 20000), 0);
    EXPECT_THAT(bmc.requestTexts(),
                ElementsAre("Set Watchdog Timer 04 01 00 00 C8 00", "Reset Watchdog Timer"));
    EXPECT_TRUE(bmc.watchdog().running);
}

TEST_F(Watchdog, ATimeOutOfRangeFailsAndSendsNothing) {
    EXPECT_EQ(SetWatchDogTimer(1, 9999), -1);
    EXPECT_THAT(bmc.requests(), SizeIs(0));
    EXPECT_EQ(SetWatchDogTimer(1, 20000), 0) << "not busy";
}

TEST_F(Watchdog, TheActionIsNarrowedToAByte) {
    EXPECT_EQ(SetWatchDogTimer(0x102, 20000), 0);
    EXPECT_EQ(bmc.watchdog().actions, 2);
}

TEST_F(Watchdog, ResettingItStartsItOver) {
    ASSERT_EQ(SetWatchDogTimer(1, 20000), 0);
    server.machine().sleep(15);
    EXPECT_EQ(ResetWatchDogTimer(), 0);
    server.machine().sleep(15);
    EXPECT_EQ(bmc.watchdogExpirations(), 0);
    EXPECT_EQ(bmc.watchdogPresent(), 50u);
}

TEST_F(Watchdog, StoppingItSetsThreeMinutesWithoutActionAndNoReset) {
    ASSERT_EQ(SetWatchDogTimer(1, 20000), 0);
    bmc.forgetRequests();
    EXPECT_EQ(StopWatchDogTimer(), 0);
    EXPECT_THAT(bmc.requestTexts(), ElementsAre("Set Watchdog Timer 04 00 00 00 08 07"));
    EXPECT_FALSE(bmc.watchdog().running);
    server.machine().sleep(1000);
    EXPECT_EQ(bmc.watchdogExpirations(), 0);
}

TEST_F(Watchdog, ItsSettingsAndWhatIsLeftAreRead) {
    ASSERT_EQ(SetWatchDogTimer(3, 20000), 0);
    server.machine().sleep(4);
    unsigned char action = 0;
    int timeOut = 0;
    int present = 0;
    EXPECT_EQ(GetWatchDogTimer(&action, &timeOut, &present), 0);
    EXPECT_EQ(action, 3);
    EXPECT_EQ(timeOut, 20000);
    EXPECT_EQ(present, 16000);
    EXPECT_EQ(GetWatchDogTimer(nullptr, nullptr, &timeOut), 0) << "null pointers are skipped";
    EXPECT_EQ(timeOut, 16000);
}

TEST_F(Watchdog, TheVersionIsRead) {
    bmc.setFirmware(1, 0x25);
    unsigned char major = 0;
    unsigned char minor = 0;
    EXPECT_EQ(GetBMCVersion(&major, &minor), 0);
    EXPECT_EQ(major, 1);
    EXPECT_EQ(minor, 25);
    EXPECT_EQ(GetBMCVersion(nullptr, &minor), -1);
    EXPECT_EQ(GetBMCVersion(&major, &minor), 0) << "not busy";
}

int nested[6];

TEST_F(Watchdog, InsideAQueryEveryFunctionIsBusy) {
    server.during("ioctl", [] {
        unsigned char byte = 7;
        int number = 7;
        nested[0] = ResetWatchDogTimer();
        nested[1] = StopWatchDogTimer();
        nested[2] = GetBMCVersion(&byte, &byte);
        nested[3] = SetWatchDogTimer(1, 20000);
        nested[4] = GetWatchDogTimer(&byte, &number, &number);
        nested[5] = byte + number;
    });
    EXPECT_EQ(ResetWatchDogTimer(), 0);
    EXPECT_THAT(nested, ElementsAre(1, 1, 1, 1, 1, 14));
    EXPECT_THAT(bmc.requests(), SizeIs(1));
}

TEST_F(Watchdog, ARefusedSettingLeavesSensorQueriesBusyUntilALaterCall) {
    Add(Fan("F", 0x30), 70);
    server.during("ioctl", [] { nested[0] = SetWatchDogTimer(1, 20000); });
    EXPECT_EQ(ResetWatchDogTimer(), 0);
    EXPECT_EQ(nested[0], 1);
    FanInformation fans{};
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 1);
    EXPECT_EQ(ResetWatchDogTimer(), 0) << "does not look at that flag";
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 1);
    EXPECT_EQ(SetWatchDogTimer(1, 20000), 0);
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 0);
}

TEST_F(Watchdog, ARefusedReadingLeavesSensorQueriesBusyUntilALaterCall) {
    Add(Fan("F", 0x30), 70);
    server.during("ioctl", [] {
        unsigned char byte = 0;
        int number = 0;
        nested[0] = GetWatchDogTimer(&byte, &number, &number);
    });
    EXPECT_EQ(ResetWatchDogTimer(), 0);
    EXPECT_EQ(nested[0], 1);
    FanInformation fans{};
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 1);
    EXPECT_EQ(SetWatchDogTimer(1, 1), -1) << "a call that fails clears the flag, too";
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 0);
}

}  // namespace
