// SPDX-License-Identifier: MIT
//
// Requests to the BMC, among them the three that tell everything about its sensors, sent through
// the library's transport. That transport does not say how many bytes have arrived; this file finds
// out.
//
// REQUIRES for each function: IsIpmiSupport() is not 0.
#ifndef TALVANE_TOOLS_SENSORS_BMCREQUEST_H
#define TALVANE_TOOLS_SENSORS_BMCREQUEST_H

#include <vector>

#include "tools/library/BmcMessage.h"

namespace tool {

// The bytes after the completion code that have arrived; none when the BMC has refused the request
// or has not answered. Trailing bytes can be left out, but not one of the answer's first bytes that
// the command always has.
using BmcAnswer = std::vector<unsigned char>;

// The whole answer to any request that only reads. The request is sent twice.
BmcAnswer AskExactly(const BmcMessage& request);

BmcAnswer AskRecord(int recordId);                   // Get SDR (IPMI 2.0, 33.12): the whole record
BmcAnswer AskReading(int lun, int sensorNumber);     // Get Sensor Reading (35.14)
BmcAnswer AskThresholds(int lun, int sensorNumber);  // Get Sensor Thresholds (35.9)

}  // namespace tool

#endif
