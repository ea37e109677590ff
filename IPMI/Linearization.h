// SPDX-License-Identifier: MIT
//
// The arithmetic between the raw byte of an analog sensor and a value in the sensor's unit
// (IPMI 2.0, 36.3), in both directions: data format, linear formula, linearization. Every step
// rounds to a double.
#ifndef TALVANE_IPMI_LINEARIZATION_H
#define TALVANE_IPMI_LINEARIZATION_H

#include <optional>

#include "IPMI/SensorCodes.h"

namespace talvane {

// Kept: in the two complement formats, the complement of the byte is used as an unsigned count, so
// that readings are never negative. The same step turns a count back into a raw byte. The other two
// formats change nothing.
unsigned char Complemented(DataFormat format, unsigned char raw);

// y = (m * x + b * 10^bExponent) * 10^resultExponent
struct LinearFormula {
    int m;
    int b;
    int bExponent;
    int resultExponent;
};

double LinearValue(const LinearFormula& formula, unsigned char x);

// The x of a value: truncated toward zero into 16 bits, of which the low 8 are kept. 0 when m is 0.
unsigned char LinearCount(const LinearFormula& formula, double y);

// Applies linearization 0 to 11 (43.1, byte 24). 0.0 for a value outside of the function's domain
// and for every other code.
double Linearized(int code, double y);

// Undoes the linearization. Empty where that is not possible.
std::optional<double> Delinearized(int code, double value);

}  // namespace talvane

#endif
