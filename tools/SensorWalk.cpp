// SPDX-License-Identifier: MIT

#include "tools/SensorWalk.h"

#include <algorithm>

namespace tool {
namespace {

constexpr int kTableSize = 64;
constexpr int kLastWithFormula = 0xFF;  // the conversion is asked for with an index of one byte
constexpr std::size_t kNameSize = 64;

struct NameTable {
    int type;
    int (Sensor::*number)(int, unsigned char&);
    int (Sensor::*name)(int, char*);
};

constexpr NameTable kNameTables[] = {
    {Sensor::SENSOR_TYPE_TEMPERATURE, &Sensor::GetTemperatureSensorNumber,
     &Sensor::GetTemperatureIDString},
    {Sensor::SENSOR_TYPE_VOLTAGE, &Sensor::GetVoltageSensorNumber, &Sensor::GetVoltageIDString},
    {Sensor::SENSOR_TYPE_FAN, &Sensor::GetFanSensorNumber, &Sensor::GetFanIDString},
};

}  // namespace

IPMIsupport& Controller() {
    static IPMIsupport controller;
    return controller;
}

SensorWalk& SensorWalk::Get() {
    static SensorWalk walk;
    return walk;
}

SensorWalk::SensorWalk() {
    int version = 0;
    // Without an answer there are no records, and no sensor is found below.
    if (sensor_.GetSDRRepositoryInfo(records_, version) != 0 ||
        sensor_.GetSensorNumbers(records_) != 0) {
        records_ = 0;
        return;
    }
    // Results not used: they refuse nothing but a count of 0.
    (void)sensor_.GetTemSensorsInfo(records_);
    (void)sensor_.GetVoltSensorsInfo(records_);
    (void)sensor_.GetFanSensorsInfo(records_);
}

std::vector<WalkedSensor> SensorWalk::Matching(int entity, int type) {
    SensorNumberInfo found{};
    // Result not used: always 0; the count tells.
    (void)sensor_.GetSensorNumberInfo(static_cast<unsigned char>(entity),
                                      static_cast<unsigned char>(type), records_, found);
    std::vector<WalkedSensor> sensors;
    for (int k = 0; k < found.quantity; ++k) {
        WalkedSensor sensor{found.sensorOrder[k], found.sensorNumber[k], {}, {}};
        SensorThresholdInfoConverted converted{};
        // Results not used: the index is one of the walk's.
        (void)sensor_.GetThreshold(sensor.index, sensor.walked, converted);
        (void)sensor_.GetSensorFormulaParameter(static_cast<unsigned char>(sensor.index),
                                                sensor.formula);
        sensors.push_back(sensor);
    }
    return sensors;
}

std::optional<WalkedSensor> SensorWalk::Find(int entity, int type, int number) {
    const auto sensors = Matching(entity, type);
    const auto found =
        std::find_if(sensors.begin(), sensors.end(), [number](const WalkedSensor& sensor) {
            return sensor.number == number && sensor.index <= kLastWithFormula;
        });
    if (found == sensors.end()) return std::nullopt;
    return *found;
}

std::string SensorWalk::Name(int type, int number) {
    for (const NameTable& table : kNameTables) {
        if (table.type != type) continue;
        for (int i = 0; i < kTableSize; ++i) {
            unsigned char candidate = 0;
            char name[kNameSize] = {};
            if ((sensor_.*table.number)(i, candidate) == 0 && candidate == number &&
                (sensor_.*table.name)(i, name) == 0 && name[0] != '\0')
                return name;
        }
    }
    return "";
}

SensorWalk::Thresholds SensorWalk::Current(const WalkedSensor& sensor) {
    Thresholds thresholds{};
    // Result not used: the number is not 0xFF, which the walk leaves out.
    (void)sensor_.GetSensorThreshold(sensor.number, sensor.formula, thresholds.raw,
                                     thresholds.converted);
    return thresholds;
}

bool SensorWalk::IsUnavailable(unsigned char number) {
    constexpr int kMilliseconds = 3000;
    constexpr std::size_t kLongestResponse = 256;
    constexpr unsigned char kUnavailable =
        0x20;  // of the byte behind the reading (IPMI 2.0, 35.14)
    constexpr unsigned char kScanned = 0x40;
    IMBPREQUESTDATA request{IPMIbase::Get_sensor_reading,
                            0,  // the transport fills the responder in
                            IPMIbase::PUBLIC_BUS,
                            IPMIbase::SENSER_EVENT_CMD,
                            IPMIbase::BMC_LUN,
                            &number,
                            1};
    unsigned char response[kLongestResponse] = {};
    int length = 0;
    unsigned char completion = 0;
    // Results not used: without an answer the flags stay zero, that is not scanned.
    (void)sensor_.SendTimedImbpRequest(&request, kMilliseconds, response, &length, &completion);
    return (response[1] & kUnavailable) != 0 || (response[1] & kScanned) == 0;
}

double SensorWalk::Value(const SensorFormulaParameter& formula, unsigned char raw) {
    double value = 0;
    (void)sensor_.GetReadingConversion(formula, raw, value);  // result not used: always 0
    return value;
}

unsigned char SensorWalk::Raw(const SensorFormulaParameter& formula, double value) {
    unsigned char raw = 0;
    (void)sensor_.GetValueConversion(formula, raw, value);  // result not used: always 0
    return raw;
}

}  // namespace tool
