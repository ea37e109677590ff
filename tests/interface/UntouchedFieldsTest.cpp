// SPDX-License-Identifier: MIT
//
// The fields that no inventory command writes: they keep what the caller put there, in elements
// that are filled as in those that are not.
#include <algorithm>
#include <cstring>

#include "support/InterfaceTest.h"

namespace {

constexpr unsigned char kCallers = 0x7B;

template <class Fields>
bool Kept(const Fields& field) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(&field);
    return std::all_of(bytes, bytes + sizeof field, [](unsigned char b) { return b == kCallers; });
}

class UntouchedFieldsTest : public InterfaceTest {
protected:
    // The command's answer in a record that the caller has filled.
    template <class Record>
    static Record Ask(unsigned long command) {
        Record record;
        std::memset(&record, kCallers, sizeof record);
        EXPECT_EQ(GetInfo(command, &record), 0);
        return record;
    }

    template <class Sensor, std::size_t N>
    static void ExpectStatusKept(const Sensor (&sensors)[N]) {
        for (const Sensor& sensor : sensors) EXPECT_TRUE(Kept(sensor.status));
    }
};

TEST_F(UntouchedFieldsTest, SteppingAndUsageRateOfProcessors) {
    table.Add(7, 0x700, 19).String(4, "L1").Word(7, 32).Word(9, 16).Byte(15, 2);
    for (int i = 0; i < 8; ++i)
        table.Add(4, 0x400, 35)
            .Byte(6, 178)
            .String(7, std::string(60, 'm'))
            .Word(18, 65535)
            .Word(20, 65535)
            .Word(22, 65535)
            .Byte(24, 0x41)
            .Word(26, 0x700)
            .Word(28, 0x700)
            .Word(30, 0x700);
    Place();
    const auto record = Ask<ProcessorInformation>(0x20000);
    ASSERT_EQ(record.quantity, 8);
    for (const CPU& cpu : record.cpu) {
        EXPECT_STREQ(cpu.family, "Pentium 4 Processor");
        EXPECT_TRUE(Kept(cpu.stepping));
        EXPECT_TRUE(Kept(cpu.UsageRate));
    }
}

TEST_F(UntouchedFieldsTest, ProductNameProductVersionAndBiosEnableOfPowerSupplies) {
    for (int i = 0; i < 8; ++i)
        table.Add(39, 0x2700, 22)
            .Byte(4, 1)
            .String(6, std::string(60, 'd'))
            .String(7, std::string(60, 'm'))
            .String(8, std::string(60, 's'))
            .Word(14, 6 << 10 | 2);
    Place();
    for (const unsigned long command : {0x800000UL, 0x1000000UL}) {
        const auto record = Ask<SystemPowerInformation>(command);
        ASSERT_EQ(record.TotalNumber, 8);
        for (const SYS_POWER& supply : record.PowerSupply) {
            EXPECT_STREQ(supply.status, "present");
            EXPECT_TRUE(Kept(supply.ProductName));
            EXPECT_TRUE(Kept(supply.ProductVersion));
            EXPECT_TRUE(Kept(supply.BiosEnable));
        }
    }
}

TEST_F(UntouchedFieldsTest, StatusOfFans) {
    for (int i = 0; i < 16; ++i) table.Add(27, 0x1B00, 15).Byte(6, 0x63).Word(12, 65535);
    Place();
    const auto record = Ask<FanInformation>(0x2000000);
    ASSERT_EQ(record.quantity, 16);
    EXPECT_STREQ(record.fan[15].speed, "65535 rpm");
    ExpectStatusKept(record.fan);
}

TEST_F(UntouchedFieldsTest, StatusOfVoltagesAndTemperatures) {
    for (int i = 0; i < 32; ++i) {
        table.Add(26, 0x1A00, 22).Byte(5, 0x63).Word(6, 12600).Word(8, 11400).Word(20, 12000);
        table.Add(28, 0x1C00, 22).Byte(5, 0x63).Word(20, 40);
    }
    Place();
    const auto voltages = Ask<VoltageInformation>(0x4000000);
    ASSERT_EQ(voltages.quantity, 32);
    ExpectStatusKept(voltages.voltage);
    const auto temperatures = Ask<TemperatureInformation>(0x8000000);
    ASSERT_EQ(temperatures.quantity, 32);
    ExpectStatusKept(temperatures.temperature);
}

}  // namespace
