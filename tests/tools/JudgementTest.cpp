// SPDX-License-Identifier: MIT
//
// The verdict on sensors, the rules that replace it, and the output of a monitoring plugin.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>

#include "NoValue.h"
#include "SensorExamples.h"
#include "tools/health/HealthText.h"
#include "tools/sensors/Judgement.h"

namespace tool {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr int kSupply = 0x08;
constexpr int kDriveSlot = 0x0D;
constexpr int kBattery = 0x29;
constexpr int kSupplyEntity = 10;
constexpr int kPresenceEventType = 0x08;

SensorNow Analog(const std::string& name, double value, const Limits& limits, unsigned said = 0) {
    SensorNow sensor = ThresholdSensor(name, value, limits);
    sensor.answer.states = said;
    return sensor;
}

SensorNow Discrete(int type, int eventType, unsigned states, unsigned mask = 0x7FFF) {
    SensorNow sensor = DiscreteSensor(type, eventType, states);
    sensor.record.mask = mask;
    return sensor;
}

JudgedSensor JudgeOne(const SensorNow& sensor, const Rules& rules = {}) {
    return Judge({{sensor}, 1, true}, rules).sensors.at(0);
}

const Limits kSix = {20.0, 10.0, 5.0, 80.0, 90.0, 100.0};

TEST(JudgementTest, ComparesAReadingWithTheLimitsOfItsSensor) {
    EXPECT_EQ(JudgeOne(Analog("T", 79, kSix)).verdict, Verdict::kOk);
    EXPECT_EQ(JudgeOne(Analog("T", 80, kSix)).verdict, Verdict::kWarning);
    EXPECT_EQ(JudgeOne(Analog("T", 90, kSix)).verdict, Verdict::kCritical);
    EXPECT_EQ(JudgeOne(Analog("T", 20, kSix)).verdict, Verdict::kWarning);
    EXPECT_EQ(JudgeOne(Analog("T", 4, kSix)).verdict, Verdict::kCritical);
    EXPECT_EQ(JudgeOne(Analog("T", 101, kSix)).reason, "upper non-recoverable threshold is 100");
    EXPECT_EQ(JudgeOne(Analog("T", 400, {})).verdict, Verdict::kOk) << "without limits";
}

TEST(JudgementTest, BelievesTheBmcThatSaysALimitIsReached) {
    const auto judged = JudgeOne(Analog("T", 50, {}, 0x10));
    EXPECT_EQ(judged.verdict, Verdict::kCritical);
    EXPECT_EQ(judged.reason, "upper critical threshold reached, as the BMC reports");
    EXPECT_EQ(JudgeOne(Analog("T", 95, kSix, 0x08)).verdict, Verdict::kCritical)
        << "the worse of both";
    EXPECT_EQ(JudgeOne(Analog("T", 50, kSix, 0xC0)).verdict, Verdict::kOk) << "reserved bits";
}

TEST(JudgementTest, NeverFindsASensorOkThatCannotBeRead) {
    using Status = SensorAnswer::Status;
    for (const Status status :
         {Status::kNoAnswer, Status::kNotScanned, Status::kUnavailable, Status::kOther})
        for (const SensorNow& sensor :
             {Analog("T", 50, kSix), Discrete(kSupply, kSensorSpecificEventType, 1)})
            EXPECT_EQ(JudgeOne(WithoutReading(sensor, status)).verdict, Verdict::kUnknown);
    SensorNow withoutStates = Discrete(5, kSensorSpecificEventType, 0);
    withoutStates.answer.states.reset();
    EXPECT_EQ(JudgeOne(withoutStates).verdict, Verdict::kUnknown);
    EXPECT_EQ(JudgeOne(withoutStates).reason, "states not reported");
}

TEST(JudgementTest, FindsAStoppedFanCritical) {
    SensorNow fan = Analog("FAN", 0, {});
    fan.record.type = 4;
    EXPECT_EQ(JudgeOne(fan).verdict, Verdict::kCritical);
    EXPECT_EQ(JudgeOne(fan).reason, "stopped");
    EXPECT_EQ(JudgeOne(Analog("T", 0, {})).verdict, Verdict::kOk) << "no fan";
}

TEST(JudgementTest, FindsAnIntrudedChassisAtLeastAWarning) {
    const auto judged = JudgeOne(Discrete(5, kSensorSpecificEventType, 1));
    EXPECT_EQ(judged.verdict, Verdict::kWarning);
    EXPECT_EQ(judged.reason, "chassis intrusion");
    EXPECT_EQ(JudgeOne(Discrete(5, kSensorSpecificEventType, 0)).verdict, Verdict::kOk);
}

TEST(JudgementTest, TakesTheWorstOfSeveralStates) {
    const auto judged = JudgeOne(Discrete(kSupply, kSensorSpecificEventType, 0x0D));
    EXPECT_EQ(judged.verdict, Verdict::kCritical);
    EXPECT_EQ(judged.reason, "input lost");
    EXPECT_EQ(judged.conditions.size(), 3U);
}

TEST(JudgementTest, FindsAnEmptyBayNoFaultUnlessTheRedundancySensorSaysSo) {
    const SensorNow empty = Discrete(kSupply, kSensorSpecificEventType, 0x08);
    EXPECT_EQ(JudgeOne(empty).verdict, Verdict::kOk);
    EXPECT_EQ(JudgeOne(empty).reason, "absent");
    const SensorNow slot = Discrete(0x21, kSensorSpecificEventType, 0);
    EXPECT_EQ(JudgeOne(slot).verdict, Verdict::kOk);
    const SensorNow redundancy = Discrete(0x09, 0x0B, 0x02);
    const Health health = Judge({{empty, redundancy}, 2, true}, {});
    EXPECT_EQ(health.verdict, Verdict::kCritical);
    EXPECT_EQ(health.sensors[1].reason, "redundancy lost");
}

TEST(JudgementTest, ExpectsNoReadingFromAnEntityThatIsAbsent) {
    SensorNow presence = Discrete(kSupply, kSensorSpecificEventType, 0);
    SensorNow speed =
        WithoutReading(Analog("PSU FAN", 0, kSix), SensorAnswer::Status::kUnavailable);
    SensorNow cold = Analog("PSU Temp", 0, kSix);
    for (SensorNow* sensor : {&presence, &speed, &cold}) sensor->record.entity = kSupplyEntity;
    const Health absent = Judge({{presence, speed, cold}, 3, true}, {});
    EXPECT_EQ(absent.verdict, Verdict::kOk);
    EXPECT_EQ(absent.sensors[1].reason, "absent");
    EXPECT_EQ(absent.sensors[2].reason, "absent");
    cold.record.instance = 2;
    EXPECT_EQ(Judge({{presence, speed, cold}, 3, true}, {}).verdict, Verdict::kCritical)
        << "another supply";
    presence.answer.states = 1;
    EXPECT_EQ(Judge({{presence, speed}, 2, true}, {}).verdict, Verdict::kUnknown) << "present";
    presence.answer.states = 0;
    presence.record.mask = 0x0E;
    EXPECT_EQ(Judge({{presence, speed}, 2, true}, {}).verdict, Verdict::kUnknown)
        << "a sensor that does not report presence";
}

TEST(JudgementTest, ShowsNoOtherStateOfAnEmptyDriveSlot) {
    const SensorNow slot = Discrete(kDriveSlot, kSensorSpecificEventType, 0x02);
    EXPECT_EQ(JudgeOne(slot).verdict, Verdict::kOk);
    EXPECT_EQ(JudgeOne(slot).reason, "absent");
}

TEST(JudgementTest, ShowsTheStatesOfAnAbsentEntityThatIsNoBay) {
    const auto battery = JudgeOne(Discrete(kBattery, kSensorSpecificEventType, 0x02));
    EXPECT_EQ(battery.verdict, Verdict::kCritical);
    EXPECT_EQ(battery.reason, "battery failed");
    const auto device = JudgeOne(Discrete(kBattery, kPresenceEventType, 0x01));
    EXPECT_EQ(device.verdict, Verdict::kOk);
    EXPECT_EQ(device.reason, "device absent") << "presence by the generic states";
}

TEST(JudgementTest, TakesAnEntityForThereWhenOneOfItsSensorsSaysSo) {
    const SensorNow absent = Discrete(kSupply, kSensorSpecificEventType, 0x00);
    const SensorNow present = Discrete(kSupply, kSensorSpecificEventType, 0x01);
    const SensorNow unread =
        WithoutReading(Discrete(5, kSensorSpecificEventType, 0), SensorAnswer::Status::kNoAnswer);
    EXPECT_EQ(Judge({{absent, present, unread}, 3, true}, {}).sensors[2].verdict,
              Verdict::kUnknown);
    EXPECT_EQ(Judge({{present, absent, unread}, 3, true}, {}).sensors[2].verdict,
              Verdict::kUnknown);
    const Health none = Judge({{absent, absent, unread}, 3, true}, {});
    EXPECT_EQ(none.sensors[2].verdict, Verdict::kOk);
    EXPECT_EQ(none.sensors[2].reason, "absent") << "a discrete sensor without a reading";
}

TEST(JudgementTest, DoesNotJudgeStatesThatOnlyTheMakerKnows) {
    const auto judged = JudgeOne(Discrete(0xC0, 0x70, 0x05));
    EXPECT_EQ(judged.verdict, kNoValue);
    EXPECT_EQ(judged.reason, "state 0, state 2");
    EXPECT_EQ(JudgeOne(Discrete(0xC0, 0x70, 0)).verdict, kNoValue);
    EXPECT_EQ(Judge({{Discrete(0xC0, 0x70, 1)}, 1, true}, {}).verdict, Verdict::kUnknown)
        << "nothing that is OK";
}

TEST(JudgementTest, ServerIsAsWellAsItsWorstSensor) {
    const SensorNow good = Analog("T", 50, kSix);
    const SensorNow bad = Analog("T", 85, kSix);
    const SensorNow unread = WithoutReading(good, SensorAnswer::Status::kNoAnswer);
    EXPECT_EQ(Judge({{good, unread}, 2, true}, {}).verdict, Verdict::kUnknown);
    EXPECT_EQ(Judge({{good, unread, bad}, 3, true}, {}).verdict, Verdict::kWarning);
    EXPECT_EQ(Judge({{}, 0, true}, {}).verdict, Verdict::kUnknown) << "no sensor";
    EXPECT_EQ(Judge({{good}, 1, false}, {}).verdict, Verdict::kUnknown)
        << "a repository that was not read to its end";
}

TEST(RulesTest, ReplaceTheVerdictOfASensorInAState) {
    const Rules rules =
        ParseRules("sensor \"Disc*\" state \"chassis intrusion\" ok  # open rack\n");
    EXPECT_EQ(JudgeOne(Discrete(5, kSensorSpecificEventType, 1), rules).verdict, Verdict::kOk);
    EXPECT_EQ(JudgeOne(Discrete(5, kSensorSpecificEventType, 2), rules).verdict, Verdict::kWarning)
        << "another state";
}

TEST(RulesTest, GiveAVerdictToStatesThatOnlyTheMakerKnows) {
    const Rules rules = ParseRules("sensor 0x70 state \"state 2\" critical\n");
    EXPECT_EQ(JudgeOne(Discrete(0xC0, 0x70, 0x05), rules).verdict, Verdict::kCritical);
}

TEST(RulesTest, LeaveSensorsOut) {
    const auto judged = JudgeOne(Analog("T", 95, kSix), ParseRules("entity processor ignore\n"));
    EXPECT_EQ(judged.verdict, kNoValue);
    EXPECT_EQ(judged.reason, "left out by a rule");
}

// The sensor of the examples has the number 0x10, the name T, the entity 3 and the type 1.
TEST(RulesTest, LeaveASensorAloneThatDiffersInOneProperty) {
    const SensorNow sensor = Analog("T", 50, kSix);
    for (const char* fits :
         {"sensor 16 warning", "sensor 0x10 warning", "sensor T warning", "entity 3 warning",
          "type 1 warning", "type 0x01 warning", "sensor T entity 0x03 type temperature warning"})
        EXPECT_EQ(JudgeOne(sensor, ParseRules(fits)).verdict, Verdict::kWarning) << fits;
    for (const char* other : {"sensor 17 warning", "sensor U warning", "entity 4 warning",
                              "entity fan warning", "type 2 warning", "type fan warning"})
        EXPECT_EQ(JudgeOne(sensor, ParseRules(other)).verdict, Verdict::kOk) << other;
}

TEST(RulesTest, TakeANumberThatIsNoSensorNumberForAName) {
    for (const char* name : {"256", "-1", "99999999999", "0x10F"}) {
        const Rules rules = ParseRules("sensor " + std::string(name) + " warning");
        EXPECT_EQ(JudgeOne(Analog(name, 50, kSix), rules).verdict, Verdict::kWarning) << name;
        EXPECT_EQ(JudgeOne(Analog("T", 50, kSix), rules).verdict, Verdict::kOk) << name;
    }
}

TEST(RulesTest, GiveEachOfTheFourVerdictsInAnyCase) {
    const SensorNow sensor = Analog("T", 50, kSix);
    EXPECT_EQ(JudgeOne(sensor, ParseRules("type 1 OK")).verdict, Verdict::kOk);
    EXPECT_EQ(JudgeOne(sensor, ParseRules("type 1 Warning")).verdict, Verdict::kWarning);
    EXPECT_EQ(JudgeOne(sensor, ParseRules("type 1 critical")).verdict, Verdict::kCritical);
    EXPECT_EQ(JudgeOne(sensor, ParseRules("type 1 unknown")).verdict, Verdict::kUnknown);
}

TEST(RulesTest, CountFromTheLastThatFits) {
    const Rules rules = ParseRules(
        "type temperature critical\n"
        "entity \"processor 1\" state \"upper non-critical\" ok\n"
        "entity \"processor 2\" warning\n");
    EXPECT_EQ(JudgeOne(Analog("T", 85, kSix), rules).verdict, Verdict::kOk);
    EXPECT_EQ(JudgeOne(Analog("T", 50, kSix), rules).verdict, Verdict::kCritical);
}

TEST(RulesTest, MayBeEmptyAndHaveCommentsAndBlankLines) {
    EXPECT_TRUE(ParseRules("").empty());
    EXPECT_TRUE(ParseRules("\n  # nothing\r\n\n").empty());
    EXPECT_EQ(ParseRules("type fan ok").size(), 1U) << "without a newline at the end";
}

void ExpectProblem(const char* text, const char* problem) {
    try {
        (void)ParseRules(text);
        ADD_FAILURE() << text;
    } catch (const RulesError& error) {
        EXPECT_STREQ(error.what(), problem);
    }
}

TEST(RulesTest, AreRefusedWithTheLineThatIsWrong) {
    ExpectProblem("\nsensor \"A ok\n", "2: a quotation mark is missing");
    ExpectProblem("sensor A fine\n",
                  "1: \"fine\" is none of ok, warning, critical, unknown and ignore");
    ExpectProblem("ok\n",
                  "1: a rule is: sensor, entity or type, and its name; state TEXT; a verdict");
    ExpectProblem("sensor ok\n",
                  "1: a rule is: sensor, entity or type, and its name; state TEXT; a verdict");
    ExpectProblem("entity spoon ok\n", "1: there is no entity \"spoon\"");
    ExpectProblem("entity \"fan x\" ok\n", "1: there is no entity \"fan x\"");
    ExpectProblem("entity 256 ok\n", "1: there is no entity \"256\"");
    ExpectProblem("type 256 ok\n", "1: there is no sensor type \"256\"");
    ExpectProblem("type spoon ok\n", "1: there is no sensor type \"spoon\"");
    ExpectProblem("colour red ok\n", "1: \"colour\" is none of sensor, entity, type and state");
    ExpectProblem("sensor \"\" ok\n", "1: the sensor is empty");
}

TEST(SensorStatesTest, AreInOrderWithOneRowForEachAndDifferentWordsWithinAType) {
    for (const auto states : {GenericStates(), SpecificStates()}) {
        std::set<std::pair<int, std::string>> words;
        for (std::size_t i = 0; i < states.size(); ++i) {
            EXPECT_TRUE(words.emplace(states[i].type, states[i].words).second) << states[i].words;
            if (i != 0) {
                EXPECT_LT(std::pair(states[i - 1].type, states[i - 1].offset),
                          std::pair(states[i].type, states[i].offset));
            }
        }
    }
}

TEST(SensorStatesTest, AreLookedUpBySensorTypeOnlyForStatesOfTheType) {
    EXPECT_STREQ(MeaningOf(Discrete(kSupply, kSensorSpecificEventType, 0).record, 3)->words,
                 "input lost");
    EXPECT_STREQ(MeaningOf(Discrete(kSupply, 0x0B, 0).record, 1)->words, "redundancy lost");
    EXPECT_EQ(MeaningOf(Discrete(kSupply, 0x70, 0).record, 1), nullptr);
    EXPECT_EQ(MeaningOf(Discrete(kSupply, kSensorSpecificEventType, 0).record, 14), nullptr);
}

TEST(SensorStatesTest, CodesWithoutANameAreShownAsNumbers) {
    EXPECT_EQ(SensorTypeName(0x2C), "part state");
    EXPECT_EQ(SensorTypeName(0x2D), "type 0x2D");
    EXPECT_EQ(SensorTypeName(0xBF), "type 0xBF");
    EXPECT_EQ(SensorTypeName(0xC0), "maker's type 0xC0");
    EXPECT_EQ(EventTypeName(0x0C), "device power");
    EXPECT_EQ(EventTypeName(0x0D), "states of the maker");
    EXPECT_EQ(EventTypeName(0x6F), "states of the sensor type");
    EXPECT_EQ(EventTypeName(0x70), "states of the maker");
}

TEST(NagiosTextTest, HasTheWorstSensorThePerformanceDataAndALineForEachProblem) {
    const Health health =
        Judge({{Analog("T1", 50, kSix),
                Analog("T2", 85, {kNoValue, kNoValue, kNoValue, 80.0, 90.0, kNoValue}),
                Discrete(5, kSensorSpecificEventType, 1),
                Analog("T3", 95, {kNoValue, 10.0, kNoValue, kNoValue, 90.0, kNoValue})},
               4,
               true},
              {});
    EXPECT_EQ(ToNagios(health),
              "SENSORS CRITICAL - T3 95 degree C: upper critical threshold is 90 (3 of 4 sensors "
              "not OK) | 'T1'=50;20:80;10:90;; 'T2'=85;~:80;~:90;; 'T3'=95;;10:90;;\n"
              "CRITICAL: T3 95 degree C: upper critical threshold is 90\n"
              "WARNING: T2 85 degree C: upper non-critical threshold is 80\n"
              "WARNING: Discrete: chassis intrusion\n");
}

TEST(NagiosTextTest, KeepsTextsApartFromPerformanceData) {
    const Health health =
        Judge({{Analog("A|'='B\n", 50, kSix), Analog("A|'='B\n", 95, kSix)}, 2, true}, {});
    EXPECT_EQ(ToNagios(health),
              "SENSORS CRITICAL - A/'='B\\x0A 95 degree C: upper critical threshold is 90 (1 of 2 "
              "sensors not OK) | 'AB\\x0A'=50;20:80;10:90;; 'AB\\x0A 0x10'=95;20:80;10:90;;\n"
              "CRITICAL: A/'='B\\x0A 95 degree C: upper critical threshold is 90\n");
}

TEST(NagiosTextTest, PercentagesHaveTheirSign) {
    SensorNow load = Analog("Load", 40, {});
    load.record.unit1 = 0x01;
    load.record.baseUnit = 0;
    EXPECT_EQ(ToNagios(Judge({{load}, 1, true}, {})),
              "SENSORS OK - 1 sensors OK | 'Load'=40%;;;;\n");
}

TEST(NagiosTextTest, SaysThatAllIsWellOrThatThereIsNothingToJudge) {
    EXPECT_EQ(ToNagios(Judge({{Discrete(5, kSensorSpecificEventType, 0)}, 1, true}, {})),
              "SENSORS OK - 1 sensors OK\n");
    EXPECT_EQ(ToNagios(Judge({{}, 0, true}, {})), "SENSORS UNKNOWN - no sensor to judge\n");
    EXPECT_THAT(ToNagios(Judge({{Analog("T", 50, kSix)}, 1, false}, {})),
                StartsWith("SENSORS UNKNOWN - the sensor repository could not be read to its end"));
}

TEST(HealthTextTest, ShowsTheWorstFirstAndCountsAll) {
    const Health health = Judge(
        {{Analog("Good", 50, kSix), Discrete(0xC0, 0x70, 1), Analog("Bad", 85, kSix)}, 3, true},
        {});
    EXPECT_EQ(
        ToText(health),
        "Health: WARNING\n"
        "---------------\n"
        "  Verdict   No.  Sensor    Entity              Reading  Reason\n"
        "  WARNING  0x10  Bad       processor 1     85 degree C  upper non-critical threshold "
        "is 80\n"
        "  OK       0x10  Good      processor 1     50 degree C  within limits\n"
        "  -        0x70  Discrete  system board 1            -  state 0\n"
        "\n"
        "  3 sensors: 0 CRITICAL, 1 WARNING, 0 UNKNOWN, 1 OK, 1 not judged\n");
    EXPECT_EQ(ToJson(health)["counts"]["notJudged"], 1);
}

TEST(HealthTextTest, SaysThatTheRepositoryHasNotBeenReadToItsEnd) {
    const std::string note = "\n  The BMC's sensor repository could not be read to its end.\n";
    EXPECT_THAT(ToText(Judge({{Analog("T", 50, kSix)}, 1, false}, {})), testing::EndsWith(note));
    EXPECT_THAT(ToText(Judge({{Analog("T", 50, kSix)}, 1, true}, {})),
                testing::Not(HasSubstr("to its end")));
}

}  // namespace
}  // namespace tool
