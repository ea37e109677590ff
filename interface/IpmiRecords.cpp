// SPDX-License-Identifier: MIT
//
// Which getters fill an element of a sensor record, and in which order. Only the result of the
// name's getter is used: a reading that fails has a text of its own, and what a getter does not
// write stays as the caller gave it.

#include "interface/IpmiRecords.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

#include "IPMI/IPMIsupport.h"

namespace talvane {

namespace {

using TextGetter = int (IPMIsupport::*)(int, char*);
using ByteGetter = int (IPMIsupport::*)(int, unsigned char&);
using ThresholdGetter = int (IPMIsupport::*)(int, SensorThresholdInfoRaw&,
                                             SensorThresholdInfoConverted&);

// The getters of one kind of sensors. Those of the limits are null for fans and temperatures. It is
// an argument of templates, so that each getter is called by its name and looked up by the dynamic
// linker at its first call. Pointers to them would be looked up at the start of every agent.
template <class Element>
struct SensorGetters {
    char (Element::*reading)[16];
    TextGetter getReading;
    ByteGetter getNumber;
    ByteGetter getEntity;
    TextGetter getMaximum;
    TextGetter getMinimum;
    TextGetter getDescription;
    ThresholdGetter getThresholds;
    bool ownThresholds;  // Kept: if false, every element has the thresholds of sensor 0.
    ByteGetter getType;
    TextGetter getName;
};

constexpr SensorGetters<FAN_DEVICE> kFanGetters = {
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

constexpr SensorGetters<VOLTAGE_PROBE> kVoltageGetters = {
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

constexpr SensorGetters<TEMPERATURE_PROBE> kTemperatureGetters = {
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

// A text field of 16 bytes, and the buffer that a getter writes over.
class TextField {
public:
    // The buffer holds the field's bytes. The byte after them is not a NUL, so that also a text of
    // exactly these 16 bytes changes the buffer by its NUL.
    explicit TextField(char (&field)[16]) : field_(field) {
        constexpr char kNotNul = '\1';
        std::copy(std::begin(field), std::end(field), before_.begin());
        before_[sizeof field] = kNotNul;
        text_ = before_;
    }

    [[nodiscard]] char* Buffer() { return text_.data(); }

    // Puts the text into the field, cut to the field and NUL-terminated. If nothing has been
    // written, the field stays untouched.
    void Store() {
        if (text_ == before_) return;
        const std::size_t length = std::min(std::strlen(text_.data()), sizeof field_ - 1);
        std::memcpy(field_, text_.data(), length);
        field_[length] = '\0';
    }

private:
    static constexpr std::size_t kLongestText = 64;

    char (&field_)[16];
    std::array<char, kLongestText> before_{};
    std::array<char, kLongestText> text_;
};

// Lets the getter write its text into the field. Returns the getter's result.
template <TextGetter getter>
int ReadText(IPMIsupport& ipmi, int i, char (&field)[16]) {
    TextField text(field);
    const int result = (ipmi.*getter)(i, text.Buffer());
    text.Store();
    return result;
}

template <SensorGetters getters, class Element>
void FillElement(IPMIsupport& ipmi, int i, SensorThresholdInfoRaw& raw,
                 SensorThresholdInfoConverted& converted, Element& element) {
    (void)ReadText<getters.getReading>(ipmi, i, element.*getters.reading);
    (void)(ipmi.*getters.getNumber)(i, element.sensorNumber);
    unsigned char byte = 0;
    (void)(ipmi.*getters.getEntity)(i, byte);
    element.DeviceID = byte;
    if constexpr (getters.getMaximum != nullptr)
        (void)ReadText<getters.getMaximum>(ipmi, i, element.max);
    if constexpr (getters.getMinimum != nullptr)
        (void)ReadText<getters.getMinimum>(ipmi, i, element.min);
    (void)(ipmi.*getters.getDescription)(i, element.desc);
    (void)(ipmi.*getters.getThresholds)(getters.ownThresholds ? i : 0, raw, converted);
    (void)GetSensorThreshold(raw, converted, element.sti);
    (void)(ipmi.*getters.getType)(i, byte);
    element.SensorType = byte;
    if (ReadText<getters.getName>(ipmi, i, element.IdString) != 0) element.IdString[0] = '\0';
}

template <SensorGetters getters, class Element, std::size_t Limit>
int FillSensors(IPMIsupport& ipmi, int count, int& quantity, Element (&elements)[Limit]) {
    if (count == 0) return 0;
    quantity = count;
    // Kept: cleared only once, so that an element whose thresholds cannot be read has those of the
    // element before it.
    SensorThresholdInfoRaw raw{};
    SensorThresholdInfoConverted converted{};
    for (int i = 0; i < std::min(count, static_cast<int>(Limit)); ++i)
        FillElement<getters>(ipmi, i, raw, converted, elements[i]);
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
    return FillSensors<kFanGetters>(ipmi, ipmi.GetFanSensorsNum(), fans.quantity, fans.fan);
}

int FillIpmiVoltages(IPMIsupport& ipmi, void* record) {
    VoltageInformation& voltages = *static_cast<VoltageInformation*>(record);
    return FillSensors<kVoltageGetters>(ipmi, ipmi.GetVoltSensorsNum(), voltages.quantity,
                                        voltages.voltage);
}

int FillIpmiTemperatures(IPMIsupport& ipmi, void* record) {
    TemperatureInformation& temperatures = *static_cast<TemperatureInformation*>(record);
    return FillSensors<kTemperatureGetters>(ipmi, ipmi.GetTemSensorsNum(), temperatures.quantity,
                                            temperatures.temperature);
}

}  // namespace talvane
