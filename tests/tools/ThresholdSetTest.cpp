// SPDX-License-Identifier: MIT
//
// Setting a threshold: what is shown before, what reaches the BMC, what is refused.

#include <gmock/gmock.h>

#include "Talvane.h"
#include "support/IpmiTest.h"
#include "tools/changes/ThresholdChange.h"
#include "tools/library/Limits.h"

namespace tool {
namespace {

using testing::HasSubstr;

constexpr std::uint8_t kSensorCommand = 4;
constexpr std::uint8_t kSetThresholds = 0x26;

class ThresholdSetTest : public IpmiTest {
protected:
    // A fan in front, so that the temperature's place in the repository is 1 and its number 0x10.
    ThresholdSetTest() {
        Add(Fan("FAN1", 0x30).Entity(29).ThresholdMasks(0x3F, 0x03), 70);
        Add(Temperature("CPU Temp", 0x10).Entity(3).ThresholdMasks(0x3F, 0x38), 40);
        bmc.SetThresholds(0x10, {0x3F, {3, 2, 1, 80, 90, 100}});
        bmc.SetThresholds(0x30, {0x03, {20, 10, 0, 0, 0, 0}});
    }

    static Order Upper(double critical, bool confirmed = true) {
        return {.threshold = {3, kTemperature, THRESHOLD_UPPER_CRITICAL, critical},
                .watchdog = {},
                .confirmed = confirmed};
    }

    std::size_t Writes() const { return bmc.Count(kSensorCommand, kSetThresholds); }
};

TEST_F(ThresholdSetTest, ShowsEachThresholdAndWritesNothingWithoutConfirmation) {
    bmc.SetThresholds(1, {0x3F, {3, 2, 1, 70, 90, 100}});
    const Outcome outcome = SetThreshold(Upper(95, false));
    EXPECT_EQ(Writes(), 0U);
    EXPECT_EQ(outcome.problem, "nothing was written; --yes writes this");
    EXPECT_THAT(
        outcome.text,
        HasSubstr(
            "Thresholds to be written\n"
            "------------------------\n"
            "  Sensor           Threshold                     Now     Written  Remark\n"
            "  CPU Temp (0x10)  lower non-recoverable    1 (0x01)           -  cannot be set\n"
            "  CPU Temp (0x10)  lower critical           2 (0x02)           -  cannot be set\n"
            "  CPU Temp (0x10)  lower non-critical       3 (0x03)           -  cannot be set\n"
            "  CPU Temp (0x10)  upper non-critical      80 (0x50)   70 (0x46)  changes with it\n"
            "  CPU Temp (0x10)  upper critical          90 (0x5A)   95 (0x5F)  asked for\n"
            "  CPU Temp (0x10)  upper non-recoverable  100 (0x64)  100 (0x64)  -\n"));
    EXPECT_EQ(outcome.json["done"], false);
    EXPECT_EQ(outcome.json["sensors"][0]["now"]["upperCritical"], 90.0);
    EXPECT_EQ(outcome.json["sensors"][0]["written"]["upperNonCritical"], 70.0);
    EXPECT_EQ(outcome.json["sensors"][0]["written"]["lowerCritical"], nullptr);
}

TEST_F(ThresholdSetTest, WritesExactlyWhatItHasShown) {
    bmc.SetThresholds(1, {0x3F, {3, 2, 1, 70, 90, 93}});
    const Outcome outcome = SetThreshold(Upper(95));
    EXPECT_EQ(outcome.problem, "");
    EXPECT_EQ(Writes(), 1U);
    EXPECT_THAT(bmc.Thresholds(0x10).values, testing::ElementsAre(3, 2, 1, 70, 95, 96));
    EXPECT_THAT(outcome.text, HasSubstr("Thresholds written\n"));
    EXPECT_EQ(outcome.json["sensors"][0]["written"]["upperNonCritical"], 70.0);
    EXPECT_EQ(outcome.json["sensors"][0]["written"]["upperNonRecoverable"], 96.0);
    EXPECT_EQ(outcome.json["done"], true);
}

TEST_F(ThresholdSetTest, MarksThresholdsThatCannotBeRead) {
    bmc.SetThresholds(0x10, {0x30, {0, 0, 0, 80, 90, 100}});
    EXPECT_THAT(SetThreshold(Upper(95, false)).text,
                HasSubstr("upper non-critical              -   0 (0x00)  cannot be read\n"));
}

TEST_F(ThresholdSetTest, DoesNotMissAThresholdThatCannotBeRead) {
    constexpr std::uint8_t kGetThresholds = 0x27;
    bmc.SetThresholds(1, {0x3F, {3, 2, 1, 70, 90, 100}});
    bmc.Intercept([](const sim::BmcRequest& request) -> std::optional<sim::Bytes> {
        if (request.command != kGetThresholds || request.data != sim::Bytes{0x10})
            return std::nullopt;
        return sim::Bytes{0x30, 0, 0, 0, 0, 95, 100};
    });
    EXPECT_EQ(SetThreshold(Upper(95)).problem, "");
    EXPECT_EQ(bmc.Thresholds(0x10).values[THRESHOLD_UPPER_WARNING], 70);
}

TEST_F(ThresholdSetTest, RefusesAThresholdThatTheSensorDoesNotLetBeSet) {
    Order order = Upper(5);
    order.threshold.which = THRESHOLD_LOWER_CRITICAL;
    EXPECT_EQ(SetThreshold(order).problem,
              "CPU Temp (0x10) does not let its lower critical threshold be set; nothing was "
              "written");
    EXPECT_EQ(Writes(), 0U);
}

TEST_F(ThresholdSetTest, RefusesAValueThatTheSensorCannotHoldAndProposesNoOther) {
    for (const double value : {300.0, -5.0, -0.001}) {
        const Outcome outcome = SetThreshold(Upper(value, false));
        EXPECT_EQ(outcome.problem, "CPU Temp (0x10) cannot hold " + NumberText(value) +
                                       ": its values are from 0 to 255; nothing was written");
        EXPECT_EQ(outcome.text, "");
        EXPECT_EQ(outcome.json["sensors"], Json::array());
        EXPECT_NE(SetThreshold(Upper(value)).problem, "");
    }
    EXPECT_EQ(Writes(), 0U);
    EXPECT_EQ(SetThreshold(Upper(95.9)).problem, "") << "cut to the step below";
    EXPECT_EQ(bmc.Thresholds(0x10).values[THRESHOLD_UPPER_CRITICAL], 95);
}

TEST_F(ThresholdSetTest, TakesTheLowestAndTheHighestValueOfTheSensor) {
    EXPECT_EQ(SetThreshold(Upper(0)).problem, "");
    EXPECT_EQ(bmc.Thresholds(0x10).values[THRESHOLD_UPPER_CRITICAL], 0);
    EXPECT_EQ(SetThreshold(Upper(255)).problem, "");
    EXPECT_EQ(bmc.Thresholds(0x10).values[THRESHOLD_UPPER_CRITICAL], 255);
}

TEST_F(ThresholdSetTest, NamesEachOfSeveralFans) {
    Add(Fan("FAN2", 0x31).Entity(29).ThresholdMasks(0x3F, 0x03), 70);
    const Order order{
        .threshold = {29, kFan, THRESHOLD_LOWER_CRITICAL, 600}, .watchdog = {}, .confirmed = true};
    const Outcome outcome = SetThreshold(order);
    EXPECT_EQ(outcome.problem, "");
    EXPECT_EQ(outcome.json["sensors"][0]["name"], "FAN1 (0x30)");
    EXPECT_EQ(outcome.json["sensors"][1]["name"], "FAN2 (0x31)");
    EXPECT_EQ(bmc.Thresholds(0x31).values[THRESHOLD_LOWER_CRITICAL], 12);
}

TEST_F(ThresholdSetTest, NamesSensorsByTheirNumberWhoseNameTheLibraryDoesNotKeep) {
    constexpr std::uint8_t kCurrent = 3;
    Add(Temperature("Amps", 0x40).Kind(kCurrent).Entity(7).ThresholdMasks(0x3F, 0x38), 20);
    Add(Temperature("", 0x41).Entity(7).ThresholdMasks(0x3F, 0x38), 20);
    Order order = Upper(40, false);
    order.threshold.entity = 7;
    EXPECT_EQ(SetThreshold(order).json["sensors"][0]["name"], "sensor 0x41") << "without a name";
    order.threshold.type = kCurrent;
    EXPECT_EQ(SetThreshold(order).json["sensors"][0]["name"], "sensor 0x40") << "a current";
}

TEST_F(ThresholdSetTest, RefusesSensorsWithSignedValues) {
    Add(Temperature("Inlet", 0x20).Entity(7).Unit1(0x80).ThresholdMasks(0x3F, 0x38), 20);
    Order order = Upper(40);
    order.threshold.entity = 7;
    EXPECT_EQ(SetThreshold(order).problem,
              "Inlet (0x20) counts its values with a sign, which the library does not write; "
              "nothing was written");
    EXPECT_EQ(Writes(), 0U);
}

TEST_F(ThresholdSetTest, RefusesAllSensorsWhenOneCannotBeSet) {
    Add(Temperature("CPU2 Temp", 0x11).Entity(3).ThresholdMasks(0x3F, 0x08), 40);
    EXPECT_THAT(SetThreshold(Upper(95)).problem, HasSubstr("CPU2 Temp (0x11) does not let"));
    EXPECT_EQ(Writes(), 0U);
}

TEST_F(ThresholdSetTest, SaysWhenNoSensorMatches) {
    Order order = Upper(95);
    order.threshold.entity = 9;
    const Outcome outcome = SetThreshold(order);
    EXPECT_EQ(outcome.problem,
              "the BMC has no sensor of the entity processor module (9) and the type "
              "temperature (1)");
    EXPECT_EQ(outcome.text, "");
    EXPECT_EQ(Writes(), 0U);
}

TEST_F(ThresholdSetTest, ReportsThresholdsThatTheBmcDidNotTake) {
    bmc.Intercept([](const sim::BmcRequest& request) -> std::optional<sim::Bytes> {
        if (request.command == kSetThresholds) return sim::Bytes{};
        return std::nullopt;
    });
    EXPECT_EQ(SetThreshold(Upper(95)).problem, "CPU Temp (0x10) did not take the thresholds");
}

TEST_F(ThresholdSetTest, FindsNoSensorInARepositoryThatTheBmcDoesNotShow) {
    bmc.Inject("Get SDR Repository Info", sim::BmcFault::Kind::kRefused, 0xC0);
    EXPECT_EQ(SetThreshold(Upper(95)).problem,
              "the BMC has no sensor of the entity processor (3) and the type temperature (1)");
    EXPECT_EQ(Writes(), 0U);
}

TEST_F(ThresholdSetTest, ReportsAWriteThatTheLibraryCannotMake) {
    EXPECT_EQ(SetThreshold(Upper(95, false)).problem, "nothing was written; --yes writes this");
    bmc.Inject("Get SDR Repository Info", sim::BmcFault::Kind::kRefused, 0xC0);
    EXPECT_EQ(SetThreshold(Upper(95)).problem, "the library could not write the thresholds");
    EXPECT_EQ(Writes(), 0U);
}

TEST(ThresholdSetWithoutBmcTest, NamesTheMissingDevice) {
    const sim::SimulatedServer server;
    const Outcome outcome = SetThreshold({});
    EXPECT_THAT(outcome.problem, HasSubstr("cannot open /dev/ipmi"));
    EXPECT_EQ(outcome.json, nullptr);
}

}  // namespace
}  // namespace tool
