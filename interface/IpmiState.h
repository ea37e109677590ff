// SPDX-License-Identifier: MIT
//
// The one IPMI object of the process, and what the exported functions remember between calls. The
// library does not export any of it.
#ifndef TALVANE_INTERFACE_IPMISTATE_H
#define TALVANE_INTERFACE_IPMISTATE_H

class IPMIsupport;

namespace talvane {

// 1 while a sensor query, a watchdog call or the BMC version call is in progress.
extern int NoEnterIPMI;

// 1 while SetWatchDogTimer or GetWatchDogTimer is in progress. Kept: it stays 1 after one of them
// has answered busy.
extern int NoEnterWatchDogTimer;

// 1 once the sensor repository has been read. Kept: release leaves it 1, so that an object that is
// created later has no sensors.
extern int IPMIGetSensorInfoOK;

// Creates the object on first use. REQUIRES: IsIpmiBeingCreated() is false.
IPMIsupport& Ipmi();

// Whether this is a call from within the creation of the object. There is no object to use then,
// and no second one is created.
bool IsIpmiBeingCreated();

// Frees the object. The next use creates another.
void ReleaseIpmi();

}  // namespace talvane

#endif
