// SPDX-License-Identifier: MIT
//
// The texts of the storage inventory: 64-bit numbers in decimal, and lines of the kernel's files.
#ifndef TALVANE_STORAGE_LLTOSTR_H
#define TALVANE_STORAGE_LLTOSTR_H

#include "../Export.h"

// Writes the value in decimal, NUL-terminated, with at most 12 characters. Kept: 0 gives an empty
// text. From 10^12 on the first of 12 characters stands for all digits above the last eleven: it is
// '0' plus their number, cut to a char.
TALVANE_EXPORT void lltostr(char* out, unsigned long long value);

// Cuts one line feed off the end of a NUL-terminated text.
TALVANE_EXPORT void stripret(char* s);

#endif
