// SPDX-License-Identifier: MIT
//
// The exported functions of the watchdog timer and the BMC's version.

#include "Talvane.h"
#include "simulator/machine/Machine.h"
#include "support/IpmiTest.h"

namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;

class WatchdogTest : public IpmiTest {};

TEST_F(WatchdogTest, SettingStartsTheCountdown) {
    EXPECT_EQ(SetWatchDogTimer(1, 20000), 0);
    EXPECT_THAT(bmc.RequestTexts(),
                ElementsAre("Set Watchdog Timer 04 01 00 00 C8 00", "Reset Watchdog Timer"));
    EXPECT_TRUE(bmc.Watchdog().running);
}

TEST_F(WatchdogTest, ATimeOutOfRangeFailsAndSendsNothing) {
    EXPECT_EQ(SetWatchDogTimer(1, 9999), -1);
    EXPECT_THAT(bmc.Requests(), SizeIs(0));
    EXPECT_EQ(SetWatchDogTimer(1, 20000), 0) << "not busy";
}

TEST_F(WatchdogTest, TheActionIsNarrowedToAByte) {
    EXPECT_EQ(SetWatchDogTimer(0x102, 20000), 0);
    EXPECT_EQ(bmc.Watchdog().actions, 2);
}

TEST_F(WatchdogTest, ResetStartsTheCountdownOver) {
    ASSERT_EQ(SetWatchDogTimer(1, 20000), 0);
    server.GetMachine().Sleep(15);
    EXPECT_EQ(ResetWatchDogTimer(), 0);
    server.GetMachine().Sleep(15);
    EXPECT_EQ(bmc.WatchdogExpirations(), 0);
    EXPECT_EQ(bmc.WatchdogPresent(), 50u);
}

TEST_F(WatchdogTest, StoppingSetsThreeMinutesWithoutActionAndSendsNoReset) {
    ASSERT_EQ(SetWatchDogTimer(1, 20000), 0);
    bmc.ForgetRequests();
    EXPECT_EQ(StopWatchDogTimer(), 0);
    EXPECT_THAT(bmc.RequestTexts(), ElementsAre("Set Watchdog Timer 04 00 00 00 08 07"));
    EXPECT_FALSE(bmc.Watchdog().running);
    server.GetMachine().Sleep(1000);
    EXPECT_EQ(bmc.WatchdogExpirations(), 0);
}

TEST_F(WatchdogTest, SettingsAndTheTimeLeftAreRead) {
    ASSERT_EQ(SetWatchDogTimer(3, 20000), 0);
    server.GetMachine().Sleep(4);
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

TEST_F(WatchdogTest, FirmwareVersionIsRead) {
    bmc.SetFirmware(1, 0x25);
    unsigned char major = 0;
    unsigned char minor = 0;
    EXPECT_EQ(GetBMCVersion(&major, &minor), 0);
    EXPECT_EQ(major, 1);
    EXPECT_EQ(minor, 25);
    EXPECT_EQ(GetBMCVersion(nullptr, &minor), -1);
    EXPECT_EQ(GetBMCVersion(&major, &minor), 0) << "not busy";
}

int answersWithinRequest[6];

TEST_F(WatchdogTest, InsideAQueryEveryFunctionIsBusy) {
    server.During("ioctl", [] {
        unsigned char byte = 7;
        int number = 7;
        answersWithinRequest[0] = ResetWatchDogTimer();
        answersWithinRequest[1] = StopWatchDogTimer();
        answersWithinRequest[2] = GetBMCVersion(&byte, &byte);
        answersWithinRequest[3] = SetWatchDogTimer(1, 20000);
        answersWithinRequest[4] = GetWatchDogTimer(&byte, &number, &number);
        answersWithinRequest[5] = byte + number;
    });
    EXPECT_EQ(ResetWatchDogTimer(), 0);
    EXPECT_THAT(answersWithinRequest, ElementsAre(1, 1, 1, 1, 1, 14));
    EXPECT_THAT(bmc.Requests(), SizeIs(1));
}

FanInformation fansWithinRequest;

void AskWithinRequest() {
    answersWithinRequest[0] = GetIpmiInfo(TALVANE_FANS, &fansWithinRequest);
}

TEST_F(WatchdogTest, InsideEveryFunctionASensorQueryIsBusy) {
    Add(Fan("F", 0x30), 70);
    unsigned char byte = 0;
    int number = 0;
    const auto queryWithin = [&](auto function) {
        answersWithinRequest[0] = 77;
        server.During("ioctl", AskWithinRequest);
        EXPECT_EQ(function(), 0);
        return answersWithinRequest[0];
    };
    EXPECT_EQ(queryWithin([] { return SetWatchDogTimer(1, 20000); }), 1);
    EXPECT_EQ(queryWithin(ResetWatchDogTimer), 1);
    EXPECT_EQ(queryWithin(StopWatchDogTimer), 1);
    EXPECT_EQ(queryWithin([&] { return GetWatchDogTimer(&byte, &number, &number); }), 1);
    EXPECT_EQ(queryWithin([&] { return GetBMCVersion(&byte, &byte); }), 1);
    AskWithinRequest();
    EXPECT_EQ(answersWithinRequest[0], 0) << "and afterwards it is not";
}

TEST_F(WatchdogTest, InsideTheResetAfterASettingASensorQueryIsBusy) {
    Add(Fan("F", 0x30), 70);
    bmc.Intercept([this](const sim::BmcRequest& request) -> std::optional<sim::Bytes> {
        constexpr std::uint8_t kSetWatchdog = 0x24;
        if (request.command == kSetWatchdog) server.During("ioctl", AskWithinRequest);
        return std::nullopt;
    });
    EXPECT_EQ(SetWatchDogTimer(1, 20000), 0);
    EXPECT_EQ(answersWithinRequest[0], 1);
}

TEST_F(WatchdogTest, ARefusedSettingLeavesSensorQueriesBusyUntilALaterCall) {
    Add(Fan("F", 0x30), 70);
    server.During("ioctl", [] { answersWithinRequest[0] = SetWatchDogTimer(1, 20000); });
    EXPECT_EQ(ResetWatchDogTimer(), 0);
    EXPECT_EQ(answersWithinRequest[0], 1);
    FanInformation fans{};
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 1);
    unsigned char byte = 0;
    EXPECT_EQ(ResetWatchDogTimer(), 0) << "does not look at that flag";
    EXPECT_EQ(StopWatchDogTimer(), 0) << "nor does this";
    EXPECT_EQ(GetBMCVersion(&byte, &byte), 0) << "nor this";
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 1);
    EXPECT_EQ(SetWatchDogTimer(1, 20000), 0);
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 0);
}

TEST_F(WatchdogTest, ARefusedReadingLeavesSensorQueriesBusyUntilALaterCall) {
    Add(Fan("F", 0x30), 70);
    server.During("ioctl", [] {
        unsigned char byte = 0;
        int number = 0;
        answersWithinRequest[0] = GetWatchDogTimer(&byte, &number, &number);
    });
    EXPECT_EQ(ResetWatchDogTimer(), 0);
    EXPECT_EQ(answersWithinRequest[0], 1);
    FanInformation fans{};
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 1);
    EXPECT_EQ(SetWatchDogTimer(1, 1), -1) << "a call that fails clears the flag, too";
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 0);
}

TEST_F(WatchdogTest, SuccessfulReadingEndsTheBusyStateToo) {
    Add(Fan("F", 0x30), 70);
    server.During("ioctl", [] { answersWithinRequest[0] = SetWatchDogTimer(1, 20000); });
    EXPECT_EQ(ResetWatchDogTimer(), 0);
    FanInformation fans{};
    ASSERT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 1);
    unsigned char action = 0;
    int timeOut = 0;
    int present = 0;
    EXPECT_EQ(GetWatchDogTimer(&action, &timeOut, &present), 0);
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 0);
}

}  // namespace
