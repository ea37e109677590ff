// SPDX-License-Identifier: MIT
//
// The unit of a sensor as text, from the three unit bytes of its sensor data record
// (IPMI 2.0, 43.1, bytes 21 to 23). Neither function writes more than `size` bytes to `out`.
#ifndef TALVANE_IPMI_UNITTEXT_H
#define TALVANE_IPMI_UNITTEXT_H

namespace talvane {

// The unit text where the Unit 1 byte alone decides it: no unit, a rate, a percentage. Returns
// false and leaves `out` untouched where it takes the codes of base unit and modifier unit. A rate
// is not NUL-terminated: pass zeroed bytes.
bool WriteUnitWithoutCodes(unsigned char unit1, char* out, int size);

// Whether the text is made of both codes or of the base unit alone.
bool HasModifierUnit(unsigned char unit1);

// The unit text made of the codes. A base unit alone is not NUL-terminated: pass zeroed bytes.
// Leaves `out` untouched for the reserved use of the modifier.
void WriteUnitOfCodes(unsigned char unit1, unsigned base, unsigned modifier, char* out, int size);

}  // namespace talvane

#endif
