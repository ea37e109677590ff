// SPDX-License-Identifier: MIT
//
// Changes to the BMC's watchdog timer. A timer with an action reboots the machine or switches it
// off when it runs down, so starting one needs a confirmation.
#ifndef TALVANE_TOOLS_CHANGES_WATCHDOGCHANGE_H
#define TALVANE_TOOLS_CHANGES_WATCHDOGCHANGE_H

#include "tools/changes/Order.h"

namespace tool {

Outcome SetWatchdog(const Order& order);    // and starts it
Outcome ResetWatchdog(const Order& order);  // starts it over
Outcome StopWatchdog(const Order& order);

}  // namespace tool

#endif
