// SPDX-License-Identifier: MIT
//
// The label `type` of a sensor. Dashboards know the types by the names that FreeIPMI shows, which
// are those of the standard.
#ifndef TALVANE_TOOLS_METRICS_SENSORTYPELABEL_H
#define TALVANE_TOOLS_METRICS_SENSORTYPELABEL_H

namespace tool {

// "Power Supply"; "OEM Reserved" for a maker's type, and "Reserved" for a code without a meaning.
const char* SensorTypeLabel(int type);

}  // namespace tool

#endif
