// SPDX-License-Identifier: MIT
//
// What the table of sensors says beyond the library's texts.

#include <gtest/gtest.h>

#include "NoValue.h"
#include "TextSearch.h"
#include "tools/records/LibrarySensors.h"
#include "tools/records/Thresholds.h"

namespace tool {
namespace {

SensorState Read(const std::string& reading, const Limits& limits) {
    SensorState sensor{};
    sensor.name = "CPU Temp";
    sensor.entity = 3;
    sensor.reading = reading;
    sensor.limits = limits;
    return sensor;
}

const Limits kUpper = {kNoValue, kNoValue, kNoValue, 80.0, 90.0, kNoValue};

TEST(LimitStateTest, NamesTheLimitThatTheReadingHasReached) {
    EXPECT_EQ(LimitState(Read("79.00degree C", kUpper)), "ok");
    EXPECT_EQ(LimitState(Read("80.00degree C", kUpper)), "upper non-critical");
    EXPECT_EQ(LimitState(Read("300.00degree C", kUpper)), "upper critical");
}

TEST(LimitStateTest, IsEmptyWithoutAValidReadingOrAComparableLimit) {
    EXPECT_EQ(LimitState(Read("Unknown", kUpper)), "");
    EXPECT_EQ(LimitState(Read("95.00degree C", Limits{})), "");
    EXPECT_EQ(LimitState(Read("95%", kUpper)), "") << "the limits are no percentages";
    SensorState withSign = Read("95.00degree C", kUpper);
    withSign.isSigned = true;
    EXPECT_EQ(LimitState(withSign), "");
    SensorState unavailable = Read("95.00degree C", kUpper);
    unavailable.isUnavailable = true;
    EXPECT_EQ(LimitState(unavailable), "");
}

TEST(SensorTextTest, IsOneAlignedTable) {
    SensorState discrete = Read("Unknown", {});
    discrete.name = "Door";
    discrete.state = "Device Enabled";
    SensorState fan = Read("3500RPM", {1000.0, 500.0, kNoValue, kNoValue, kNoValue, kNoValue});
    fan.name = "FAN1";
    fan.entity = 29;
    const LibrarySensors sensors{
        4, {1, {Read("81.00degree C", kUpper)}}, {1, {discrete}}, {1, {fan}}};
    EXPECT_EQ(ToText(sensors),
              "Sensors as agents see them\n"
              "--------------------------\n"
              "  Sensor    Kind         Entity            Reading  State               L NR  L CR  "
              "L NC  U NC  U CR  U NR\n"
              "  CPU Temp  temperature  processor  81.00 degree C  upper non-critical     -     -  "
              "   -    80    90     -\n"
              "  Door      voltage      processor         Unknown  Device Enabled         -     -  "
              "   -     -     -     -\n"
              "  FAN1      fan          fan              3500 RPM  ok                     -   500  "
              "1000     -     -     -\n"
              "\n"
              "  L lower, U upper; NR non-recoverable, CR critical, NC non-critical\n");
}

TEST(SensorTextTest, ShowsAnInvalidReadingAsUnavailable) {
    SensorState sensor = Read("0.00degree C", kUpper);
    sensor.isUnavailable = true;
    EXPECT_TRUE(
        Shows(ToText(LibrarySensors{1, {1, {sensor}}, {}, {}}), "  0.00 degree C  unavailable "));
    sensor.state = "Device Enabled";
    EXPECT_TRUE(
        Shows(ToText(LibrarySensors{1, {1, {sensor}}, {}, {}}), "  0.00 degree C  unavailable "));
}

TEST(SensorTextTest, MarksSensorsWithSignedValues) {
    SensorState sensor = Read("214.00degree C", kUpper);
    EXPECT_FALSE(Shows(ToText(LibrarySensors{1, {1, {sensor}}, {}, {}}), "*"));
    sensor.isSigned = true;
    const std::string text = ToText(LibrarySensors{1, {1, {sensor}}, {}, {}});
    EXPECT_TRUE(Shows(text, "214.00 degree C *  -"));
    EXPECT_TRUE(Shows(text, "* The BMC counts this sensor's values with a sign"));
}

TEST(SensorTextTest, SaysWhatTheMarkMeansForAVoltageAndAFanAlone) {
    SensorState sensor = Read("3", {});
    sensor.isSigned = true;
    const char* const meaning = "* The BMC counts this sensor's values with a sign";
    EXPECT_TRUE(Shows(ToText(LibrarySensors{1, {}, {1, {sensor}}, {}}), meaning));
    EXPECT_TRUE(Shows(ToText(LibrarySensors{1, {}, {}, {1, {sensor}}}), meaning));
}

TEST(SensorTextTest, ShowsAReadingWithoutAUnitWithoutABlankAfterIt) {
    SensorState sensor = Read("42", {});
    sensor.isSigned = true;
    EXPECT_TRUE(Shows(ToText(LibrarySensors{1, {}, {}, {1, {sensor}}}), "  processor     42 *  "));
}

TEST(SensorTextTest, SaysWhenThereAreMoreThanTheLibraryLists) {
    const SensorState fan = Read("3500RPM", {});
    EXPECT_FALSE(Shows(ToText(LibrarySensors{1, {}, {}, {1, {fan}}}), "Listed are"));
    EXPECT_TRUE(Shows(ToText(LibrarySensors{20, {}, {}, {20, {fan, fan}}}),
                      "  Listed are the first 2 of 20 fans.\n"));
}

TEST(SensorTextTest, SaysWhenTheRepositoryIsEmpty) {
    EXPECT_EQ(ToText(LibrarySensors{}),
              "Sensors as agents see them\n"
              "--------------------------\n"
              "  none\n"
              "\n"
              "  The BMC's sensor repository is empty, or it did not answer.\n");
}

TEST(ThresholdTextTest, NamesEntityAndType) {
    const std::string text = ToText(
        Thresholds{{3, 1, AllOf({3, 2, 1, 80, 90, 100})}, {200, 43, AllOf({0, 0, 0, 0, 0, 0})}});
    EXPECT_TRUE(Shows(
        text, "    1  processor (3)      temperature (1)         1     2     3    80    90   100"));
    EXPECT_TRUE(Shows(
        text, "    2  entity 0xC8 (200)  version change (43)     0     0     0     0     0     0"));
    EXPECT_TRUE(Shows(text, "by its place in the repository, not by its number"));
}

}  // namespace
}  // namespace tool
