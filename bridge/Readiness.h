// SPDX-License-Identifier: MIT
//
// Tells the service manager that the device is there, so that agents ordered after the bridge find
// it.
#ifndef TALVANE_BRIDGE_READINESS_H
#define TALVANE_BRIDGE_READINESS_H

namespace bridge {

// Does nothing when no service manager waits for it.
void ReportReady();

}  // namespace bridge

#endif
