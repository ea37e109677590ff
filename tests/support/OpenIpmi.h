// SPDX-License-Identifier: MIT
//
// The IPMI classes for programs that may use their private and protected members
// (talvane_open_members): the request record, the response buffer and the sensor tables tell cases
// apart that the public getters do not.
#ifndef TALVANE_TESTS_SUPPORT_OPENIPMI_H
#define TALVANE_TESTS_SUPPORT_OPENIPMI_H

#include "IPMI/FRU.h"
#include "IPMI/IPMIbase.h"
#include "IPMI/IPMIsupport.h"
#include "IPMI/SDR.h"
#include "IPMI/Sensor.h"
#include "IPMI/SensorRecords.h"

#endif
