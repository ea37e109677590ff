// SPDX-License-Identifier: MIT
//
// The operations that IPMIsupport passes on to its sensors and its inventory.

#include "IPMI/IPMIsupport.h"

int IPMIsupport::GetDeviceID(unsigned char* majorFirmwareRevision,
                             unsigned char* minorFirmwareRevision) {
    return sensor.GetDeviceID(majorFirmwareRevision, minorFirmwareRevision);
}

int IPMIsupport::GetSDRRepositoryInfo(int& recordCount, int& sdrVersion) {
    return sensor.GetSDRRepositoryInfo(recordCount, sdrVersion);
}

int IPMIsupport::GetSensorNumbers(int n) {
    return sensor.GetSensorNumbers(n);
}

int IPMIsupport::GetSensorNumberInfo(unsigned char entityID, unsigned char sensorType, int n,
                                     SensorNumberInfo& info) {
    return sensor.GetSensorNumberInfo(entityID, sensorType, n, info);
}

int IPMIsupport::GetSensorFormulaParameter(unsigned char index, SensorFormulaParameter& out) {
    return sensor.GetSensorFormulaParameter(index, out);
}

int IPMIsupport::GetThreshold(int index, SensorThresholdInfoRaw& raw,
                              SensorThresholdInfoConverted& converted) {
    return sensor.GetThreshold(index, raw, converted);
}

int IPMIsupport::GetValueConversion(SensorFormulaParameter p, unsigned char& raw, double value) {
    return sensor.GetValueConversion(p, raw, value);
}

int IPMIsupport::SetSensorThreshold(unsigned char sensorNumber, SensorThresholdInfoRaw raw) {
    return sensor.SetSensorThreshold(sensorNumber, raw);
}

int IPMIsupport::GetFanEntityID(int i, unsigned char& entityID) {
    return sensor.GetFanEntityID(i, entityID);
}

int IPMIsupport::GetVoltageEntityID(int i, unsigned char& entityID) {
    return sensor.GetVoltageEntityID(i, entityID);
}

int IPMIsupport::GetTemperatureEntityID(int i, unsigned char& entityID) {
    return sensor.GetTemperatureEntityID(i, entityID);
}

int IPMIsupport::GetFanSensorNumber(int i, unsigned char& number) {
    return sensor.GetFanSensorNumber(i, number);
}

int IPMIsupport::GetVoltageSensorNumber(int i, unsigned char& number) {
    return sensor.GetVoltageSensorNumber(i, number);
}

int IPMIsupport::GetTemperatureSensorNumber(int i, unsigned char& number) {
    return sensor.GetTemperatureSensorNumber(i, number);
}

int IPMIsupport::GetFanSensorType(int i, unsigned char& type) {
    return sensor.GetFanSensorType(i, type);
}

int IPMIsupport::GetVoltageSensorType(int i, unsigned char& type) {
    return sensor.GetVoltageSensorType(i, type);
}

int IPMIsupport::GetTemperatureSensorType(int i, unsigned char& type) {
    return sensor.GetTemperatureSensorType(i, type);
}

int IPMIsupport::GetFanIDString(int i, char* out) {
    return sensor.GetFanIDString(i, out);
}

int IPMIsupport::GetVoltageIDString(int i, char* out) {
    return sensor.GetVoltageIDString(i, out);
}

int IPMIsupport::GetTemperatureIDString(int i, char* out) {
    return sensor.GetTemperatureIDString(i, out);
}

int IPMIsupport::GetVoltageMax(int i, char* out) {
    return sensor.GetVoltageMax(i, out);
}

int IPMIsupport::GetVoltageMin(int i, char* out) {
    return sensor.GetVoltageMin(i, out);
}

int IPMIsupport::GetFanSensorThreshold(int i, SensorThresholdInfoRaw& raw,
                                       SensorThresholdInfoConverted& converted) {
    return sensor.GetFanSensorThreshold(i, raw, converted);
}

int IPMIsupport::GetVoltageSensorThreshold(int i, SensorThresholdInfoRaw& raw,
                                           SensorThresholdInfoConverted& converted) {
    return sensor.GetVoltageSensorThreshold(i, raw, converted);
}

int IPMIsupport::GetTemperatureSensorThreshold(int i, SensorThresholdInfoRaw& raw,
                                               SensorThresholdInfoConverted& converted) {
    return sensor.GetTemperatureSensorThreshold(i, raw, converted);
}

int IPMIsupport::GetFanSpeed(int i, char* out) {
    return sensor.GetFanSpeed(i, out);
}

int IPMIsupport::GetVoltageCurrent(int i, char* out) {
    return sensor.GetVoltageCurrent(i, out);
}

int IPMIsupport::GetTemperatureCurrent(int i, char* out) {
    return sensor.GetTemperatureCurrent(i, out);
}

int IPMIsupport::GetFanStatus(int i, char& status) {
    return sensor.GetFanStatus(i, status);
}

int IPMIsupport::GetFanStatusDescription(int i, char* out) {
    return sensor.GetFanStatusDescription(i, out);
}

int IPMIsupport::GetVoltageStatusDescription(int i, char* out) {
    return sensor.GetVoltageStatusDescription(i, out);
}

int IPMIsupport::GetTemperatureStatusDescription(int i, char* out) {
    return sensor.GetTemperatureStatusDescription(i, out);
}

int IPMIsupport::GetFRUInfo() {
    return fru.GetFRUInfo();
}

int IPMIsupport::GetBoardManufacturer(char* out) {
    return fru.GetBoardManufacturer(out);
}

int IPMIsupport::GetBoardProductName(char* out) {
    return fru.GetBoardProductName(out);
}

int IPMIsupport::GetBoardSerialNumber(char* out) {
    return fru.GetBoardSerialNumber(out);
}

int IPMIsupport::GetBoardPartNumber(char* out) {
    return fru.GetBoardPartNumber(out);
}

int IPMIsupport::GetChassisPartNumber(char* out) {
    return fru.GetChassisPartNumber(out);
}

int IPMIsupport::GetChassisSerialNumber(char* out) {
    return fru.GetChassisSerialNumber(out);
}

int IPMIsupport::GetProductManufacturerName(char* out) {
    return fru.GetProductManufacturerName(out);
}

int IPMIsupport::GetProductName(char* out) {
    return fru.GetProductName(out);
}

int IPMIsupport::GetProductPartName(char* out) {
    return fru.GetProductPartName(out);
}

int IPMIsupport::GetProductSerialNumber(char* out) {
    return fru.GetProductSerialNumber(out);
}

int IPMIsupport::GetProductVersion(char* out) {
    return fru.GetProductVersion(out);
}

int IPMIsupport::GetProductAssetTag(char* out) {
    return fru.GetProductAssetTag(out);
}
