// SPDX-License-Identifier: MIT
//
// Rate, percentage, base unit and modifier unit.

#include "IPMI/UnitText.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "IPMI/SensorNames.h"

namespace talvane {

namespace {

// The Unit 1 byte (IPMI 2.0, 43.1, byte 21).
constexpr unsigned char kNoUnits = 0xFF;  // also that of an empty record
constexpr int kRateShift = 3;
constexpr unsigned char kRateBits = 0x07;
constexpr int kModifierUseShift = 1;
constexpr unsigned char kModifierUseBits = 0x03;
constexpr unsigned char kPercentage = 0x01;

enum class ModifierUse { kNone = 0, kDivides = 1, kMultiplies = 2, kReserved = 3 };

ModifierUse ModifierUseOf(unsigned char unit1) {
    return static_cast<ModifierUse>((unit1 >> kModifierUseShift) & kModifierUseBits);
}

// Rate units 1 to 6. Kept: texts longer than kMaxRateLength are cut, and the base unit is not
// added.
constexpr const char* kRateUnits[] = {"per \xB5S",  "per ms",   "per s",
                                      "per minute", "per hour", "per day"};
constexpr int kMaxRateLength = 5;

constexpr std::size_t kUnitCount = std::size(SensorsUnit);

// Copies up to `maxLength` characters and no NUL.
void CopyUnit(char* out, const char* text, int maxLength) {
    const std::size_t length =
        std::min(std::strlen(text), static_cast<std::size_t>(std::max(maxLength, 0)));
    std::memcpy(out, text, length);
}

void WriteTerminated(char* out, int size, const char* text) {
    if (size > 0) std::snprintf(out, static_cast<std::size_t>(size), "%s", text);
}

void WriteBaseUnit(unsigned base, char* out, int size) {
    if (base >= kUnitCount) return WriteTerminated(out, size, "");
    CopyUnit(out, SensorsUnit[base], size - 1);
}

// Two units of the table, joined by `sign`. Empty when one of them is unspecified or not in the
// table.
void WriteUnitPair(unsigned base, char sign, unsigned modifier, char* out, int size) {
    const bool known = base >= 1 && base < kUnitCount && modifier >= 1 && modifier < kUnitCount;
    if (!known) return WriteTerminated(out, size, "");
    if (size > 0)
        std::snprintf(out, static_cast<std::size_t>(size), "%s%c%s", SensorsUnit[base], sign,
                      SensorsUnit[modifier]);
}

}  // namespace

bool WriteUnitWithoutCodes(unsigned char unit1, char* out, int size) {
    if (unit1 == kNoUnits) {
        WriteTerminated(out, size, "");
        return true;
    }
    const unsigned rate = (unit1 >> kRateShift) & kRateBits;
    if (rate >= 1 && rate <= std::size(kRateUnits)) {
        CopyUnit(out, kRateUnits[rate - 1], std::min(size - 1, kMaxRateLength));
        return true;
    }
    if ((unit1 & kPercentage) != 0) {
        WriteTerminated(out, size, "%");
        return true;
    }
    return false;
}

bool HasModifierUnit(unsigned char unit1) {
    const ModifierUse use = ModifierUseOf(unit1);
    return use == ModifierUse::kDivides || use == ModifierUse::kMultiplies;
}

void WriteUnitOfCodes(unsigned char unit1, unsigned base, unsigned modifier, char* out, int size) {
    switch (ModifierUseOf(unit1)) {  // LCOV_EXCL_BR_LINE: each use has a case
        case ModifierUse::kNone:
            return WriteBaseUnit(base, out, size);
        case ModifierUse::kDivides:
            return WriteUnitPair(base, '/', modifier, out, size);
        case ModifierUse::kMultiplies:
            return WriteUnitPair(base, '*', modifier, out, size);
        case ModifierUse::kReserved:
            break;
    }
}

}  // namespace talvane
