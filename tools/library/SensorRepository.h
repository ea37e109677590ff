// SPDX-License-Identifier: MIT
//
// The sensors of the BMC's sensor data repository, read through the library's classes. They offer
// what its C interface lacks: the thresholds that the BMC holds for one sensor now, how raw values
// are converted, and whether a reading is valid.
#ifndef TALVANE_TOOLS_LIBRARY_SENSORREPOSITORY_H
#define TALVANE_TOOLS_LIBRARY_SENSORREPOSITORY_H

#include <optional>
#include <string>
#include <vector>

#include "IPMI/IPMIsupport.h"
#include "IPMI/Sensor.h"

namespace tool {

// One sensor, as the library's walk through the repository has found it.
struct RepositorySensor {
    int index;  // in the walk, from 0
    unsigned char number;
    SensorFormulaParameter formula;
    SensorThresholdInfoRaw walkThresholds;  // those of the sensor whose number is `index`
};

// Whether raw readings of the sensor are signed (IPMI 2.0, 43.1, byte 21). The library converts
// signed readings to other values than the standard does.
inline bool IsSigned(const SensorFormulaParameter& formula) {
    constexpr int kOnesComplement = 1;
    constexpr int kTwosComplement = 2;
    const int format = formula.Unit1 >> 6;
    return format == kOnesComplement || format == kTwosComplement;
}

// The objects live until the process ends, since destroying one closes the device for all of them.
// REQUIRES for each function: IsIpmiSupport() is not 0.

IPMIsupport& Controller();

class SensorRepository {
public:
    // The one object of this process. The first call reads the repository.
    static SensorRepository& Get();

    // Records in the repository; 0 also when the BMC does not answer.
    int Records() const { return records_; }

    // The first 64 sensors of an entity and a sensor type, in the order of the walk.
    std::vector<RepositorySensor> Matching(int entity, int type);

    // The sensor of that number among them; nothing when there is none, or when the library cannot
    // be asked for its conversion.
    std::optional<RepositorySensor> Find(int entity, int type, int number);

    // The name of a temperature, voltage or fan sensor; empty for any other.
    std::string Name(int type, int number);

    // The thresholds that the BMC holds for the sensor now.
    struct Thresholds {
        SensorThresholdInfoRaw raw;
        SensorThresholdInfoConverted converted;
    };
    Thresholds Current(const RepositorySensor& sensor);

    // Whether the BMC has no valid reading of the sensor now: it says so, or it gives no answer.
    // The library ignores the flags that come with a reading.
    bool IsUnavailable(unsigned char number);

    double Value(const SensorFormulaParameter& formula, unsigned char raw);
    unsigned char Raw(const SensorFormulaParameter& formula, double value);

private:
    SensorRepository();

    Sensor sensor_;
    int records_ = 0;
};

}  // namespace tool

#endif
