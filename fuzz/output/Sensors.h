// SPDX-License-Identifier: MIT
//
// Sensors as the tool decodes them, out of the bytes of an input.
#ifndef TALVANE_FUZZ_OUTPUT_SENSORS_H
#define TALVANE_FUZZ_OUTPUT_SENSORS_H

#include "fuzz/Input.h"
#include "tools/sensors/AllSensors.h"

namespace fuzz {

// The input is that of AddWholeMachine. All sensors have the same answers.
tool::AllSensors SensorsOf(Input input);

}  // namespace fuzz

#endif
