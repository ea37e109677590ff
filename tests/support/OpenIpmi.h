// SPDX-License-Identifier: MIT
//
// The IPMI classes with their private and protected members open to the tests: the request record,
// the response buffer and the sensor tables tell cases apart that the public getters do not.
#ifndef TALVANE_TESTS_SUPPORT_OPENIPMI_H
#define TALVANE_TESTS_SUPPORT_OPENIPMI_H

#include <cstddef>
#include <initializer_list>

#include "Export.h"
#include "IPMI/SensorRecords.h"

// Only the class headers see this: everything they include has been included above. Access
// specifiers change neither the layout nor the exported names.
#define private public
#define protected public
#include "IPMI/FRU.h"
#include "IPMI/IPMIbase.h"
#include "IPMI/IPMIsupport.h"
#include "IPMI/SDR.h"
#include "IPMI/Sensor.h"
#undef protected
#undef private

#endif
