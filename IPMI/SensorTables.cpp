// SPDX-License-Identifier: MIT
//
// Builds the four sensor tables from the walk's entries and answers what they hold. No function
// here sends a request.

#include <cstring>

#include "IPMI/Sensor.h"
#include "IPMI/SensorTable.h"
#include "IPMI/WalkEntries.h"

using namespace talvane;

namespace {

// Copies those of the walk's first n entries that have the type into the table, from its first
// entry on, and adds their number to the table's quantity. Returns -1 when n is below 1, else 0.
template <class Table>
int Collect(const WalkEntries& walk, int n, int type, bool analogOnly, Table& table) {
    if (n < 1) return -1;
    std::size_t copied = 0;
    for (int j = 0; j < n && copied < std::size(table.sd); ++j) {
        const SensorDescription* const entry = walk.At(j);
        if (entry == nullptr) break;
        if (entry->SensorType != type || (analogOnly && entry->isAnalogReading != 0)) continue;
        table.sd[copied] = *entry;
        ++copied;
        ++table.quantity;
    }
    return 0;
}

int CopyByte(const SensorDescription* sensor, unsigned char SensorDescription::*field,
             unsigned char& out) {
    if (sensor == nullptr) return -1;
    out = sensor->*field;
    return 0;
}

int CopyText(const SensorDescription* sensor, char (SensorDescription::*field)[64], char* out) {
    if (sensor == nullptr || out == nullptr) return -1;
    std::strcpy(out, sensor->*field);
    return 0;
}

int CopyThresholds(const SensorDescription* sensor, SensorThresholdInfoRaw& raw,
                   SensorThresholdInfoConverted& converted) {
    if (sensor == nullptr) return -1;
    raw = sensor->stir;
    converted = sensor->stic;
    return 0;
}

}  // namespace

int Sensor::GetTemSensorsInfo(int n) {
    return Collect(WalkEntries(SensorsInformation), n, SENSOR_TYPE_TEMPERATURE, true, TSInfo);
}

int Sensor::GetVoltSensorsInfo(int n) {
    return Collect(WalkEntries(SensorsInformation), n, SENSOR_TYPE_VOLTAGE, false, VSInfo);
}

int Sensor::GetFanSensorsInfo(int n) {
    return Collect(WalkEntries(SensorsInformation), n, SENSOR_TYPE_FAN, false, FSInfo);
}

int Sensor::GetProcessorSensorInfo(int n) {
    return Collect(WalkEntries(SensorsInformation), n, SENSOR_TYPE_PROCESSOR, false, PSInfo);
}

// Kept: processor sensors only show whether a processor is present.
int Sensor::GetProcessorTemperature(char*) {
    return 0;
}

int Sensor::GetProcessorVoltage(char*) {
    return 0;
}

int Sensor::GetFanEntityID(int i, unsigned char& entityID) {
    return CopyByte(EntryOf(FSInfo, i), &SensorDescription::SensorEntityID, entityID);
}

int Sensor::GetVoltageEntityID(int i, unsigned char& entityID) {
    return CopyByte(EntryOf(VSInfo, i), &SensorDescription::SensorEntityID, entityID);
}

int Sensor::GetTemperatureEntityID(int i, unsigned char& entityID) {
    return CopyByte(EntryOf(TSInfo, i), &SensorDescription::SensorEntityID, entityID);
}

int Sensor::GetFanSensorNumber(int i, unsigned char& number) {
    return CopyByte(EntryOf(FSInfo, i), &SensorDescription::SensorNumbers, number);
}

int Sensor::GetVoltageSensorNumber(int i, unsigned char& number) {
    return CopyByte(EntryOf(VSInfo, i), &SensorDescription::SensorNumbers, number);
}

int Sensor::GetTemperatureSensorNumber(int i, unsigned char& number) {
    return CopyByte(EntryOf(TSInfo, i), &SensorDescription::SensorNumbers, number);
}

int Sensor::GetFanSensorType(int i, unsigned char& type) {
    return CopyByte(EntryOf(FSInfo, i), &SensorDescription::SensorType, type);
}

int Sensor::GetVoltageSensorType(int i, unsigned char& type) {
    return CopyByte(EntryOf(VSInfo, i), &SensorDescription::SensorType, type);
}

int Sensor::GetTemperatureSensorType(int i, unsigned char& type) {
    return CopyByte(EntryOf(TSInfo, i), &SensorDescription::SensorType, type);
}

int Sensor::GetFanIDString(int i, char* out) {
    return CopyText(EntryOf(FSInfo, i), &SensorDescription::IDString, out);
}

int Sensor::GetVoltageIDString(int i, char* out) {
    return CopyText(EntryOf(VSInfo, i), &SensorDescription::IDString, out);
}

int Sensor::GetTemperatureIDString(int i, char* out) {
    return CopyText(EntryOf(TSInfo, i), &SensorDescription::IDString, out);
}

int Sensor::GetVoltageMax(int i, char* out) {
    return CopyText(EntryOf(VSInfo, i), &SensorDescription::SensorReadingMax, out);
}

int Sensor::GetVoltageMin(int i, char* out) {
    return CopyText(EntryOf(VSInfo, i), &SensorDescription::SensorReadingMin, out);
}

int Sensor::GetFanSensorThreshold(int i, SensorThresholdInfoRaw& raw,
                                  SensorThresholdInfoConverted& converted) {
    return CopyThresholds(EntryOf(FSInfo, i), raw, converted);
}

int Sensor::GetVoltageSensorThreshold(int i, SensorThresholdInfoRaw& raw,
                                      SensorThresholdInfoConverted& converted) {
    return CopyThresholds(EntryOf(VSInfo, i), raw, converted);
}

int Sensor::GetTemperatureSensorThreshold(int i, SensorThresholdInfoRaw& raw,
                                          SensorThresholdInfoConverted& converted) {
    return CopyThresholds(EntryOf(TSInfo, i), raw, converted);
}
