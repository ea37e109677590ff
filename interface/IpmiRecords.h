// SPDX-License-Identifier: MIT
//
// Filling the sensor records from the IPMI object.
#ifndef TALVANE_INTERFACE_IPMIRECORDS_H
#define TALVANE_INTERFACE_IPMIRECORDS_H

#include "IPMI/SensorRecords.h"
#include "InformationRecords.h"

class IPMIsupport;

// Copies the entity, the type and the converted thresholds; the flags of `out` stay as they are.
// Returns 0.
int GetSensorThreshold(SensorThresholdInfoRaw raw, SensorThresholdInfoConverted converted,
                       SensorThresholdInfo& out);

// Fill the record of one kind of sensors: the count of all and as many elements as fit. Return the
// count; for 0 nothing is written.
int FillIpmiFans(IPMIsupport& ipmi, void* record);
int FillIpmiVoltages(IPMIsupport& ipmi, void* record);
int FillIpmiTemperatures(IPMIsupport& ipmi, void* record);

#endif
