// SPDX-License-Identifier: MIT
//
// An agent may put methods of its own in front of the library's, and unlike those they may fail.
// This program's do when they are told to: the conversion of a reading, the texts of limits and
// names, the decoding and the copying of inventory fields.

#include <dlfcn.h>

#include <cstring>

#include "InventoryTest.h"
#include "support/IpmiTest.h"

namespace {

bool conversionFails = false;
bool limitsFail = false;
bool nameFails = false;
bool copyFails = false;
int failingField = 0;  // the number of the call that decodes it, from 1
int decodedFields = 0;

}  // namespace

int Sensor::GetReadingConversion(SensorFormulaParameter, unsigned char raw, double& value) {
    value = raw;
    return conversionFails ? -1 : 0;
}

int Sensor::ReadSensorMax(int k, char* out) {
    std::strcpy(out, "highest");
    const auto next = reinterpret_cast<int (*)(Sensor*, int, char*)>(
        dlsym(RTLD_NEXT, "_ZN6Sensor13ReadSensorMaxEiPc"));
    return limitsFail ? -1 : next(this, k, out);
}

int Sensor::ReadSensorMin(int, char* out) {
    std::strcpy(out, "lowest");
    return limitsFail ? -1 : 0;
}

int SDR::GetIDstring(char* out) {
    std::strcpy(out, "name");
    return nameFails ? -1 : 0;
}

int FRU::DecodeByte(unsigned char, unsigned char, unsigned char*, int, char* destination, int) {
    destination[0] = 'x';
    return ++decodedFields == failingField ? -1 : 0;
}

int IPMIbase::IpmiSrtringCopy(char* destination, char* source, int, int) {
    destination[0] = source[0];
    return copyFails ? -1 : 0;
}

namespace {

class FailingMethodsTest : public InventoryTest {
protected:
    const SensorDescription& FirstEntry() {
        EXPECT_EQ(Sensors().GetSensorNumbers(1), 0);
        return Sensors().SensorsInformation[0];
    }
};

TEST_F(FailingMethodsTest, ALimitThatCannotBeConvertedIsUnknownAndItsNumberZero) {
    Add(Voltage("V", 0x20).Limits(200, 10), 100);
    EXPECT_EQ(FirstEntry().SensorReadingMaxD, 200.0);
    EXPECT_STREQ(FirstEntry().SensorReadingMax, "200.00");
    conversionFails = true;
    EXPECT_EQ(FirstEntry().SensorReadingMaxD, 0.0);
    EXPECT_STREQ(FirstEntry().SensorReadingMax, "Unknown");
}

TEST_F(FailingMethodsTest, AThresholdThatCannotBeConvertedIsZeroAndKeepsItsRawByte) {
    AddThree();
    conversionFails = true;
    const SensorDescription& entry = FirstEntry();
    EXPECT_EQ(entry.stir.UpperCriticalThresholdValue, 110);
    EXPECT_EQ(entry.stic.UpperCriticalThresholdValue, 0.0);
}

TEST_F(FailingMethodsTest, AReadingThatCannotBeConvertedIsUnknown) {
    AddThree();
    (void)Loaded();
    conversionFails = true;
    EXPECT_EQ(Ask(&Sensor::GetTemperatureCurrent, 0), Terminated("Unknown"));
    EXPECT_EQ(Ask(&Sensor::GetFanSpeed, 0), Terminated("Unknown"));
}

TEST_F(FailingMethodsTest, TextsThatCannotBeReadAreEmpty) {
    Add(Voltage("V", 0x20).Limits(200, 10), 100);
    EXPECT_STREQ(FirstEntry().SensorReadingMin, "lowest");
    EXPECT_STREQ(FirstEntry().IDString, "name");
    limitsFail = true;
    nameFails = true;
    EXPECT_STREQ(FirstEntry().SensorReadingMax, "");
    EXPECT_STREQ(FirstEntry().SensorReadingMin, "");
    EXPECT_STREQ(FirstEntry().IDString, "");
}

TEST_F(FailingMethodsTest, TheFirstFieldThatCannotBeDecodedEndsItsArea) {
    PlaceAll();
    ASSERT_EQ(Fru().GetCommonHeaderInfo(), 0);
    struct Area {
        int (FRU::*read)();
        int fields;
    };
    for (const Area& area : {Area{&FRU::GetBoardInfo, 4}, Area{&FRU::GetChassisInfo, 2},
                             Area{&FRU::GetProductInfo, 5}}) {
        for (failingField = 1; failingField <= area.fields; ++failingField) {
            decodedFields = 0;
            EXPECT_EQ((Fru().*area.read)(), -1) << failingField << " of " << area.fields;
            EXPECT_EQ(decodedFields, failingField) << "no field after it is decoded";
            EXPECT_NE(Fru().ResponseBuffer[1], 0) << "the area stays in the response buffer";
        }
        failingField = 0;
        EXPECT_EQ((Fru().*area.read)(), 0);
        EXPECT_EQ(Fru().ResponseBuffer[1], 0);
    }
}

TEST_F(FailingMethodsTest, ATextThatCannotBeCopiedFails) {
    PlaceAll();
    ASSERT_EQ(Support().GetFRUInfo(), 0);
    EXPECT_EQ(AskText(&IPMIsupport::GetBoardManufacturer).result, 0);
    copyFails = true;
    EXPECT_EQ(AskText(&IPMIsupport::GetBoardManufacturer).result, -1);
}

}  // namespace
