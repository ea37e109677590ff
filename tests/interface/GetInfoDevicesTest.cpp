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

class GetInfoDevicesTest : public InterfaceTest {};

TEST_F(GetInfoDevicesTest, PortsHaveATypeAndADesignator) {
    table.Add(8, 1, 9).String(6, "COM1").Byte(8, 9);
    table.Add(8, 2, 9).Byte(8, 16);
    Place();
    ExpectRecord(kPorts, RecordImage(2564),
                 RecordImage(2564)
                     .Number(0, 2)
                     .Text(4, "Serial Port 16550A Compatible")
                     .Copied(4 + 48, "COM1")
                     .Text(4 + 80, "USB"));
}

TEST_F(GetInfoDevicesTest, LongDesignatorIsShortenedToItsField) {
    table.Add(8, 1, 9).String(6, std::string(32, 'd')).Byte(8, 16);
    table.Add(8, 2, 9).String(6, std::string(31, 'e')).Byte(8, 16);
    Place();
    ExpectRecord(kPorts, RecordImage(2564, 0),
                 RecordImage(2564, 0)
                     .Number(0, 2)
                     .Text(4, "USB")
                     .Copied(4 + 48, std::string(28, 'd') + "...")
                     .Text(4 + 80, "USB")
                     .Copied(4 + 80 + 48, std::string(31, 'e')));
}

TEST_F(GetInfoDevicesTest, PortsUpTo128AreWrittenPastTheRecordsThirtyTwo) {
    for (int i = 0; i < 140; ++i) table.Add(8, 1, 9).String(6, std::to_string(i)).Byte(8, 31);
    Place();
    RecordImage expected(PortRecord(128));
    expected.Number(0, 128);
    for (std::size_t i = 0; i < 128; ++i)
        expected.Text(4 + 80 * i, "Network Port").Copied(4 + 80 * i + 48, std::to_string(i));
    ExpectRecord(kPorts, RecordImage(PortRecord(128)), expected);
}

TEST_F(GetInfoDevicesTest, FansHaveTheirSpeedAlone) {
    table.Add(27, 1, 15).Byte(6, 0x63).Word(12, 4800);
    table.Add(27, 2, 15).Word(12, 0);
    Place();
    ExpectRecord(
        kFans, RecordImage(3460),
        RecordImage(3460).Number(0, 2).Text(4 + 76, "4800 rpm").Text(4 + 216 + 76, "0 rpm"));
}

TEST_F(GetInfoDevicesTest, LongFanTextsRunIntoMinimumAndMaximum) {
    table.Add(27, 1, 15).Word(12, 0x8000);
    table.Add(27, 2, 12);
    Place();
    ExpectRecord(kFans, RecordImage(3460),
                 RecordImage(3460)
                     .Number(0, 2)
                     .Text(4 + 76, "Unknown or the FAN is non-rotating")
                     .Text(4 + 216 + 76, "SmBios can not supply this information"));
    FanInformation record{};
    EXPECT_EQ(GetInfo(kFans, &record), 0);
    EXPECT_EQ(std::string(record.fan[0].speed, 16), "Unknown or the F");
    EXPECT_EQ(std::string(record.fan[0].min, 16), "AN is non-rotati");
    EXPECT_STREQ(record.fan[0].max, "ng");
    EXPECT_STREQ(record.fan[1].max, "mation");
    EXPECT_STREQ(record.fan[1].IdString, "");
}

TEST_F(GetInfoDevicesTest, SixtyThreeFansAreWrittenPastTheRecordsSixteen) {
    for (int i = 0; i < 70; ++i) table.Add(27, 1, 15).Word(12, static_cast<std::uint16_t>(i));
    Place();
    RecordImage expected(FanRecord(63));
    expected.Number(0, 63);
    for (std::size_t i = 0; i < 63; ++i)
        expected.Text(4 + 216 * i + 76, std::to_string(i) + " rpm");
    ExpectRecord(kFans, RecordImage(FanRecord(63)), expected);
}

TEST_F(GetInfoDevicesTest, ProbesAreCountedAndNeverRead) {
    for (int i = 0; i < 5; ++i)
        table.Add(26, 1, 22).String(4, "+12V").Byte(5, 0x63).Word(6, 1).Word(8, 2).Word(20, 3);
    for (int i = 0; i < 3; ++i) table.Add(28, 1, 22).String(4, "CPU").Byte(5, 0x63).Word(20, 3);
    Place();
    ExpectRecord(kVoltages, RecordImage(kProbeRecord), RecordImage(kProbeRecord).Number(0, 5));
    ExpectRecord(kTemperatures, RecordImage(kProbeRecord), RecordImage(kProbeRecord).Number(0, 3));
}

TEST_F(GetInfoDevicesTest, WithoutStructuresOnlyTheQuantitiesAreWritten) {
    table.Add(0, 0, 20);
    Place();
    ExpectRecord(kPorts, RecordImage(2564), RecordImage(2564).Number(0, 0));
    ExpectRecord(kFans, RecordImage(3460), RecordImage(3460).Number(0, 0));
    ExpectRecord(kVoltages, RecordImage(kProbeRecord), RecordImage(kProbeRecord).Number(0, 0));
    ExpectRecord(kTemperatures, RecordImage(kProbeRecord), RecordImage(kProbeRecord).Number(0, 0));
}

TEST_F(GetInfoDevicesTest, ProbeCountsAreNotBoundedByTheRecord) {
    for (int i = 0; i < 130; ++i) table.Add(26, 1, 22);
    for (int i = 0; i < 130; ++i) table.Add(28, 1, 22);
    Place();
    ExpectRecord(kVoltages, RecordImage(kProbeRecord), RecordImage(kProbeRecord).Number(0, 127));
    ExpectRecord(kTemperatures, RecordImage(kProbeRecord),
                 RecordImage(kProbeRecord).Number(0, 127));
}

}  // namespace
