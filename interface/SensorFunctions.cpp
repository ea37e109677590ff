// SPDX-License-Identifier: MIT
//
// The exported sensor query: guards itself against nested calls, reads the repository on first use,
// and passes the command on to the function that fills its record.

#include "IPMI/IPMIsupport.h"
#include "Talvane.h"
#include "interface/CallResult.h"
#include "interface/IpmiRecords.h"
#include "interface/IpmiState.h"
#include "interface/ReentryGuard.h"

using namespace talvane;

namespace {

struct SensorCommand {
    unsigned long code;
    int (*fill)(IPMIsupport& ipmi, void* record);
};

constexpr SensorCommand kSensorCommands[] = {
    {TALVANE_FANS, FillIpmiFans},
    {TALVANE_VOLTAGES, FillIpmiVoltages},
    {TALVANE_TEMPERATURES, FillIpmiTemperatures},
};

}  // namespace

int GetIpmiInfo(unsigned long command, void* buffer) {
    if (NoEnterIPMI != 0 || NoEnterWatchDogTimer != 0) return kBusy;
    // IsIpmiSupport would answer 0 here, which would be taken for a machine without IPMI.
    if (IsIpmiBeingCreated()) return kBusy;
    ReentryGuard guard(NoEnterIPMI);
    if (IsIpmiSupport() == 0) {
        guard.LeaveSet();  // Kept: without IPMI, every later call answers busy.
        return kFailure;
    }
    IPMIsupport& ipmi = Ipmi();
    if (ipmi.IsInitOK() == 0) return kFailure;
    if (IPMIGetSensorInfoOK == 0) {
        if (ipmi.GetSensorInfo() != 0) return kFailure;
        IPMIGetSensorInfoOK = 1;
    }
    for (const SensorCommand& row : kSensorCommands)
        if (row.code == command) return row.fill(ipmi, buffer) == 0 ? kFailure : kSuccess;
    return kSuccess;
}
