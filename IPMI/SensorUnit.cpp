// SPDX-License-Identifier: MIT
//
// The unit text of a record, and its highest and lowest reading as texts.

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "IPMI/Sensor.h"
#include "IPMI/SensorNames.h"
#include "IPMI/SensorText.h"
#include "base/DoubleArithmetic.h"

using namespace talvane;

namespace {

// Unit 1 (IPMI 2.0, 43.1, byte 21).
constexpr unsigned char kNoUnits = 0xFF;
constexpr unsigned char kPercentage = 0x01;
enum class ModifierUse { None = 0, Divides = 1, Multiplies = 2, Reserved = 3 };

// Rate units 1 to 6. Kept: texts longer than kRateLength are cut, and the base unit is not added.
constexpr const char* kRates[] = {"per \xB5S",  "per ms",   "per s",
                                  "per minute", "per hour", "per day"};
constexpr int kRateLength = 5;

constexpr std::size_t kUnits = std::size(SensorsUnit);

// Up to `length` characters and no terminator.
void CopyUnit(char* out, const char* text, int length) {
    std::strncpy(out, text, static_cast<std::size_t>(std::max(length, 0)));
}

void WriteText(char* out, int size, const char* text) {
    if (size > 0) std::snprintf(out, static_cast<std::size_t>(size), "%s", text);
}

// Two units of the table joined by `sign`; empty when either is not in the table or unspecified.
void WritePair(char* out, int size, unsigned base, char sign, unsigned modifier) {
    const bool known = base >= 1 && base < kUnits && modifier >= 1 && modifier < kUnits;
    if (!known) return WriteText(out, size, "");
    if (size > 0)
        std::snprintf(out, static_cast<std::size_t>(size), "%s%c%s", SensorsUnit[base], sign,
                      SensorsUnit[modifier]);
}

}  // namespace

int Sensor::GetSensorUnit(char* out, int size) {
    if (out == nullptr) return -1;
    const unsigned char units = sdr.GetUnit1();
    if (units == kNoUnits) {
        WriteText(out, size, "");
        return 0;
    }
    const unsigned rate = (units >> 3) & 0x07u;
    if (rate >= 1 && rate <= std::size(kRates)) {
        CopyUnit(out, kRates[rate - 1], std::min(size - 1, kRateLength));
        return 0;
    }
    if ((units & kPercentage) != 0) {
        WriteText(out, size, "%");
        return 0;
    }

    const unsigned base = sdr.GetBaseUnit();
    switch (static_cast<ModifierUse>((units >> 1) & 0x03)) {
        case ModifierUse::None:
            if (base >= kUnits)
                WriteText(out, size, "");
            else
                CopyUnit(out, SensorsUnit[base],
                         std::min(size - 1, static_cast<int>(std::strlen(SensorsUnit[base]))));
            break;
        case ModifierUse::Divides:
            WritePair(out, size, base, '/', sdr.GetModifierUnit());
            break;
        case ModifierUse::Multiplies:
            WritePair(out, size, base, '*', sdr.GetModifierUnit());
            break;
        case ModifierUse::Reserved:
            break;
    }
    return 0;
}

// The record's highest or lowest reading for walk entry k.
int Sensor::WriteLimit(int k, unsigned char raw, char* out) {
    const SensorDescription* const entry = WalkEntry(k);
    if (out == nullptr || entry == nullptr) return -1;

    // The highest raw value of its format stands for itself.
    constexpr unsigned kUnsigned = 0;
    constexpr unsigned kTwosComplement = 2;
    const unsigned format = entry->sfp.Unit1 >> 6;
    if ((format == kUnsigned && raw == 0xFF) || (format == kTwosComplement && raw == 0x7F)) {
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
