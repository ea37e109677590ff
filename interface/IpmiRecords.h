// SPDX-License-Identifier: MIT
//
// Fills the caller's sensor records from the IPMI object.
#ifndef TALVANE_INTERFACE_IPMIRECORDS_H
#define TALVANE_INTERFACE_IPMIRECORDS_H

#include "IPMI/SensorRecords.h"
#include "InformationRecords.h"

class IPMIsupport;

namespace talvane {

// Copies the entity, the sensor type and the converted thresholds to `out`, and leaves the two
// flags of `out` untouched. Returns 0.
int GetSensorThreshold(SensorThresholdInfoRaw raw, SensorThresholdInfoConverted converted,
                       SensorThresholdInfo& out);

// Each fills the caller's record of one kind of sensors: the count of all sensors of the kind, and
// as many elements as the record has room for. Returns the count; when it is 0, nothing is written.
int FillIpmiFans(IPMIsupport& ipmi, void* record);
int FillIpmiVoltages(IPMIsupport& ipmi, void* record);
int FillIpmiTemperatures(IPMIsupport& ipmi, void* record);

}  // namespace talvane

#endif
