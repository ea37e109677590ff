// SPDX-License-Identifier: MIT
//
// The layout of the IPMI classes and records, which agents were compiled with. Doubles are aligned
// on 4 bytes.

#include "support/FieldTable.h"
#include "support/IpmiNumbers.h"
#include "support/IpmiTest.h"

namespace {

constexpr Same kRequest[] = {
    {offsetof(IMBPREQUESTDATA, cmdType), 0},     {offsetof(IMBPREQUESTDATA, rsSa), 1},
    {offsetof(IMBPREQUESTDATA, busType), 2},     {offsetof(IMBPREQUESTDATA, netFn), 3},
    {offsetof(IMBPREQUESTDATA, rsLun), 4},       {offsetof(IMBPREQUESTDATA, data), 8},
    {offsetof(IMBPREQUESTDATA, dataLength), 12}, {sizeof(IMBPREQUESTDATA), 16},
};
static_assert(AllSame(kRequest), "IMBPREQUESTDATA");

constexpr Same kHeader[] = {
    {offsetof(SDR::SensorRecordHeader, RecordID), 0},
    {offsetof(SDR::SensorRecordHeader, version), 2},
    {offsetof(SDR::SensorRecordHeader, type), 3},
    {offsetof(SDR::SensorRecordHeader, length), 4},
    {sizeof(SDR::SensorRecordHeader), 5},
};
static_assert(AllSame(kHeader), "SDR SensorRecordHeader");

constexpr Same kKey[] = {
    {offsetof(SDR::RecordKey, OwnerID), 0},
    {offsetof(SDR::RecordKey, OwnerLUN), 1},
    {offsetof(SDR::RecordKey, SensorNumber), 2},
    {sizeof(SDR::RecordKey), 3},
};
static_assert(AllSame(kKey), "SDR RecordKey");

constexpr Same kBody[] = {
    {offsetof(SDR::RecordBody, EntityID), 0},
    {offsetof(SDR::RecordBody, EntityInstance), 1},
    {offsetof(SDR::RecordBody, SensorInitialization), 2},
    {offsetof(SDR::RecordBody, SensorCapabilities), 3},
    {offsetof(SDR::RecordBody, SensorType), 4},
    {offsetof(SDR::RecordBody, EventType), 5},
    {offsetof(SDR::RecordBody, ThresholdReadingMaskLow), 6},
    {offsetof(SDR::RecordBody, ThresholdReadingMaskUp), 8},
    {offsetof(SDR::RecordBody, DiscreteReadingMask), 10},
    {offsetof(SDR::RecordBody, unit1), 12},
    {offsetof(SDR::RecordBody, BaseUnit), 13},
    {offsetof(SDR::RecordBody, ModifierUnit), 14},
    {offsetof(SDR::RecordBody, linearization), 15},
    {offsetof(SDR::RecordBody, M), 16},
    {offsetof(SDR::RecordBody, tolerance), 17},
    {offsetof(SDR::RecordBody, B), 18},
    {offsetof(SDR::RecordBody, accuracy), 19},
    {offsetof(SDR::RecordBody, accuracyExp), 20},
    {offsetof(SDR::RecordBody, RExp), 21},
    {offsetof(SDR::RecordBody, flags), 22},
    {offsetof(SDR::RecordBody, NominalReading), 23},
    {offsetof(SDR::RecordBody, NormalMaximumReading), 24},
    {offsetof(SDR::RecordBody, NormalMinimumReading), 25},
    {offsetof(SDR::RecordBody, SensorMaximumReading), 26},
    {offsetof(SDR::RecordBody, SensorMinimumReading), 27},
    {offsetof(SDR::RecordBody, UperNonRecoverableThreshold), 28},
    {offsetof(SDR::RecordBody, UperCriticalThreshold), 29},
    {offsetof(SDR::RecordBody, UperNonCriticalThreshold), 30},
    {offsetof(SDR::RecordBody, LowerNonRecoverableThreshold), 31},
    {offsetof(SDR::RecordBody, LowerCriticalrThreshold), 32},
    {offsetof(SDR::RecordBody, LowerNonCriticalThreshold), 33},
    {offsetof(SDR::RecordBody, PositiveGoing), 34},
    {offsetof(SDR::RecordBody, NegativeGoing), 35},
    {offsetof(SDR::RecordBody, reserved), 36},
    {offsetof(SDR::RecordBody, OEM), 38},
    {offsetof(SDR::RecordBody, IDStringTypeLength), 39},
    {offsetof(SDR::RecordBody, IDString), 40},
    {sizeof(SDR::RecordBody), 56},
    {sizeof(SDR), 65},
};
static_assert(AllSame(kBody), "record body, from byte 8 of the record on");

constexpr Same kFormula[] = {
    {offsetof(SensorFormulaParameter, Unit1), 0},
    {offsetof(SensorFormulaParameter, SensorLinearization), 1},
    {offsetof(SensorFormulaParameter, M), 2},
    {offsetof(SensorFormulaParameter, B), 4},
    {offsetof(SensorFormulaParameter, BExp), 6},
    {offsetof(SensorFormulaParameter, RExp), 7},
    {sizeof(SensorFormulaParameter), 8},
};
static_assert(AllSame(kFormula), "SensorFormulaParameter");

constexpr Same kRaw[] = {
    {offsetof(SensorThresholdInfoRaw, deviceID), 0},
    {offsetof(SensorThresholdInfoRaw, sensorType), 4},
    {offsetof(SensorThresholdInfoRaw, UpperNonRecoverThresholdValue), 8},
    {offsetof(SensorThresholdInfoRaw, UpperCriticalThresholdValue), 9},
    {offsetof(SensorThresholdInfoRaw, UpperNonCriticalThresholdValue), 10},
    {offsetof(SensorThresholdInfoRaw, LowerNonRecoverThreshold), 11},
    {offsetof(SensorThresholdInfoRaw, LowerCriticalThreshold), 12},
    {offsetof(SensorThresholdInfoRaw, LowerNonCriticalThreshold), 13},
    {offsetof(SensorThresholdInfoRaw, MaxThreshold), 14},
    {offsetof(SensorThresholdInfoRaw, MinThreshold), 15},
    {offsetof(SensorThresholdInfoRaw, readableFlag), 16},
    {offsetof(SensorThresholdInfoRaw, settableFlag), 17},
    {offsetof(SensorThresholdInfoRaw, changeTrend), 20},
    {sizeof(SensorThresholdInfoRaw), 24},
};
static_assert(AllSame(kRaw), "SensorThresholdInfoRaw");

constexpr Same kConverted[] = {
    {offsetof(SensorThresholdInfoConverted, deviceID), 0},
    {offsetof(SensorThresholdInfoConverted, sensorType), 4},
    {offsetof(SensorThresholdInfoConverted, UpperNonRecoverThresholdValue), 8},
    {offsetof(SensorThresholdInfoConverted, UpperCriticalThresholdValue), 16},
    {offsetof(SensorThresholdInfoConverted, UpperNonCriticalThresholdValue), 24},
    {offsetof(SensorThresholdInfoConverted, LowerNonRecoverThreshold), 32},
    {offsetof(SensorThresholdInfoConverted, LowerCriticalThreshold), 40},
    {offsetof(SensorThresholdInfoConverted, LowerNonCriticalThreshold), 48},
    {offsetof(SensorThresholdInfoConverted, MaxThreshold), 56},
    {offsetof(SensorThresholdInfoConverted, MinThreshold), 64},
    {offsetof(SensorThresholdInfoConverted, readableFlag), 72},
    {offsetof(SensorThresholdInfoConverted, settableFlag), 73},
    {offsetof(SensorThresholdInfoConverted, changeTrend), 76},
    {sizeof(SensorThresholdInfoConverted), 80},
};
static_assert(AllSame(kConverted), "SensorThresholdInfoConverted");

constexpr Same kDescription[] = {
    {offsetof(SensorDescription, SensorNumbers), 0},
    {offsetof(SensorDescription, SensorEntityInstance), 1},
    {offsetof(SensorDescription, SensorEntityID), 2},
    {offsetof(SensorDescription, SensorType), 3},
    {offsetof(SensorDescription, SensorEventReadingCode), 4},
    {offsetof(SensorDescription, SensorCodeOffset), 5},
    {offsetof(SensorDescription, SensorDeviceStatus), 6},
    {offsetof(SensorDescription, SensorReadingMaxD), 8},
    {offsetof(SensorDescription, isAnalogReading), 16},
    {offsetof(SensorDescription, IDString), 20},
    {offsetof(SensorDescription, SensorReadingValue), 84},
    {offsetof(SensorDescription, SensorUnit), 148},
    {offsetof(SensorDescription, SensorReadingMax), 212},
    {offsetof(SensorDescription, SensorReadingMin), 276},
    {offsetof(SensorDescription, sfp), 340},
    {offsetof(SensorDescription, stir), 348},
    {offsetof(SensorDescription, stic), 372},
    {sizeof(SensorDescription), 452},
};
static_assert(AllSame(kDescription), "SensorDescription");

constexpr Same kTables[] = {
    {offsetof(TemSensorsInfo, quantity), 0}, {offsetof(TemSensorsInfo, sd), 4},
    {sizeof(TemSensorsInfo), 28932},         {offsetof(VoltSensorsInfo, quantity), 0},
    {offsetof(VoltSensorsInfo, sd), 4},      {sizeof(VoltSensorsInfo), 28932},
    {offsetof(FanSensorsInfo, quantity), 0}, {offsetof(FanSensorsInfo, sd), 4},
    {sizeof(FanSensorsInfo), 28932},         {offsetof(ProcessorSensorsInfo, quantity), 0},
    {offsetof(ProcessorSensorsInfo, sd), 4}, {sizeof(ProcessorSensorsInfo), 28932},
};
static_assert(AllSame(kTables), "sensor tables");

constexpr Same kNumbers[] = {
    {offsetof(SensorNumberInfo, quantity), 0},
    {offsetof(SensorNumberInfo, sensorOrder), 4},
    {offsetof(SensorNumberInfo, sensorNumber), 260},
    {sizeof(SensorNumberInfo), 324},
};
static_assert(AllSame(kNumbers), "SensorNumberInfo");

constexpr Same kChannel[] = {
    {offsetof(ChannelInfo, channelNumber), 0},
    {offsetof(ChannelInfo, channelProtocoltype), 1},
    {offsetof(ChannelInfo, channelMediatype), 2},
    {sizeof(ChannelInfo), 3},
};
static_assert(AllSame(kChannel), "ChannelInfo");

constexpr Same kLan[] = {
    {offsetof(LANParameter, channelNumber), 0},
    {offsetof(LANParameter, IPAddress), 1},
    {offsetof(LANParameter, MACAddress), 5},
    {offsetof(LANParameter, SubnetMask), 11},
    {sizeof(LANParameter), 15},
};
static_assert(AllSame(kLan), "LANParameter");

constexpr Same kWatchdog[] = {
    {offsetof(WatchdogTimerInfo, timerAction), 0},
    {offsetof(WatchdogTimerInfo, countDown), 2},
    {sizeof(WatchdogTimerInfo), 4},
};
static_assert(AllSame(kWatchdog), "WatchdogTimerInfo");

constexpr Same kInventory[] = {
    {offsetof(FRU::_FRUInfo, FRUInfoSize), 0},
    {offsetof(FRU::_FRUInfo, accessMode), 4},
    {sizeof(FRU::_FRUInfo), 8},
};
static_assert(AllSame(kInventory), "FRU _FRUInfo");

constexpr Same kAreas[] = {
    {offsetof(FRU::_CommomHeaderInfo, version), 0},
    {offsetof(FRU::_CommomHeaderInfo, internalUseAreaStartOffset), 2},
    {offsetof(FRU::_CommomHeaderInfo, chassisInfoAreaStartOffset), 4},
    {offsetof(FRU::_CommomHeaderInfo, boardAreaStartOffset), 6},
    {offsetof(FRU::_CommomHeaderInfo, productInfoAreaStartOffset), 8},
    {offsetof(FRU::_CommomHeaderInfo, multiRecordAreaStartOffset), 10},
    {sizeof(FRU::_CommomHeaderInfo), 12},
};
static_assert(AllSame(kAreas), "FRU _CommomHeaderInfo");

constexpr Same kFields[] = {
    {offsetof(FRU::_ManufacturerInfo, typeCode), 0},
    {offsetof(FRU::_ManufacturerInfo, manufacturerBytesLen), 4},
    {offsetof(FRU::_ManufacturerInfo, manufacturer), 8},
    {sizeof(FRU::_ManufacturerInfo), 72},
    {offsetof(FRU::_ProductNameInfo, typeCode), 0},
    {offsetof(FRU::_ProductNameInfo, productNameBytesLen), 4},
    {offsetof(FRU::_ProductNameInfo, productName), 8},
    {sizeof(FRU::_ProductNameInfo), 72},
    {offsetof(FRU::_SerialNumberInfo, typeCode), 0},
    {offsetof(FRU::_SerialNumberInfo, serialNumberBytesLen), 4},
    {offsetof(FRU::_SerialNumberInfo, serialNumber), 8},
    {sizeof(FRU::_SerialNumberInfo), 72},
    {offsetof(FRU::_PartNumberInfo, typeCode), 0},
    {offsetof(FRU::_PartNumberInfo, PartNumberBytesLen), 4},
    {offsetof(FRU::_PartNumberInfo, PartNumber), 8},
    {sizeof(FRU::_PartNumberInfo), 72},
    {offsetof(FRU::_ProductVersionInfo, typeCode), 0},
    {offsetof(FRU::_ProductVersionInfo, ProductVersionBytesLen), 4},
    {offsetof(FRU::_ProductVersionInfo, ProductVersion), 8},
    {sizeof(FRU::_ProductVersionInfo), 72},
    {offsetof(FRU::_AssetTagInfo, typeCode), 0},
    {offsetof(FRU::_AssetTagInfo, AssetTagInfoBytesLen), 4},
    {offsetof(FRU::_AssetTagInfo, AssetTag), 8},
    {sizeof(FRU::_AssetTagInfo), 72},
};
static_assert(AllSame(kFields), "inventory fields");

constexpr Same kBoard[] = {
    {offsetof(FRU::_BoardInfo, version), 0},
    {offsetof(FRU::_BoardInfo, boardInfoAreaLength), 4},
    {offsetof(FRU::_BoardInfo, languageCode), 8},
    {offsetof(FRU::_BoardInfo, ManufacturerInfo), 12},
    {offsetof(FRU::_BoardInfo, ProductNameInfo), 84},
    {offsetof(FRU::_BoardInfo, SerialNumberInfo), 156},
    {offsetof(FRU::_BoardInfo, PartNumberInfo), 228},
    {sizeof(FRU::_BoardInfo), 300},
};
static_assert(AllSame(kBoard), "FRU _BoardInfo");

constexpr Same kChassis[] = {
    {offsetof(FRU::_ChassisInfo, version), 0},
    {offsetof(FRU::_ChassisInfo, chassisInfoAreaLength), 4},
    {offsetof(FRU::_ChassisInfo, chassisType), 8},
    {offsetof(FRU::_ChassisInfo, PartNumberInfo), 12},
    {offsetof(FRU::_ChassisInfo, SerialNumberInfo), 84},
    {sizeof(FRU::_ChassisInfo), 156},
};
static_assert(AllSame(kChassis), "FRU _ChassisInfo");

constexpr Same kProduct[] = {
    {offsetof(FRU::_ProductInfo, version), 0},
    {offsetof(FRU::_ProductInfo, productInfoAreaLength), 4},
    {offsetof(FRU::_ProductInfo, languageCode), 8},
    {offsetof(FRU::_ProductInfo, ManufacturerNameInfo), 12},
    {offsetof(FRU::_ProductInfo, ProductNameInfo), 84},
    {offsetof(FRU::_ProductInfo, PartModuleInfo), 156},
    {offsetof(FRU::_ProductInfo, ProductVersionInfo), 228},
    {offsetof(FRU::_ProductInfo, SerialNumberInfo), 300},
    {offsetof(FRU::_ProductInfo, AssetTagInfo), 372},
    {sizeof(FRU::_ProductInfo), 444},
};
static_assert(AllSame(kProduct), "FRU _ProductInfo");

class IpmiLayoutTest : public IpmiTest {};

// Where a member stands in its object; classes with virtual functions have no offsetof.
template <class Object, class Member>
std::ptrdiff_t Place(const Object& object, const Member& member) {
    return reinterpret_cast<const char*>(&member) - reinterpret_cast<const char*>(&object);
}

TEST_F(IpmiLayoutTest, TheMembersOfTheClassesStandWhereAgentsLookForThem) {
    constexpr std::ptrdiff_t kBase = 32;
    constexpr std::ptrdiff_t kTable = 28932;
    const IPMIsupport& facade = Support();
    const Sensor& sensor = facade.sensor;
    const FRU& fru = facade.fru;
    ExpectNumbers({
        {"facade.IsSupportKCS", Place(facade, facade.IsSupportKCS), 4},
        {"facade.IsSupportSMIC", Place(facade, facade.IsSupportSMIC), 8},
        {"facade.request", Place(facade, facade.request), 12},
        {"facade.ResponseBuffer", Place(facade, facade.ResponseBuffer), 28},
        {"facade.sensor", Place(facade, facade.sensor), kBase},
        {"sensor.sdr", Place(sensor, sensor.sdr), kBase},
        {"sensor.TSInfo", Place(sensor, sensor.TSInfo), kBase + 68},
        {"sensor.VSInfo", Place(sensor, sensor.VSInfo), kBase + 68 + kTable},
        {"sensor.FSInfo", Place(sensor, sensor.FSInfo), kBase + 68 + 2 * kTable},
        {"sensor.PSInfo", Place(sensor, sensor.PSInfo), kBase + 68 + 3 * kTable},
        {"sensor.SensorsInformation", Place(sensor, sensor.SensorsInformation),
         kBase + 68 + 4 * kTable},
        {"facade.fru", Place(facade, facade.fru), kBase + kBase + 68 + 4 * kTable + 4},
        {"fru.FRUInfo", Place(fru, fru.FRUInfo), kBase},
        {"fru.CommomHeaderInfo", Place(fru, fru.CommomHeaderInfo), kBase + 8},
        {"fru.BoardInfo", Place(fru, fru.BoardInfo), kBase + 20},
        {"fru.ChassisInfo", Place(fru, fru.ChassisInfo), kBase + 320},
        {"fru.ProductInfo", Place(fru, fru.ProductInfo), kBase + 476},
        {"size of fru", sizeof fru, 952},
    });
}

}  // namespace
