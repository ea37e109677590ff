// SPDX-License-Identifier: MIT
//
// The layout of the records: no holes, and the sizes that agents were built with.
#include "InformationRecords.h"
#include "support/RecordLayout.h"

namespace {

TEST(RecordsTest, CacheHasTheLayoutThatAgentsUse) {
    ExpectLayout("CACHE", sizeof(CACHE),
                 {{offsetof(CACHE, MaxSize), 16},
                  {offsetof(CACHE, InstalledSize), 16},
                  {offsetof(CACHE, speed), 16},
                  {offsetof(CACHE, designation), 32}},
                 80);
}

TEST(RecordsTest, ProcessorHasTheLayoutThatAgentsUse) {
    ExpectLayout("CPU", sizeof(CPU),
                 {{offsetof(CPU, family), 48},
                  {offsetof(CPU, stepping), 16},
                  {offsetof(CPU, MaxSpeed), 16},
                  {offsetof(CPU, CurrentSpeed), 16},
                  {offsetof(CPU, ExternalClock), 16},
                  {offsetof(CPU, manufacturer), 48},
                  {offsetof(CPU, UsageRate), 16},
                  {offsetof(CPU, cache), 3 * 80},
                  {offsetof(CPU, IsUHT), 4},
                  {offsetof(CPU, IsDisabled), 4}},
                 424);
}

TEST(RecordsTest, BankHasTheLayoutThatAgentsUse) {
    ExpectLayout("BANK", sizeof(BANK),
                 {{offsetof(BANK, size), 16},
                  {offsetof(BANK, speed), 16},
                  {offsetof(BANK, type), 24},
                  {offsetof(BANK, TypeDetail), 32},
                  {offsetof(BANK, manufacturer), 32},
                  {offsetof(BANK, SlotNumber), 4}},
                 124);
}

TEST(RecordsTest, PortHasTheLayoutThatAgentsUse) {
    ExpectLayout("PORT", sizeof(PORT),
                 {{offsetof(PORT, type), 48}, {offsetof(PORT, description), 32}}, 80);
}

TEST(RecordsTest, PowerSupplyHasTheLayoutThatAgentsUse) {
    ExpectLayout("SYS_POWER", sizeof(SYS_POWER),
                 {{offsetof(SYS_POWER, manufacturer), 32},
                  {offsetof(SYS_POWER, ProductName), 32},
                  {offsetof(SYS_POWER, DeviceName), 32},
                  {offsetof(SYS_POWER, ProductVersion), 16},
                  {offsetof(SYS_POWER, SerialNo), 16},
                  {offsetof(SYS_POWER, status), 16},
                  {offsetof(SYS_POWER, BiosEnable), 8}},
                 152);
}

TEST(RecordsTest, SensorThresholdHasTheLayoutThatAgentsUse) {
    using Info = SensorThresholdInfo;
    ExpectLayout("SensorThresholdInfo", sizeof(Info),
                 {{offsetof(Info, DeviceID), 4},
                  {offsetof(Info, SensorType), 4},
                  {offsetof(Info, UpperNonRecoverThresholdValue), 8},
                  {offsetof(Info, UpperCriticalThresholdValue), 8},
                  {offsetof(Info, UpperNonCriticalThresholdValue), 8},
                  {offsetof(Info, LowerNonRecoverThreshold), 8},
                  {offsetof(Info, LowerCriticalThreshold), 8},
                  {offsetof(Info, LowerNonCriticalThreshold), 8},
                  {offsetof(Info, MaxThreshold), 8},
                  {offsetof(Info, MinThreshold), 8},
                  {offsetof(Info, readableFlag), 1},
                  {offsetof(Info, settableFlag), 1 + 2}},
                 76);
}

// The three kinds of sensor differ in the name of the reading alone; `status` is followed by two
// bytes of padding.
template <class Sensor>
void ExpectSensorLayout(const char* record, std::size_t reading) {
    ExpectLayout(record, sizeof(Sensor),
                 {{offsetof(Sensor, sensorNumber), 1},
                  {offsetof(Sensor, status), 1 + 2},
                  {offsetof(Sensor, DeviceID), 4},
                  {offsetof(Sensor, SensorType), 4},
                  {offsetof(Sensor, desc), 64},
                  {reading, 16},
                  {offsetof(Sensor, min), 16},
                  {offsetof(Sensor, max), 16},
                  {offsetof(Sensor, IdString), 16},
                  {offsetof(Sensor, sti), 76}},
                 216);
}

TEST(RecordsTest, SensorsHaveTheLayoutThatAgentsUse) {
    ExpectSensorLayout<FAN_DEVICE>("FAN_DEVICE", offsetof(FAN_DEVICE, speed));
    ExpectSensorLayout<VOLTAGE_PROBE>("VOLTAGE_PROBE", offsetof(VOLTAGE_PROBE, CurrentVoltage));
    ExpectSensorLayout<TEMPERATURE_PROBE>("TEMPERATURE_PROBE",
                                          offsetof(TEMPERATURE_PROBE, CurrentTemperature));
}

TEST(RecordsTest, UninterruptiblePowerSupplyHasTheLayoutThatAgentsUse) {
    ExpectLayout("UPSInfor", sizeof(UPSInfor),
                 {{offsetof(UPSInfor, DeviceName), 16},
                  {offsetof(UPSInfor, SerialNo), 32},
                  {offsetof(UPSInfor, ProductName), 16},
                  {offsetof(UPSInfor, BiosStatus), 16},
                  {offsetof(UPSInfor, Remain), 16},
                  {offsetof(UPSInfor, current), 16}},
                 112);
}

TEST(RecordsTest, BoardHasTheLayoutThatAgentsUse) {
    using Board = BaseBoardInformation;
    ExpectLayout("BaseBoardInformation", sizeof(Board),
                 {{offsetof(Board, ProductName), 32},
                  {offsetof(Board, RomVersion), 32},
                  {offsetof(Board, RomReleaseDate), 16},
                  {offsetof(Board, RomVendor), 32},
                  {offsetof(Board, SerialNo), 16},
                  {offsetof(Board, AssetTag), 32},
                  {offsetof(Board, Manufacturer), 32},
                  {offsetof(Board, RevisionLevel), 16}},
                 208);
}

TEST(RecordsTest, SystemHasTheLayoutThatAgentsUse) {
    ExpectLayout("SysInformation", sizeof(SysInformation),
                 {{offsetof(SysInformation, SysProductName), 32},
                  {offsetof(SysInformation, manufacturer), 32},
                  {offsetof(SysInformation, version), 16}},
                 80);
}

TEST(RecordsTest, ContainersOfProcessorsMemoryPortsAndPowerHaveTheLayoutThatAgentsUse) {
    ExpectLayout("ProcessorInformation", sizeof(ProcessorInformation),
                 {{offsetof(ProcessorInformation, quantity), 4},
                  {offsetof(ProcessorInformation, cpu), 8 * 424}},
                 3396);
    ExpectLayout("MemoryInformation", sizeof(MemoryInformation),
                 {{offsetof(MemoryInformation, TotalSize), 4},
                  {offsetof(MemoryInformation, quantity), 4},
                  {offsetof(MemoryInformation, bank), 16 * 124}},
                 1992);
    ExpectLayout("IOInformation", sizeof(IOInformation),
                 {{offsetof(IOInformation, quantity), 4}, {offsetof(IOInformation, port), 32 * 80}},
                 2564);
    ExpectLayout("SystemPowerInformation", sizeof(SystemPowerInformation),
                 {{offsetof(SystemPowerInformation, TotalNumber), 4},
                  {offsetof(SystemPowerInformation, RedundantNumber), 4},
                  {offsetof(SystemPowerInformation, PowerSupply), 8 * 152}},
                 1224);
    ExpectLayout(
        "UPSInformation", sizeof(UPSInformation),
        {{offsetof(UPSInformation, quantity), 4}, {offsetof(UPSInformation, ups), 16 * 112}}, 1796);
}

TEST(RecordsTest, ContainersOfSensorsAndLoadHaveTheLayoutThatAgentsUse) {
    ExpectLayout(
        "FanInformation", sizeof(FanInformation),
        {{offsetof(FanInformation, quantity), 4}, {offsetof(FanInformation, fan), 16 * 216}}, 3460);
    ExpectLayout("VoltageInformation", sizeof(VoltageInformation),
                 {{offsetof(VoltageInformation, quantity), 4},
                  {offsetof(VoltageInformation, voltage), 32 * 216}},
                 6916);
    ExpectLayout("TemperatureInformation", sizeof(TemperatureInformation),
                 {{offsetof(TemperatureInformation, quantity), 4},
                  {offsetof(TemperatureInformation, temperature), 32 * 216}},
                 6916);
    ExpectLayout("SensorThresholdInformation", sizeof(SensorThresholdInformation),
                 {{offsetof(SensorThresholdInformation, quantity), 4},
                  {offsetof(SensorThresholdInformation, SensorThreshold), 64 * 76}},
                 4868);
    ExpectLayout("CpuUsageRageInformation", sizeof(CpuUsageRageInformation),
                 {{offsetof(CpuUsageRageInformation, quantity), 4},
                  {offsetof(CpuUsageRageInformation, UsageRate), 8 * 4}},
                 36);
}

}  // namespace
