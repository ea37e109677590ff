// SPDX-License-Identifier: MIT
//
// Names of sensors that cannot be had: this program is an agent whose getters of names fail, some
// after they have written, in front of the library's.
#include <cstring>

#include "IPMI/IPMIsupport.h"
#include "Talvane.h"
#include "support/IpmiTest.h"

namespace {

const char* written = nullptr;

int Fail(char* out) {
    if (written != nullptr) std::strcpy(out, written);
    return -1;
}

}  // namespace

int IPMIsupport::GetFanIDString(int, char* out) {
    return Fail(out);
}
int IPMIsupport::GetVoltageIDString(int, char* out) {
    return Fail(out);
}
int IPMIsupport::GetTemperatureIDString(int, char* out) {
    return Fail(out);
}

namespace {

class NamelessSensorTest : public IpmiTest {
protected:
    NamelessSensorTest() {
        std::memset(&fans, 0xA5, sizeof fans);
        std::memset(&voltages, 0xA5, sizeof voltages);
        std::memset(&temperatures, 0xA5, sizeof temperatures);
    }

    // The names' fields of the first elements: an empty text, then these bytes.
    void ExpectNamesAre(const char (&bytes)[16]) {
        Add(Fan("FAN 1", 0x30), 70);
        Add(Voltage("3.3V", 0x20), 60);
        Add(Temperature("CPU", 0x10), 50);
        ASSERT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 0);
        ASSERT_EQ(GetIpmiInfo(TALVANE_VOLTAGES, &voltages), 0);
        ASSERT_EQ(GetIpmiInfo(TALVANE_TEMPERATURES, &temperatures), 0);
        EXPECT_EQ(std::memcmp(fans.fan[0].IdString, bytes, sizeof bytes), 0);
        EXPECT_EQ(std::memcmp(voltages.voltage[0].IdString, bytes, sizeof bytes), 0);
        EXPECT_EQ(std::memcmp(temperatures.temperature[0].IdString, bytes, sizeof bytes), 0);
    }

    FanInformation fans;
    VoltageInformation voltages;
    TemperatureInformation temperatures;
};

TEST_F(NamelessSensorTest, NameIsEmptyAndTheRestOfTheFieldStays) {
    char bytes[16];
    std::memset(bytes, 0xA5, sizeof bytes);
    bytes[0] = '\0';
    ExpectNamesAre(bytes);
}

TEST_F(NamelessSensorTest, NameThatWasWrittenBeforeTheFailureIsEmptyToo) {
    written = "Half a na";
    char bytes[16];
    std::memset(bytes, 0xA5, sizeof bytes);
    std::memcpy(bytes, "\0alf a na", 10);
    ExpectNamesAre(bytes);
}

}  // namespace
