// SPDX-License-Identifier: MIT
//
// The controller's own commands: watchdog, device ID, channels, users, LAN.

#include "simulator/machine/Machine.h"
#include "support/IpmiTest.h"

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::SizeIs;

class ControllerTest : public IpmiTest {};

TEST_F(ControllerTest, TheWatchdogIsSetInTenthsOfASecond) {
    EXPECT_EQ(Support().SetWatchDogTimer(1, 10000), 0);
    EXPECT_EQ(Support().SetWatchDogTimer(1, 999000), 0);
    EXPECT_EQ(Support().SetWatchDogTimer(1, 10099), 0);
    EXPECT_THAT(bmc.RequestTexts(), ElementsAre("Set Watchdog Timer 04 01 00 00 64 00",
                                                "Set Watchdog Timer 04 01 00 00 06 27",
                                                "Set Watchdog Timer 04 01 00 00 64 00"));
    EXPECT_EQ(bmc.Requests()[0].timeout, 3000u);
}

TEST_F(ControllerTest, TimesOutsideOfTheRangeAreRefusedWithoutARequest) {
    for (const int timeOut : {9999, 999001, 0, -1, -2147483647 - 1, 2147483647})
        EXPECT_EQ(Support().SetWatchDogTimer(1, timeOut), -1) << timeOut;
    EXPECT_THAT(bmc.Requests(), SizeIs(0));
}

TEST_F(ControllerTest, OnlyTheLowThreeBitsOfAnActionAreSent) {
    EXPECT_EQ(Support().SetWatchDogTimer(0x0B, 10000), 0);
    EXPECT_EQ(bmc.RequestTexts()[0], "Set Watchdog Timer 04 03 00 00 64 00");
}

TEST_F(ControllerTest, SettingStopsTheWatchdogAndResettingStartsIt) {
    ASSERT_EQ(Support().SetWatchDogTimer(1, 20000), 0);
    EXPECT_FALSE(bmc.Watchdog().running);
    ASSERT_EQ(Support().ResetWatchDogTimer(), 0);
    EXPECT_TRUE(bmc.Watchdog().running);
    server.GetMachine().Sleep(5);
    int action = 0;
    int timeOut = 0;
    int present = 0;
    EXPECT_EQ(Support().GetWatchDogTimer(action, timeOut, present), 0);
    EXPECT_EQ(action, 1);
    EXPECT_EQ(timeOut, 20000);
    EXPECT_EQ(present, 15000);
    server.GetMachine().Sleep(15);
    EXPECT_EQ(bmc.WatchdogExpirations(), 1);
    ASSERT_EQ(Support().SetWatchDogTimer(1, 20000), 0);
    EXPECT_FALSE(bmc.Watchdog().running);
}

TEST_F(ControllerTest, CountdownsHaveSixteenBits) {
    bmc.Intercept([](const sim::BmcRequest&) {
        return sim::Bytes{0x44, 0xFA, 0, 0, 0x10, 0x27, 0xFF, 0xFF};
    });
    int action = 0;
    int timeOut = 0;
    int present = 0;
    EXPECT_EQ(Support().GetWatchDogTimer(action, timeOut, present), 0);
    EXPECT_EQ(action, 2) << "the low three bits";
    EXPECT_EQ(timeOut, 1000000);
    EXPECT_EQ(present, 6553500);
}

TEST_F(ControllerTest, TheFirmwareRevisionIsTwoNumbers) {
    bmc.SetFirmware(0x81, 0x25);
    unsigned char major = 0;
    unsigned char minor = 0;
    EXPECT_EQ(Support().GetDeviceID(&major, &minor), 0);
    EXPECT_EQ(major, 1);
    EXPECT_EQ(minor, 25);
    EXPECT_THAT(bmc.RequestTexts(), ElementsAre("Get Device ID"));
    bmc.SetFirmware(0xFF, 0x1F);
    EXPECT_EQ(Support().GetDeviceID(&major, &minor), 0);
    EXPECT_EQ(major, 0x7F);
    EXPECT_EQ(minor, 25) << "10 and 15: the digits are not checked";
    EXPECT_EQ(Support().GetDeviceID(nullptr, &minor), -1);
    EXPECT_EQ(Support().GetDeviceID(&major, nullptr), -1);
    EXPECT_THAT(bmc.Requests(), SizeIs(2));
}

TEST_F(ControllerTest, AChannelIsDescribedUnderTheNumberThatWasAskedFor) {
    bmc.Intercept([](const sim::BmcRequest&) { return sim::Bytes{9, 0xF4, 0xE1}; });
    ChannelInfo channel{};
    EXPECT_EQ(Support().GetChannelInfo(3, &channel), 0);
    EXPECT_EQ(channel.channelNumber, 3);
    EXPECT_EQ(channel.channelMediatype, 0xF4) << "the whole byte";
    EXPECT_EQ(channel.channelProtocoltype, 0xE1);
    EXPECT_THAT(bmc.RequestTexts(), ElementsAre("Get Channel Info 03"));
    EXPECT_EQ(Support().GetChannelInfo(3, nullptr), -1);
    EXPECT_EQ(Support().GetLANChannelInfo(nullptr), -1);
    EXPECT_THAT(bmc.Requests(), SizeIs(1));
}

TEST_F(ControllerTest, TheLanChannelIsLookedForUpToTheFirst) {
    bmc.SetChannel(3, {IPMIbase::LAN_802_3, 1});
    ChannelInfo channel{};
    EXPECT_EQ(Support().GetLANChannelInfo(&channel), 0);
    EXPECT_EQ(channel.channelNumber, 3);
    EXPECT_EQ(channel.channelMediatype, 4);
    EXPECT_THAT(bmc.RequestTexts(),
                ElementsAre("Get Channel Info 01", "Get Channel Info 02", "Get Channel Info 03"));
}

TEST_F(ControllerTest, ALanChannelIsOneWhoseWholeMediumByteSaysSo) {
    bmc.SetChannel(2, {0x84, 1});
    bmc.SetChannel(5, {4, 1});
    ChannelInfo channel{};
    EXPECT_EQ(Support().GetLANChannelInfo(&channel), 0);
    EXPECT_EQ(channel.channelNumber, 5);
}

TEST_F(ControllerTest, WithoutALanChannelTheSeventhIsTheAnswer) {
    bmc.SetChannel(7, {5, 2});
    ChannelInfo channel{};
    EXPECT_EQ(Support().GetLANChannelInfo(&channel), 0);
    EXPECT_EQ(channel.channelNumber, 7);
    EXPECT_EQ(channel.channelMediatype, 5);
    EXPECT_THAT(bmc.Requests(), SizeIs(7));
}

TEST_F(ControllerTest, AUserIsSetWithoutAPasswordOnly) {
    EXPECT_EQ(Support().SetUserInfo(2, "admin", "secret"), -1);
    EXPECT_EQ(Support().SetUserInfo(2, "admin", ""), -1);
    EXPECT_EQ(Support().SetUserInfo(2, nullptr, nullptr), -1);
    EXPECT_THAT(bmc.Requests(), SizeIs(0));
    EXPECT_EQ(Support().SetUserInfo(2, "admin", nullptr), 0);
    EXPECT_THAT(
        bmc.RequestTexts(),
        ElementsAre("Get Channel Info 02 61 64 6D 69 6E 00 00 00 00 00 00 00 00 00 00 00",
                    "Set User Password 02 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"));
    EXPECT_EQ(Support().request.data, nullptr);
}

TEST_F(ControllerTest, AUserNameHasSixteenCharactersAndNoTerminator) {
    ASSERT_EQ(Support().SetUserInfo(3, "abcdefghijklmnopq", nullptr), 0);
    EXPECT_EQ(bmc.RequestTexts()[0],
              "Get Channel Info 03 61 62 63 64 65 66 67 68 69 6A 6B 6C 6D 6E 6F 70");
}

TEST_F(ControllerTest, ALanChannelIsSetInTwelveSteps) {
    const LANParameter lan{1, {192, 168, 0, 7}, {0, 1, 2, 3, 4, 5}, {255, 255, 255, 0}};
    EXPECT_EQ(Support().SetLANParameter(lan), 0);
    const std::string set = "Set LAN Configuration Parameters 01 ";
    EXPECT_THAT(bmc.RequestTexts(),
                ElementsAre(set + "00 01", set + "03 C0 A8 00 07", set + "04 03",
                            set + "05 00 01 02 03 04 05", set + "06 FF FF FF 00",
                            set + "07 40 40 10", set + "08 6F 02", set + "09 98 02", set + "0A 01",
                            set + "0B 04", set + "00 02", set + "00 00"));
    EXPECT_EQ(bmc.Requests()[0].netFn, 0x0C);
    EXPECT_EQ(bmc.Lan().at({1, 3}), (sim::Bytes{192, 168, 0, 7}));
    EXPECT_EQ(Support().request.rsSa, 0x20);
}

TEST_F(ControllerTest, AnySubnetMaskGoesOutByteByByte) {
    LANParameter lan{};
    for (int i = 0; i < 4; ++i) lan.SubnetMask[i] = static_cast<unsigned char>(0xA0 + i);
    EXPECT_EQ(Support().SetLANParameter(lan), 0);
    EXPECT_THAT(bmc.RequestTexts(), Contains("Set LAN Configuration Parameters 00 06 A0 A1 A2 A3"));
}

TEST_F(ControllerTest, TheNumberOfALanChannelGoesOutAsItStands) {
    LANParameter lan{};
    lan.channelNumber = 0xFE;
    EXPECT_EQ(Support().SetLANParameter(lan), 0);
    for (const sim::BmcRequest& request : bmc.Requests()) EXPECT_EQ(request.data[0], 0xFE);
}

TEST_F(ControllerTest, EveryCommandGoesToTheControllerOnThePublicBus) {
    int number = 0;
    unsigned char byte = 0;
    ChannelInfo channel{};
    const auto ask = [&](auto command) {
        Support().request.busType = Sensors().request.busType = 7;
        Support().request.rsLun = Sensors().request.rsLun = 7;
        bmc.ForgetRequests();
        EXPECT_EQ(command(Support()), 0);
        for (const sim::BmcRequest& request : bmc.Requests()) {
            EXPECT_EQ(request.bus, 0) << request.Text();
            EXPECT_EQ(request.lun, 0) << request.Text();
        }
        return bmc.Requests().size();
    };
    EXPECT_EQ(ask([](IPMIsupport& s) { return s.SetWatchDogTimer(1, 10000); }), 1u);
    EXPECT_EQ(ask([&](IPMIsupport& s) { return s.GetWatchDogTimer(number, number, number); }), 1u);
    EXPECT_EQ(ask([](IPMIsupport& s) { return s.ResetWatchDogTimer(); }), 1u);
    EXPECT_EQ(ask([&](IPMIsupport& s) { return s.GetDeviceID(&byte, &byte); }), 1u);
    EXPECT_EQ(ask([&](IPMIsupport& s) { return s.GetChannelInfo(1, &channel); }), 1u);
    EXPECT_EQ(ask([](IPMIsupport& s) { return s.SetUserInfo(2, "admin", nullptr); }), 2u);
    EXPECT_EQ(ask([](IPMIsupport& s) { return s.SetLANParameter({}); }), 12u);
}

TEST_F(ControllerTest, WithoutAControllerEveryCommandFails) {
    Support();
    InitOK = 0;
    int number = 0;
    unsigned char byte = 0;
    ChannelInfo channel{};
    EXPECT_EQ(Support().SetWatchDogTimer(1, 10000), -1);
    EXPECT_EQ(Support().GetWatchDogTimer(number, number, number), -1);
    EXPECT_EQ(Support().ResetWatchDogTimer(), -1);
    EXPECT_EQ(Support().GetDeviceID(&byte, &byte), -1);
    EXPECT_EQ(Support().GetChannelInfo(1, &channel), -1);
    EXPECT_EQ(Support().GetLANChannelInfo(&channel), -1);
    EXPECT_EQ(Support().SetUserInfo(1, "a", nullptr), -1);
    EXPECT_EQ(Support().SetLANParameter({}), -1);
    EXPECT_THAT(bmc.Requests(), SizeIs(0));
}

TEST_F(ControllerTest, ATransportFailureReadsAsZeros) {
    Support();
    server.Fail("ioctl", 1);
    int action = 7;
    int timeOut = 7;
    int present = 7;
    EXPECT_EQ(Support().GetWatchDogTimer(action, timeOut, present), 0);
    EXPECT_EQ(action, 0);
    EXPECT_EQ(timeOut, 0);
    EXPECT_EQ(present, 0);
}

TEST_F(ControllerTest, EnumeratorsAreWireValues) {
    EXPECT_EQ(IPMIbase::get_device_id, 1);
    EXPECT_EQ(IPMIbase::clear_SEL, 71);
    EXPECT_EQ(IPMIbase::set_aux_log_status, 91);
    EXPECT_EQ(IPMIsupport::Set_LAN_parameter, 1);
    EXPECT_EQ(IPMIsupport::Get_channel_info, 66);
    EXPECT_EQ(IPMIsupport::TRASPORT_CMD, 12);
    EXPECT_EQ(IPMIbase::OEM_CMD, 48);
}

}  // namespace
