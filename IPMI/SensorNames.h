// SPDX-License-Identifier: MIT
//
// The names of sensor units, sensor types and entities, indexed by code. The texts are part of the
// interface and keep the spelling that agents know.
#ifndef TALVANE_IPMI_SENSORNAMES_H
#define TALVANE_IPMI_SENSORNAMES_H

#include "../Export.h"

extern TALVANE_EXPORT const char* const SensorsUnit[91];      // IPMI 2.0, 43.17
extern TALVANE_EXPORT const char* const SensorsType[42];      // 42.2
extern TALVANE_EXPORT const char* const SensorsEntityID[41];  // 43.14

#endif
