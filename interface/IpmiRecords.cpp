// SPDX-License-Identifier: MIT
//
// The results of the getters are not used, that of the name's excepted: a reading that fails has a
// text of its own, and what a getter does not write stays as the caller gave it.

#include "interface/IpmiRecords.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "IPMI/IPMIsupport.h"

namespace {

using TextGetter = int (IPMIsupport::*)(int, char*);
using ByteGetter = int (IPMIsupport::*)(int, unsigned char&);
using ThresholdGetter = int (IPMIsupport::*)(int, SensorThresholdInfoRaw&,
                                             SensorThresholdInfoConverted&);

// What tells one kind of sensors from the others. Fans and temperatures have no limits.
template <class Element>
struct SensorKind {
    char (Element::*reading)[16];
    TextGetter getReading;
    ByteGetter getNumber;
    ByteGetter getEntity;
    TextGetter getMaximum;
    TextGetter getMinimum;
    TextGetter getDescription;
    ThresholdGetter getThresholds;
    bool ownThresholds;  // Kept: where not, every element carries those of sensor 0.
    ByteGetter getType;
    TextGetter getName;
};

constexpr SensorKind<FAN_DEVICE> kFans = {
    .reading = &FAN_DEVICE::speed,
    .getReading = &IPMIsupport::GetFanSpeed,
    .getNumber = &IPMIsupport::GetFanSensorNumber,
    .getEntity = &IPMIsupport::GetFanEntityID,
    .getMaximum = nullptr,
    .getMinimum = nullptr,
    .getDescription = &IPMIsupport::GetFanStatusDescription,
    .getThresholds = &IPMIsupport::GetFanSensorThreshold,
    .ownThresholds = true,
    .getType = &IPMIsupport::GetFanSensorType,
    .getName = &IPMIsupport::GetFanIDString,
};

constexpr SensorKind<VOLTAGE_PROBE> kVoltages = {
    .reading = &VOLTAGE_PROBE::CurrentVoltage,
    .getReading = &IPMIsupport::GetVoltageCurrent,
    .getNumber = &IPMIsupport::GetVoltageSensorNumber,
    .getEntity = &IPMIsupport::GetVoltageEntityID,
    .getMaximum = &IPMIsupport::GetVoltageMax,
    .getMinimum = &IPMIsupport::GetVoltageMin,
    .getDescription = &IPMIsupport::GetVoltageStatusDescription,
    .getThresholds = &IPMIsupport::GetVoltageSensorThreshold,
    .ownThresholds = false,
    .getType = &IPMIsupport::GetVoltageSensorType,
    .getName = &IPMIsupport::GetVoltageIDString,
};

constexpr SensorKind<TEMPERATURE_PROBE> kTemperatures = {
    .reading = &TEMPERATURE_PROBE::CurrentTemperature,
    .getReading = &IPMIsupport::GetTemperatureCurrent,
    .getNumber = &IPMIsupport::GetTemperatureSensorNumber,
    .getEntity = &IPMIsupport::GetTemperatureEntityID,
    .getMaximum = nullptr,
    .getMinimum = nullptr,
    .getDescription = &IPMIsupport::GetTemperatureStatusDescription,
    .getThresholds = &IPMIsupport::GetTemperatureSensorThreshold,
    .ownThresholds = false,
    .getType = &IPMIsupport::GetTemperatureSensorType,
    .getName = &IPMIsupport::GetTemperatureIDString,
};

// Has a text of up to 64 bytes written over the field's and cuts it to the field, terminated. What
// the getter leaves alone stays. Returns the getter's result.
int ReadText(IPMIsupport& ipmi, TextGetter getter, int i, char (&field)[16]) {
    // Behind the field's bytes one that a text as long as they are would replace.
    char before[64] = "";
    std::memcpy(before, field, sizeof field);
    before[sizeof field] = '\1';
    char text[sizeof before];
    std::memcpy(text, before, sizeof text);
    const int result = (ipmi.*getter)(i, text);
    if (std::memcmp(text, before, sizeof text) == 0) return result;
    const std::size_t length = std::min(std::strlen(text), sizeof field - 1);
    std::memcpy(field, text, length);
    field[length] = '\0';
    return result;
}

template <class Element>
void FillElement(IPMIsupport& ipmi, const SensorKind<Element>& kind, int i,
                 SensorThresholdInfoRaw& raw, SensorThresholdInfoConverted& converted,
                 Element& element) {
    (void)ReadText(ipmi, kind.getReading, i, element.*kind.reading);
    (void)(ipmi.*kind.getNumber)(i, element.sensorNumber);
    unsigned char byte = 0;
    (void)(ipmi.*kind.getEntity)(i, byte);
    element.DeviceID = byte;
    if (kind.getMaximum != nullptr) (void)ReadText(ipmi, kind.getMaximum, i, element.max);
    if (kind.getMinimum != nullptr) (void)ReadText(ipmi, kind.getMinimum, i, element.min);
    (void)(ipmi.*kind.getDescription)(i, element.desc);
    (void)(ipmi.*kind.getThresholds)(kind.ownThresholds ? i : 0, raw, converted);
    (void)GetSensorThreshold(raw, converted, element.sti);
    (void)(ipmi.*kind.getType)(i, byte);
    element.SensorType = byte;
    if (ReadText(ipmi, kind.getName, i, element.IdString) != 0) element.IdString[0] = '\0';
}

template <class Element, std::size_t Limit>
int FillSensors(IPMIsupport& ipmi, const SensorKind<Element>& kind, int count, int& quantity,
                Element (&elements)[Limit]) {
    if (count == 0) return 0;
    quantity = count;
    // Kept: cleared once, so that thresholds that cannot be read are those of the sensor before.
    SensorThresholdInfoRaw raw{};
    SensorThresholdInfoConverted converted{};
    for (int i = 0; i < std::min(count, static_cast<int>(Limit)); ++i)
        FillElement(ipmi, kind, i, raw, converted, elements[i]);
    return count;
}

}  // namespace

int GetSensorThreshold(SensorThresholdInfoRaw raw, SensorThresholdInfoConverted converted,
                       SensorThresholdInfo& out) {
    out.DeviceID = raw.deviceID;
    out.SensorType = raw.sensorType;
    out.UpperNonRecoverThresholdValue = converted.UpperNonRecoverThresholdValue;
    out.UpperCriticalThresholdValue = converted.UpperCriticalThresholdValue;
    out.UpperNonCriticalThresholdValue = converted.UpperNonCriticalThresholdValue;
    out.LowerNonRecoverThreshold = converted.LowerNonRecoverThreshold;
    out.LowerCriticalThreshold = converted.LowerCriticalThreshold;
    out.LowerNonCriticalThreshold = converted.LowerNonCriticalThreshold;
    out.MaxThreshold = converted.MaxThreshold;
    out.MinThreshold = converted.MinThreshold;
    return 0;
}

int FillIpmiFans(IPMIsupport& ipmi, void* record) {
    FanInformation& fans = *static_cast<FanInformation*>(record);
    return FillSensors(ipmi, kFans, ipmi.GetFanSensorsNum(), fans.quantity, fans.fan);
}

int FillIpmiVoltages(IPMIsupport& ipmi, void* record) {
    VoltageInformation& voltages = *static_cast<VoltageInformation*>(record);
    return FillSensors(ipmi, kVoltages, ipmi.GetVoltSensorsNum(), voltages.quantity,
                       voltages.voltage);
}

int FillIpmiTemperatures(IPMIsupport& ipmi, void* record) {
    TemperatureInformation& temperatures = *static_cast<TemperatureInformation*>(record);
    return FillSensors(ipmi, kTemperatures, ipmi.GetTemSensorsNum(), temperatures.quantity,
                       temperatures.temperature);
}
