// SPDX-License-Identifier: MIT
//
// GetInfo for ports (0x80000), fans (0x2000000), voltages (0x4000000) and temperatures (0x8000000).
#include "support/InterfaceTest.h"

namespace {

constexpr unsigned long kPorts = 0x80000;
constexpr unsigned long kFans = 0x2000000;
constexpr unsigned long kVoltages = 0x4000000;
constexpr unsigned long kTemperatures = 0x8000000;

constexpr std::size_t PortRecord(std::size_t ports) {
    return 4 + 80 * ports;
}
constexpr std::size_t FanRecord(std::size_t fans) {
    return 4 + 216 * fans;
}
constexpr std::size_t kProbeRecord = 6916;

class GetInfoDevices : public InterfaceTest {};

TEST_F(GetInfoDevices, PortsHaveATypeAndADesignator) {
    table.add(8, 1, 9).string(6, "COM1").byte(8, 9);
    table.add(8, 2, 9).byte(8, 16);
    Place();
    ExpectRecord(kPorts, RecordImage(2564),
                 RecordImage(2564)
                     .number(0, 2)
                     .text(4, "Serial Port 16550A Compatible")
                     .copied(4 + 48, "COM1")
                     .text(4 + 80, "USB"));
}

TEST_F(GetInfoDevices, LongDesignatorIsShortenedToItsField) {
    table.add(8, 1, 9).string(6, std::string(32, 'd')).byte(8, 16);
    table.add(8, 2, 9).string(6, std::string(31, 'e')).byte(8, 16);
    Place();
    ExpectRecord(kPorts, RecordImage(2564, 0),
                 RecordImage(2564, 0)
                     .number(0, 2)
                     .text(4, "USB")
                     .copied(4 + 48, std::string(28, 'd') + "...")
                     .text(4 + 80, "USB")
                     .copied(4 + 80 + 48, std::string(31, 'e')));
}

TEST_F(GetInfoDevices, PortsUpTo128AreWrittenPastTheRecordsThirtyTwo) {
    for (int i = 0; i < 140; ++i) table.add(8, 1, 9).string(6, std::to_string(i)).byte(8, 31);
    Place();
    RecordImage expected(PortRecord(128));
    expected.number(0, 128);
    for (std::size_t i = 0; i < 128; ++i)
        expected.text(4 + 80 * i, "Network Port").copied(4 + 80 * i + 48, std::to_string(i));
    ExpectRecord(kPorts, RecordImage(PortRecord(128)), expected);
}

TEST_F(GetInfoDevices, FansHaveTheirSpeedAlone) {
    table.add(27, 1, 15).byte(6, 0x63).word(12, 4800);
    table.add(27, 2, 15).word(12, 0);
    Place();
    ExpectRecord(
        kFans, RecordImage(3460),
        RecordImage(3460).number(0, 2).text(4 + 76, "4800 rpm").text(4 + 216 + 76, "0 rpm"));
}

TEST_F(GetInfoDevices, LongFanTextsRunIntoMinimumAndMaximum) {
    table.add(27, 1, 15).word(12, 0x8000);
    table.add(27, 2, 12);
    Place();
    ExpectRecord(kFans, RecordImage(3460),
                 RecordImage(3460)
                     .number(0, 2)
                     .text(4 + 76, "Unknown or the FAN is non-rotating")
                     .text(4 + 216 + 76, "SmBios can not supply this information"));
    FanInformation record{};
    EXPECT_EQ(GetInfo(kFans, &record), 0);
    EXPECT_EQ(std::string(record.fan[0].speed, 16), "Unknown or the F");
    EXPECT_EQ(std::string(record.fan[0].min, 16), "AN is non-rotati");
    EXPECT_STREQ(record.fan[0].max, "ng");
    EXPECT_STREQ(record.fan[1].max, "mation");
    EXPECT_STREQ(record.fan[1].IdString, "");
}

TEST_F(GetInfoDevices, SixtyThreeFansAreWrittenPastTheRecordsSixteen) {
    for (int i = 0; i < 70; ++i) table.add(27, 1, 15).word(12, static_cast<std::uint16_t>(i));
    Place();
    RecordImage expected(FanRecord(63));
    expected.number(0, 63);
    for (std::size_t i = 0; i < 63; ++i)
        expected.text(4 + 216 * i + 76, std::to_string(i) + " rpm");
    ExpectRecord(kFans, RecordImage(FanRecord(63)), expected);
}

TEST_F(GetInfoDevices, ProbesAreCountedAndNeverRead) {
    for (int i = 0; i < 5; ++i)
        table.add(26, 1, 22).string(4, "+12V").byte(5, 0x63).word(6, 1).word(8, 2).word(20, 3);
    for (int i = 0; i < 3; ++i) table.add(28, 1, 22).string(4, "CPU").byte(5, 0x63).word(20, 3);
    Place();
    ExpectRecord(kVoltages, RecordImage(kProbeRecord), RecordImage(kProbeRecord).number(0, 5));
    ExpectRecord(kTemperatures, RecordImage(kProbeRecord), RecordImage(kProbeRecord).number(0, 3));
}

TEST_F(GetInfoDevices, WithoutStructuresOnlyTheQuantitiesAreWritten) {
    table.add(0, 0, 20);
    Place();
    ExpectRecord(kPorts, RecordImage(2564), RecordImage(2564).number(0, 0));
    ExpectRecord(kFans, RecordImage(3460), RecordImage(3460).number(0, 0));
    ExpectRecord(kVoltages, RecordImage(kProbeRecord), RecordImage(kProbeRecord).number(0, 0));
    ExpectRecord(kTemperatures, RecordImage(kProbeRecord), RecordImage(kProbeRecord).number(0, 0));
}

TEST_F(GetInfoDevices, ProbeCountsAreNotBoundedByTheRecord) {
    for (int i = 0; i < 130; ++i) table.add(26, 1, 22);
    for (int i = 0; i < 130; ++i) table.add(28, 1, 22);
    Place();
    ExpectRecord(kVoltages, RecordImage(kProbeRecord), RecordImage(kProbeRecord).number(0, 127));
    ExpectRecord(kTemperatures, RecordImage(kProbeRecord),
                 RecordImage(kProbeRecord).number(0, 127));
}

}  // namespace
