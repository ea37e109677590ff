// SPDX-License-Identifier: MIT
//
// The BMC's sensors through the library's classes, for what its C interface does not tell: the
// thresholds that the BMC holds for one sensor now, by the sensor's number, how they are converted,
// and whether its reading counts.
#ifndef TALVANE_TOOLS_SENSORWALK_H
#define TALVANE_TOOLS_SENSORWALK_H

#include <optional>
#include <string>
#include <vector>

#include "IPMI/IPMIsupport.h"
#include "IPMI/Sensor.h"

namespace tool {

// One sensor of the repository walk.
struct WalkedSensor {
    int index;  // in the walk
    unsigned char number;
    SensorFormulaParameter formula;
    SensorThresholdInfoRaw walked;  // as read by the walk: for `index` in place of the number
};

// Whether raw readings of the sensor are signed (IPMI 2.0, 43.1, byte 21), which the library
// converts to other values than the standard.
inline bool IsSigned(const SensorFormulaParameter& formula) {
    constexpr int kOnesComplement = 1;
    constexpr int kTwosComplement = 2;
    const int format = formula.Unit1 >> 6;
    return format == kOnesComplement || format == kTwosComplement;
}

// The objects live until the process ends, since destroying one closes the device for all.
// REQUIRES of each function: IsIpmiSupport() is not 0.

IPMIsupport& Controller();

class SensorWalk {
public:
    // The one walk of this process; the first call reads the repository.
    static SensorWalk& Get();

    // Records in the repository; 0 also when the BMC does not answer.
    int Records() const { return records_; }

    // The first 64 of an entity and a sensor type, in the order of the walk.
    std::vector<WalkedSensor> Matching(int entity, int type);

    // Nothing for one that is not among them, or whose conversion cannot be asked for.
    std::optional<WalkedSensor> Find(int entity, int type, int number);

    // The name of a temperature, voltage or fan sensor; empty for any other.
    std::string Name(int type, int number);

    // The thresholds that the BMC holds for the sensor now.
    struct Thresholds {
        SensorThresholdInfoRaw raw;
        SensorThresholdInfoConverted converted;
    };
    Thresholds Current(const WalkedSensor& sensor);

    // Whether the BMC has no valid reading of the sensor now: it says so, or gives no answer. The
    // library does not look at the flags beside a reading.
    bool IsUnavailable(unsigned char number);

    double Value(const SensorFormulaParameter& formula, unsigned char raw);
    unsigned char Raw(const SensorFormulaParameter& formula, double value);

private:
    SensorWalk();

    Sensor sensor_;
    int records_ = 0;
};

}  // namespace tool

#endif
