// SPDX-License-Identifier: MIT
//
// The unit of a sensor as text, from the three unit bytes of its sensor data record
// (IPMI 2.0, 43.1, bytes 21 to 23). Neither function writes more than `size` bytes to `out`.
#ifndef TALVANE_IPMI_UNITTEXT_H
#define TALVANE_IPMI_UNITTEXT_H

namespace talvane {

// Writes the unit text when the Unit 1 byte says all of it: no unit, a rate, or a percentage.
// Returns false and leaves `out` untouched when the text is made of the codes of the other two
// bytes. A rate is not NUL-terminated: pass zeroed bytes.
bool WriteUnitWithoutCodes(unsigned char unit1, char* out, int size);

// Whether WriteUnitOfCodes uses the modifier unit.
bool HasModifierUnit(unsigned char unit1);

// Writes the unit text that is made of the codes. A base unit without a modifier unit is not
// NUL-terminated: pass zeroed bytes. Leaves `out` untouched for the reserved use of the modifier
// unit.
void WriteUnitOfCodes(unsigned char unit1, unsigned base, unsigned modifier, char* out, int size);

}  // namespace talvane

#endif
