// SPDX-License-Identifier: MIT
//
// The one IPMI object of the process and what the exported functions remember between calls.
// Hidden: the library does not export them.
#ifndef TALVANE_INTERFACE_IPMISTATE_H
#define TALVANE_INTERFACE_IPMISTATE_H

class IPMIsupport;

// In progress: a sensor query, a watchdog call or the BMC version call.
extern int NoEnterIPMI;

// In progress: SetWatchDogTimer or GetWatchDogTimer. Stays set when one of them is refused.
extern int NoEnterWatchDogTimer;

// 1 once the sensor repository has been read. Kept: release leaves it set, so that an object made
// afterwards has no sensors.
extern int IPMIGetSensorInfoOK;

// Created on first use. REQUIRES: not called from within the creation, where IsIpmiSupport is 0.
IPMIsupport& Ipmi();

// Frees the object; the next use creates another.
void ReleaseIpmi();

#endif
