// SPDX-License-Identifier: MIT
//
// Which getters fill an element of a sensor record, in order, and what becomes of their answers: an
// agent may have put its own in front of them. This program is such an agent, whose getters note
// the call and answer as they are told.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "Talvane.h"
#include "simulator/SimulatedServer.h"
#include "support/OpenIpmi.h"

namespace {

using ::testing::ElementsAre;

std::vector<std::string> calls;
std::map<std::string, std::string> texts;    // by getter and index; the others write nothing
std::map<std::string, unsigned char> bytes;  // as above
std::map<std::string, double> thresholds;    // as above
std::map<std::string, int> results;          // as above; the others answer 0

std::string Note(const char* getter, int i) {
    calls.push_back(std::string(getter) + " " + std::to_string(i));
    return calls.back();
}

int AnswerText(const char* getter, int i, char* out) {
    const std::string call = Note(getter, i);
    if (texts.contains(call)) std::strcpy(out, texts[call].c_str());
    return results[call];
}

int AnswerByte(const char* getter, int i, unsigned char& out) {
    const std::string call = Note(getter, i);
    if (bytes.contains(call)) out = bytes[call];
    return results[call];
}

int AnswerThresholds(const char* getter, int i, SensorThresholdInfoRaw& raw,
                     SensorThresholdInfoConverted& converted) {
    const std::string call = Note(getter, i);
    if (thresholds.contains(call)) {
        raw.deviceID = static_cast<int>(thresholds[call]);
        converted.LowerCriticalThreshold = thresholds[call];
        thresholds.erase(call);  // once
    }
    return results[call];
}

}  // namespace

int IPMIsupport::GetSensorInfo() {
    return 0;
}
int IPMIsupport::GetFanSensorsNum() {
    return 2;
}
int IPMIsupport::GetVoltSensorsNum() {
    return 2;
}
int IPMIsupport::GetTemSensorsNum() {
    return 2;
}
int IPMIsupport::GetFanSpeed(int i, char* out) {
    return AnswerText("reading", i, out);
}
int IPMIsupport::GetFanSensorNumber(int i, unsigned char& number) {
    return AnswerByte("number", i, number);
}
int IPMIsupport::GetFanEntityID(int i, unsigned char& entityID) {
    return AnswerByte("entity", i, entityID);
}
int IPMIsupport::GetFanStatusDescription(int i, char* out) {
    return AnswerText("description", i, out);
}
int IPMIsupport::GetFanSensorThreshold(int i, SensorThresholdInfoRaw& raw,
                                       SensorThresholdInfoConverted& converted) {
    return AnswerThresholds("thresholds", i, raw, converted);
}
int IPMIsupport::GetFanSensorType(int i, unsigned char& type) {
    return AnswerByte("type", i, type);
}
int IPMIsupport::GetFanIDString(int i, char* out) {
    return AnswerText("name", i, out);
}
int IPMIsupport::GetVoltageCurrent(int i, char* out) {
    return AnswerText("voltage reading", i, out);
}
int IPMIsupport::GetVoltageSensorNumber(int i, unsigned char& number) {
    return AnswerByte("voltage number", i, number);
}
int IPMIsupport::GetVoltageEntityID(int i, unsigned char& entityID) {
    return AnswerByte("voltage entity", i, entityID);
}
int IPMIsupport::GetVoltageMax(int i, char* out) {
    return AnswerText("voltage maximum", i, out);
}
int IPMIsupport::GetVoltageMin(int i, char* out) {
    return AnswerText("voltage minimum", i, out);
}
int IPMIsupport::GetVoltageStatusDescription(int i, char* out) {
    return AnswerText("voltage description", i, out);
}
int IPMIsupport::GetVoltageSensorThreshold(int i, SensorThresholdInfoRaw& raw,
                                           SensorThresholdInfoConverted& converted) {
    return AnswerThresholds("voltage thresholds", i, raw, converted);
}
int IPMIsupport::GetVoltageSensorType(int i, unsigned char& type) {
    return AnswerByte("voltage type", i, type);
}
int IPMIsupport::GetVoltageIDString(int i, char* out) {
    return AnswerText("voltage name", i, out);
}
int IPMIsupport::GetTemperatureCurrent(int i, char* out) {
    return AnswerText("temperature reading", i, out);
}
int IPMIsupport::GetTemperatureSensorNumber(int i, unsigned char& number) {
    return AnswerByte("temperature number", i, number);
}
int IPMIsupport::GetTemperatureEntityID(int i, unsigned char& entityID) {
    return AnswerByte("temperature entity", i, entityID);
}
int IPMIsupport::GetTemperatureStatusDescription(int i, char* out) {
    return AnswerText("temperature description", i, out);
}
int IPMIsupport::GetTemperatureSensorThreshold(int i, SensorThresholdInfoRaw& raw,
                                               SensorThresholdInfoConverted& converted) {
    return AnswerThresholds("temperature thresholds", i, raw, converted);
}
int IPMIsupport::GetTemperatureSensorType(int i, unsigned char& type) {
    return AnswerByte("temperature type", i, type);
}
int IPMIsupport::GetTemperatureIDString(int i, char* out) {
    return AnswerText("temperature name", i, out);
}

namespace {

class ElementCallsTest : public ::testing::Test {
protected:
    ElementCallsTest() {
        server.GetBmc();
        std::memset(&fans, 0x5A, sizeof fans);
    }
    const FAN_DEVICE& FirstFan() {
        EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 0);
        return fans.fan[0];
    }

    sim::SimulatedServer server;
    FanInformation fans;
};

TEST_F(ElementCallsTest, FansAreAskedForTheirOwnThresholds) {
    (void)FirstFan();
    EXPECT_THAT(
        calls, ElementsAre("reading 0", "number 0", "entity 0", "description 0", "thresholds 0",
                           "type 0", "name 0", "reading 1", "number 1", "entity 1", "description 1",
                           "thresholds 1", "type 1", "name 1"));
}

TEST_F(ElementCallsTest, VoltagesAreAskedForLimitsAndTheFirstOnesThresholds) {
    VoltageInformation voltages{};
    EXPECT_EQ(GetIpmiInfo(TALVANE_VOLTAGES, &voltages), 0);
    EXPECT_THAT(calls,
                ElementsAre("voltage reading 0", "voltage number 0", "voltage entity 0",
                            "voltage maximum 0", "voltage minimum 0", "voltage description 0",
                            "voltage thresholds 0", "voltage type 0", "voltage name 0",
                            "voltage reading 1", "voltage number 1", "voltage entity 1",
                            "voltage maximum 1", "voltage minimum 1", "voltage description 1",
                            "voltage thresholds 0", "voltage type 1", "voltage name 1"));
}

TEST_F(ElementCallsTest, TemperaturesAreAskedForTheFirstOnesThresholds) {
    TemperatureInformation temperatures{};
    EXPECT_EQ(GetIpmiInfo(TALVANE_TEMPERATURES, &temperatures), 0);
    EXPECT_THAT(
        calls,
        ElementsAre("temperature reading 0", "temperature number 0", "temperature entity 0",
                    "temperature description 0", "temperature thresholds 0", "temperature type 0",
                    "temperature name 0", "temperature reading 1", "temperature number 1",
                    "temperature entity 1", "temperature description 1", "temperature thresholds 0",
                    "temperature type 1", "temperature name 1"));
}

TEST_F(ElementCallsTest, EntityAndTypeAreBytes) {
    bytes = {{"entity 0", 0x90}, {"type 0", 0xC0}, {"number 0", 0x33}};
    const FAN_DEVICE& fan = FirstFan();
    EXPECT_EQ(fan.DeviceID, 0x90) << "not widened as a signed one";
    EXPECT_EQ(fan.SensorType, 0xC0);
    EXPECT_EQ(fan.sensorNumber, 0x33);
}

TEST_F(ElementCallsTest, UntouchedTypeIsTheEntity) {
    bytes = {{"entity 0", 0x90}};
    results = {{"type 0", -1}};
    EXPECT_EQ(FirstFan().SensorType, 0x90);
}

TEST_F(ElementCallsTest, UntouchedEntityIsZeroInEachElement) {
    bytes = {{"type 0", 4}};
    EXPECT_EQ(FirstFan().DeviceID, 0);
    EXPECT_EQ(fans.fan[1].DeviceID, 0) << "not the type of the one before";
    EXPECT_EQ(fans.fan[1].SensorType, 0);
}

TEST_F(ElementCallsTest, UntouchedThresholdsAreThoseOfTheElementBefore) {
    thresholds = {{"thresholds 0", 29.0}};
    results = {{"thresholds 1", -1}};
    EXPECT_EQ(FirstFan().sti.LowerCriticalThreshold, 29.0);
    EXPECT_EQ(fans.fan[1].sti.LowerCriticalThreshold, 29.0);
    EXPECT_EQ(fans.fan[1].sti.DeviceID, 29);
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 0);
    EXPECT_EQ(fans.fan[0].sti.LowerCriticalThreshold, 0.0) << "cleared with each call";
}

TEST_F(ElementCallsTest, ATextIsTakenWhateverItsGetterAnswers) {
    texts = {
        {"reading 0", "3500RPM"}, {"description 0", "OK"}, {"reading 1", std::string(40, 'x')}};
    results = {{"reading 0", -1}, {"description 0", -1}};
    EXPECT_STREQ(FirstFan().speed, "3500RPM");
    EXPECT_STREQ(fans.fan[0].desc, "OK");
    EXPECT_EQ(fans.fan[0].speed[8], 0x5A) << "after the terminator";
    EXPECT_EQ(fans.fan[1].speed, std::string(15, 'x')) << "cut to its field";
}

TEST_F(ElementCallsTest, ATextThatRepeatsTheCallersBytesIsCutToItsField) {
    texts = {{"reading 0", std::string(16, 0x5A)}, {"reading 1", std::string(40, 0x5A)}};
    EXPECT_EQ(FirstFan().speed, std::string(15, 0x5A));
    EXPECT_EQ(fans.fan[1].speed, std::string(15, 0x5A));
}

TEST_F(ElementCallsTest, UntouchedTextStaysAsTheCallerGaveIt) {
    const FAN_DEVICE& fan = FirstFan();
    EXPECT_EQ(std::string(fan.speed, sizeof fan.speed), std::string(16, 0x5A));
    EXPECT_EQ(std::string(fan.IdString, sizeof fan.IdString), std::string(16, 0x5A));
    EXPECT_EQ(std::string(fan.desc, sizeof fan.desc), std::string(64, 0x5A));
    EXPECT_EQ(fan.sensorNumber, 0x5A);
}

TEST_F(ElementCallsTest, ANameThatFailsIsEmpty) {
    texts = {{"name 0", "FAN 1"}};
    results = {{"name 0", 1}, {"name 1", -1}};
    EXPECT_STREQ(FirstFan().IdString, "");
    EXPECT_STREQ(fans.fan[1].IdString, "");
}

}  // namespace
