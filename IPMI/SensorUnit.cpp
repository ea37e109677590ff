// SPDX-License-Identifier: MIT
//
// Texts of the sensor data record at hand: its unit, and its highest and lowest reading.

#include <cstring>

#include "IPMI/Sensor.h"
#include "IPMI/SensorCodes.h"
#include "IPMI/SensorText.h"
#include "IPMI/UnitText.h"
#include "IPMI/WalkEntries.h"
#include "base/DoubleArithmetic.h"

using namespace talvane;

namespace {

// Kept: the highest raw value of a format is not converted but written as it is, in hexadecimal.
bool IsHighestRawValue(DataFormat format, unsigned char raw) {
    constexpr unsigned char kHighestUnsigned = 0xFF;
    constexpr unsigned char kHighestTwosComplement = 0x7F;
    return (format == DataFormat::kUnsigned && raw == kHighestUnsigned) ||
           (format == DataFormat::kTwosComplement && raw == kHighestTwosComplement);
}

}  // namespace

int Sensor::GetSensorUnit(char* out, int size) {
    if (out == nullptr) return -1;
    const unsigned char unit1 = sdr.GetUnit1();
    if (WriteUnitWithoutCodes(unit1, out, size)) return 0;
    const unsigned base = sdr.GetBaseUnit();
    const unsigned modifier = HasModifierUnit(unit1) ? sdr.GetModifierUnit() : 0u;
    WriteUnitOfCodes(unit1, base, modifier, out, size);
    return 0;
}

// The record's highest or lowest reading, with the unit of walk entry k.
int Sensor::WriteLimit(int k, unsigned char raw, char* out) {
    const SensorDescription* const entry = WalkEntries(SensorsInformation).At(k);
    if (out == nullptr || entry == nullptr) return -1;
    if (IsHighestRawValue(DataFormatOf(entry->sfp.Unit1), raw)) {
        WriteHex(out, raw, entry->SensorUnit);
        return 0;
    }

    double value = 0.0;
    if (GetReadingConversion(entry->sfp, raw, value) != 0)
        std::strcpy(out, "Unknown");
    else if (sdr.GetSensorType() == SENSOR_TYPE_FAN)
        WriteWhole(out, ToInt32(value), entry->SensorUnit);
    else
        WriteFixed(out, value, entry->SensorUnit);
    return 0;
}

int Sensor::ReadSensorMax(int k, char* out) {
    return WriteLimit(k, sdr.GetSensorReadingMax(), out);
}

int Sensor::ReadSensorMin(int k, char* out) {
    return WriteLimit(k, sdr.GetSensorReadingMin(), out);
}
