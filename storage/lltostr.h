// SPDX-License-Identifier: MIT
//
// The texts of the storage inventory: numbers of 64 bits, and lines as the kernel's files end them.
#ifndef TALVANE_STORAGE_LLTOSTR_H
#define TALVANE_STORAGE_LLTOSTR_H

#include "../Export.h"

// Writes the value in decimal, terminated, in at most 12 characters. Kept: 0 gives an empty text,
// and from 10^12 on everything above the last eleven digits is one character, '0' plus that number.
TALVANE_EXPORT void lltostr(char* out, unsigned long long value);

// Cuts one line feed off the end of a terminated text.
TALVANE_EXPORT void stripret(char* s);

#endif
