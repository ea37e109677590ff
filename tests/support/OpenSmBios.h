// SPDX-License-Identifier: MIT
//
// The SMBIOS classes with their private members open to the tests. Many rules (the structure walk,
// the string lookup, the memory getters) live in private members that the library exports all the
// same; through the public getters alone their corner cases could not be told apart.
#ifndef TALVANE_TESTS_SUPPORT_OPENSMBIOS_H
#define TALVANE_TESTS_SUPPORT_OPENSMBIOS_H

#include <cstddef>

#include "Export.h"
#include "SmBios/EntryPoint.h"
#include "SmBios/LocalMemInfo.h"

// Only the two class headers see this: everything they include has been included above. Access
// specifiers change neither the layout nor the exported names.
#define private public
#include "SmBios/BiosDataItem.h"
#include "SmBios/SmBios.h"
#undef private

#endif
