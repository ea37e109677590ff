// SPDX-License-Identifier: MIT
//
// The exported functions of the watchdog timer and of the BMC's firmware version.

#include "IPMI/IPMIsupport.h"
#include "Talvane.h"
#include "interface/CallResult.h"
#include "interface/IpmiState.h"
#include "interface/ReentryGuard.h"

using namespace talvane;

int SetWatchDogTimer(int timerAction, int timeOutValue) {
    if (IsIpmiSupport() == 0) return kFailure;
    ReentryGuard watchdog(NoEnterWatchDogTimer);
    if (NoEnterIPMI != 0) {
        // Kept: sensor queries answer busy until a later SetWatchDogTimer or GetWatchDogTimer is
        // done.
        watchdog.LeaveSet();
        return kBusy;
    }
    const ReentryGuard ipmi(NoEnterIPMI);
    IPMIsupport& support = Ipmi();
    if (support.SetWatchDogTimer(static_cast<unsigned char>(timerAction), timeOutValue) != 0)
        return kFailure;
    return support.ResetWatchDogTimer() == 0 ? kSuccess : kFailure;  // starts the countdown
}

int ResetWatchDogTimer(void) {
    if (IsIpmiSupport() == 0) return kFailure;
    if (NoEnterIPMI != 0) return kBusy;
    const ReentryGuard ipmi(NoEnterIPMI);
    return Ipmi().ResetWatchDogTimer() == 0 ? kSuccess : kFailure;
}

int StopWatchDogTimer(void) {
    if (IsIpmiSupport() == 0) return kFailure;
    if (NoEnterIPMI != 0) return kBusy;
    const ReentryGuard ipmi(NoEnterIPMI);
    // Setting the timer stops it. Only a reset would start it again.
    constexpr unsigned char kNoAction = 0;
    constexpr int kThreeMinutes = 180000;
    return Ipmi().SetWatchDogTimer(kNoAction, kThreeMinutes) == 0 ? kSuccess : kFailure;
}

int GetWatchDogTimer(unsigned char* timerAcion, int* timeOutValue, int* presentTimerOutValue) {
    if (IsIpmiSupport() == 0) return kFailure;
    ReentryGuard watchdog(NoEnterWatchDogTimer);
    if (NoEnterIPMI != 0) {
        watchdog.LeaveSet();  // Kept: as in SetWatchDogTimer.
        return kBusy;
    }
    const ReentryGuard ipmi(NoEnterIPMI);
    int action = 0;
    int timeOut = 0;
    int present = 0;
    if (Ipmi().GetWatchDogTimer(action, timeOut, present) != 0) return kFailure;
    if (timerAcion != nullptr) *timerAcion = static_cast<unsigned char>(action);
    if (timeOutValue != nullptr) *timeOutValue = timeOut;
    if (presentTimerOutValue != nullptr) *presentTimerOutValue = present;
    return kSuccess;
}

int GetBMCVersion(unsigned char* majorFirmwareRevision, unsigned char* minorFirmwareRevision) {
    if (IsIpmiSupport() == 0) return kFailure;
    if (NoEnterIPMI != 0) return kBusy;
    const ReentryGuard ipmi(NoEnterIPMI);
    return Ipmi().GetDeviceID(majorFirmwareRevision, minorFirmwareRevision) == 0 ? kSuccess
                                                                                 : kFailure;
}
