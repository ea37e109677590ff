// SPDX-License-Identifier: MIT
//
// The SMBIOS classes for programs that may use their private members (talvane_open_members). Many
// rules (the structure walk, the string lookup, the memory getters) live in private members that
// the library exports all the same; the public getters alone do not tell their corner cases apart.
#ifndef TALVANE_TESTS_SUPPORT_OPENSMBIOS_H
#define TALVANE_TESTS_SUPPORT_OPENSMBIOS_H

#include "SmBios/BiosDataItem.h"
#include "SmBios/EntryPoint.h"
#include "SmBios/LocalMemInfo.h"
#include "SmBios/SmBios.h"

#endif
