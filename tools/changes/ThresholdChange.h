// SPDX-License-Identifier: MIT
//
// Sets one threshold of all sensors of an entity and type, after showing everything that is written
// with it.
#ifndef TALVANE_TOOLS_CHANGES_THRESHOLDCHANGE_H
#define TALVANE_TOOLS_CHANGES_THRESHOLDCHANGE_H

#include "tools/changes/Order.h"

namespace tool {

Outcome SetThreshold(const Order& order);

}  // namespace tool

#endif
