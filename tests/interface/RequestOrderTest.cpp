// SPDX-License-Identifier: MIT
//
// Which requests the repository walk and the records make, in which order, and which responder the
// request record names.

#include "Talvane.h"
#include "support/IpmiTest.h"

namespace {

using ::testing::ElementsAre;

class RequestOrderTest : public IpmiTest {
protected:
    // The requests of a second query, when the repository has been read.
    std::vector<std::string> RequestsOf(unsigned long command, void* record) {
        EXPECT_EQ(GetIpmiInfo(command, record), 0);
        bmc.ForgetRequests();
        EXPECT_EQ(GetIpmiInfo(command, record), 0);
        return bmc.RequestTexts();
    }
    FanInformation fans{};
    VoltageInformation voltages{};
    TemperatureInformation temperatures{};
};

TEST_F(RequestOrderTest, AFanCostsItsReadingTheDeviceIdAndItsState) {
    Add(Fan("F1", 0x30), 70);
    EXPECT_THAT(RequestsOf(TALVANE_FANS, &fans),
                ElementsAre("Get Sensor Reading 30", "Get Device ID", "Get Sensor Reading 30"));
}

TEST_F(RequestOrderTest, AnAvailabilityFanCostsItsStateBeforeTheDeviceIdToo) {
    Add(Fan("F1", 0x30).Event(10), 70);
    bmc.SetStates(0x30, 0x01);
    EXPECT_THAT(RequestsOf(TALVANE_FANS, &fans),
                ElementsAre("Get Sensor Reading 30", "Get Sensor Reading 30", "Get Device ID",
                            "Get Sensor Reading 30"));
}

TEST_F(RequestOrderTest, AFanWithoutAUnitDoesNotCostTheDeviceId) {
    Add(Fan("F1", 0x30).Unit(0).Limits(100, 0), 70);
    EXPECT_THAT(RequestsOf(TALVANE_FANS, &fans),
                ElementsAre("Get Sensor Reading 30", "Get Sensor Reading 30"));
}

TEST_F(RequestOrderTest, VoltagesAndTemperaturesCostTheirReadingAndState) {
    Add(Voltage("V1", 0x20), 165);
    Add(Voltage("V2", 0x21), 165);
    Add(Temperature("T1", 0x10), 40);
    EXPECT_THAT(RequestsOf(TALVANE_VOLTAGES, &voltages),
                ElementsAre("Get Sensor Reading 20", "Get Sensor Reading 20",
                            "Get Sensor Reading 21", "Get Sensor Reading 21"));
    EXPECT_THAT(RequestsOf(TALVANE_TEMPERATURES, &temperatures),
                ElementsAre("Get Sensor Reading 10", "Get Sensor Reading 10"));
}

TEST_F(RequestOrderTest, TheWalkReadsARecordTheStateOfASpecificSensorAndThresholds) {
    Add(Temperature("T1", 0x10), 40);
    Add(Fan("F1", 0x30).Event(0x6F), 70);
    Add(Temperature("T2", 0x11), 40);
    Add(Temperature("Compact", 0x50).Byte(3, 2), 0);
    (void)Loaded();
    EXPECT_THAT(bmc.RequestTexts(),
                ElementsAre("Get SDR Repository Info", "Get SDR 00 00 00 00 00 FF",
                            "Get Sensor Thresholds 00", "Get SDR 00 00 01 00 00 FF",
                            "Get Sensor Reading 30", "Get Sensor Thresholds 01",
                            "Get SDR 00 00 02 00 00 FF", "Get Sensor Thresholds 02",
                            "Get SDR 00 00 03 00 00 FF"));
}

TEST_F(RequestOrderTest, CommandsOfTheControllerItselfNameItAsResponder) {
    constexpr unsigned char kBmc = 0x20;
    int number = 0;
    unsigned char byte = 0;
    ChannelInfo channel{};
    const auto named = [this] {
        const unsigned char responder = Support().request.rsSa;
        Support().request.rsSa = 0;
        return responder;
    };
    (void)Support().SetWatchDogTimer(1, 10000);
    EXPECT_EQ(named(), kBmc) << "set watchdog";
    (void)Support().GetWatchDogTimer(number, number, number);
    EXPECT_EQ(named(), kBmc) << "get watchdog";
    (void)Support().ResetWatchDogTimer();
    EXPECT_EQ(named(), kBmc) << "reset watchdog";
    (void)Support().GetChannelInfo(1, &channel);
    EXPECT_EQ(named(), kBmc) << "channel";
    (void)Support().SetUserInfo(2, "admin", nullptr);
    EXPECT_EQ(named(), kBmc) << "user";
    (void)Support().SetLANParameter({});
    EXPECT_EQ(named(), kBmc) << "LAN";
    (void)Sensors().GetDeviceID(&byte, &byte);
    EXPECT_EQ(Sensors().request.rsSa, kBmc);
}

TEST_F(RequestOrderTest, CommandsOfSensorsNameAnyResponder) {
    constexpr unsigned char kAny = 0xFF;
    int number = 0;
    unsigned char byte = 0;
    SensorThresholdInfoRaw raw{};
    SensorThresholdInfoConverted converted{};
    const auto named = [this] {
        const unsigned char responder = Sensors().request.rsSa;
        Sensors().request.rsSa = 0;
        return responder;
    };
    (void)Sensors().GetSDRRepositoryInfo(number, number);
    EXPECT_EQ(named(), kAny) << "repository";
    (void)Sensors().GetSDR(0, 0, &byte, 1);
    EXPECT_EQ(named(), kAny) << "record";
    (void)Sensors().ReadSensor(1, byte);
    EXPECT_EQ(named(), kAny) << "reading";
    (void)Sensors().GetSensorStatus(1, 10, byte);
    EXPECT_EQ(named(), kAny) << "state";
    (void)Sensors().GetSensorThreshold(1, {}, raw, converted);
    EXPECT_EQ(named(), kAny) << "thresholds";
    (void)Sensors().SetSensorThreshold(1, raw);
    EXPECT_EQ(named(), kAny) << "setting thresholds";
}

}  // namespace
