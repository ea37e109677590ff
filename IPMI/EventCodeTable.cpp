// SPDX-License-Identifier: MIT
//
// The state texts, in groups of sixteen rows.

#include "IPMI/EventCodeTable.h"

// clang-format off
const char EventDesc[192][64] = {
    // 1: threshold
    "Lower Non-critical - going low", "Lower Non-critical - going high",
    "Lower critical - going low", "Lower critical - going high",
    "Lower Non-recover - going low", "Lower Non-recover - going high",
    "Uper Non-recover - going low", "Uper Non-recover - going gigh",
    "Uper critical - going low", "Uper critical - going high",
    "Uper Non-critical - going low", "Uper Non-critical - going high",
    "", "", "", "",
    // 2: usage
    "idle", "active", "busy",
    "", "", "", "", "", "", "", "", "", "", "", "", "",
    // 3: state
    "State Diasserted", "State Asserted",
    "", "", "", "", "", "", "", "", "", "", "", "", "", "",
    // 4: predictive failure
    "Predictive Failure Diasserted", "Predictive Failure Asserted",
    "", "", "", "", "", "", "", "", "", "", "", "", "", "",
    // 5: limit
    "Limit Not Exceeded", "Limit Exceeded",
    "", "", "", "", "", "", "", "", "", "", "", "", "", "",
    // 6: performance
    "Performance Met", "Performance Lags",
    "", "", "", "", "", "", "", "", "", "", "", "", "", "",
    // 7: severity
    "OK", "transition to Non-Critical from OK",
    "transition to Critical from less servere", "transition to Non-recoverable from less servere",
    "transition to Non-Critical from more servere", "transition to Critical from Non-recoverable",
    "Non-recoverable", "Monitor", "Informational",
    "", "", "", "", "", "", "",
    // 8: device presence
    "Device Removed / Device Absent", "Device Inserted / Device Present",
    "", "", "", "", "", "", "", "", "", "", "", "", "", "",
    // 9: device enabled
    "Device Disabled", "Device Enabled",
    "", "", "", "", "", "", "", "", "", "", "", "", "", "",
    // 10: availability
    "Running", "In Test", "Power Off", "On Line", "Off Line", "Off Duty", "Degraded", "Power save",
    "Install Error",
    "", "", "", "", "", "", "",
    // 11 (redundancy) and 12 (device power state) have no texts.
};
// clang-format on
