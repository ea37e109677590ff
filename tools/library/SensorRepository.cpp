// SPDX-License-Identifier: MIT
//
// Each question is one or two calls of the library's Sensor class.

#include "tools/library/SensorRepository.h"

#include <algorithm>

#include "tools/library/BmcMessage.h"

namespace tool {
namespace {

constexpr int kMaxSensorsOfAKind = 64;  // that the library keeps
constexpr int kLastWithFormula = 0xFF;  // the library takes the index for a formula as one byte
constexpr std::size_t kSensorNameSize = 64;

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

SensorRepository& SensorRepository::Get() {
    static SensorRepository repository;
    return repository;
}

SensorRepository::SensorRepository() {
    int version = 0;
    // Without an answer there are no records, so that no sensor is found.
    if (sensor_.GetSDRRepositoryInfo(records_, version) != 0 ||
        sensor_.GetSensorNumbers(records_) != 0) {
        records_ = 0;
        return;
    }
    // Results not used: these calls refuse only a count of 0.
    (void)sensor_.GetTemSensorsInfo(records_);
    (void)sensor_.GetVoltSensorsInfo(records_);
    (void)sensor_.GetFanSensorsInfo(records_);
}

std::vector<RepositorySensor> SensorRepository::Matching(int entity, int type) {
    SensorNumberInfo found{};
    // Result not used: always 0. The count says how many were found.
    (void)sensor_.GetSensorNumberInfo(static_cast<unsigned char>(entity),
                                      static_cast<unsigned char>(type), records_, found);
    std::vector<RepositorySensor> sensors;
    for (int k = 0; k < found.quantity; ++k) {
        RepositorySensor sensor{found.sensorOrder[k], found.sensorNumber[k], {}, {}};
        SensorThresholdInfoConverted converted{};
        // Results not used: the index comes from the walk, so it is valid.
        (void)sensor_.GetThreshold(sensor.index, sensor.walkThresholds, converted);
        (void)sensor_.GetSensorFormulaParameter(static_cast<unsigned char>(sensor.index),
                                                sensor.formula);
        sensors.push_back(sensor);
    }
    return sensors;
}

std::optional<RepositorySensor> SensorRepository::Find(int entity, int type, int number) {
    const auto sensors = Matching(entity, type);
    const auto found =
        std::find_if(sensors.begin(), sensors.end(), [number](const RepositorySensor& sensor) {
            return sensor.number == number && sensor.index <= kLastWithFormula;
        });
    if (found == sensors.end()) return std::nullopt;
    return *found;
}

std::string SensorRepository::Name(int type, int number) {
    for (const NameTable& table : kNameTables) {
        if (table.type != type) continue;
        for (int i = 0; i < kMaxSensorsOfAKind; ++i) {
            unsigned char candidate = 0;
            char name[kSensorNameSize] = {};
            if ((sensor_.*table.number)(i, candidate) == 0 && candidate == number &&
                (sensor_.*table.name)(i, name) == 0 && name[0] != '\0')
                return name;
        }
    }
    return "";
}

SensorRepository::Thresholds SensorRepository::Current(const RepositorySensor& sensor) {
    Thresholds thresholds{};
    // Result not used: it refuses only the number 0xFF, which the walk leaves out.
    (void)sensor_.GetSensorThreshold(sensor.number, sensor.formula, thresholds.raw,
                                     thresholds.converted);
    return thresholds;
}

bool SensorRepository::IsUnavailable(unsigned char number) {
    AnswerBuffer answer{};  // without an answer the flags stay 0, which means not scanned
    Send(sensor_,
         {IPMIbase::SENSER_EVENT_CMD, IPMIbase::Get_sensor_reading, IPMIbase::BMC_LUN, {number}},
         answer);
    const ReadingFlags flags(answer[ReadingFlags::kAt]);
    return flags.isUnavailable || !flags.isScanned;
}

double SensorRepository::Value(const SensorFormulaParameter& formula, unsigned char raw) {
    double value = 0;
    (void)sensor_.GetReadingConversion(formula, raw, value);  // result not used: always 0
    return value;
}

unsigned char SensorRepository::Raw(const SensorFormulaParameter& formula, double value) {
    unsigned char raw = 0;
    (void)sensor_.GetValueConversion(formula, raw, value);  // result not used: always 0
    return raw;
}

}  // namespace tool
