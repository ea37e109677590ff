// SPDX-License-Identifier: MIT
//
// The exported functions that list and set the thresholds of sensors.

#include <algorithm>
#include <cstring>
#include <iterator>

#include "IPMI/IPMIsupport.h"
#include "Talvane.h"
#include "interface/CallResult.h"
#include "interface/IpmiRecords.h"
#include "interface/IpmiState.h"
#include "interface/ReentryGuard.h"

using namespace talvane;

namespace {

int NoEnterGetThreshold = 0;  // Kept: tested and cleared, but no function sets it.
int NoEnterSetThreshold = 0;

constexpr int kMaxThresholds = std::size(SensorThresholdInformation().SensorThreshold);

// Asks for the number of records in the repository, and reads the repository on first use. Returns
// 0 or -1.
int OpenRepository(IPMIsupport& ipmi, int& records) {
    int version = 0;
    if (ipmi.IsInitOK() == 0 || ipmi.GetSDRRepositoryInfo(records, version) != 0) return kFailure;
    if (IPMIGetSensorInfoOK == 0) {
        if (ipmi.GetSensorNumbers(records) != 0) return kFailure;
        IPMIGetSensorInfoOK = 1;
    }
    return kSuccess;
}

// Fills the next element of the list and returns it. REQUIRES: the list has fewer than
// kMaxThresholds.
SensorThresholdInfo& AppendThresholds(SensorThresholdInformation& list,
                                      const SensorThresholdInfoRaw& raw,
                                      const SensorThresholdInfoConverted& converted) {
    SensorThresholdInfo& element = list.SensorThreshold[list.quantity];
    (void)GetSensorThreshold(raw, converted, element);  // result not used: always 0
    ++list.quantity;
    return element;
}

void ListThresholds(int deviceID, int sensorType, SensorThresholdInformation& list) {
    IPMIsupport& ipmi = Ipmi();
    std::memset(&list, 0, sizeof list);
    SensorNumberInfo sensors{};
    SensorThresholdInfoRaw raw{};
    SensorThresholdInfoConverted converted{};
    int records = 0;
    if (OpenRepository(ipmi, records) != 0) return;
    if (ipmi.GetSensorNumberInfo(static_cast<unsigned char>(deviceID),
                                 static_cast<unsigned char>(sensorType), records, sensors) != 0)
        return;
    for (int k = 0; k < std::min(sensors.quantity, kMaxThresholds); ++k) {
        if (ipmi.GetThreshold(sensors.sensorOrder[k], raw, converted) != 0) continue;
        SensorThresholdInfo& element = AppendThresholds(list, raw, converted);
        element.DeviceID = deviceID;
        element.SensorType = sensorType;
    }
}

// Sets one threshold of one sensor. `index` is that of the sensor's walk entry, counted from 0.
// Returns 0 or -1.
int SetThreshold(IPMIsupport& ipmi, int index, unsigned char sensorNumber, int thresholdFlag,
                 double value) {
    SensorThresholdInfoRaw raw{};
    SensorThresholdInfoConverted converted{};
    if (ipmi.GetThreshold(index, raw, converted) != 0) return kFailure;
    SensorFormulaParameter formula{};
    // Kept: only the low byte of the index is looked up. Result not used: without an entry the
    // formula stays 0.
    (void)ipmi.GetSensorFormulaParameter(static_cast<unsigned char>(index), formula);
    unsigned char rawByte = 0;
    if (ipmi.GetValueConversion(formula, rawByte, value) != 0) return kFailure;
    // The thresholds next to it may be moved over the whole range of a raw byte.
    raw.MinThreshold = 0;
    raw.MaxThreshold = 0xFF;
    if (ipmi.SetThresholdOrder(raw, thresholdFlag, rawByte) != 0) return kFailure;
    return ipmi.SetSensorThreshold(sensorNumber, raw);
}

}  // namespace

int GetAllThresholdInfo(SensorThresholdInformation* buffer) {
    if (IsIpmiSupport() == 0 || buffer == nullptr) return kFailure;
    IPMIsupport& ipmi = Ipmi();
    std::memset(buffer, 0, sizeof *buffer);
    SensorThresholdInfoRaw raw{};
    SensorThresholdInfoConverted converted{};
    int records = 0;
    if (OpenRepository(ipmi, records) != 0) return kFailure;
    for (int i = 0; i < std::min(records, kMaxThresholds); ++i)
        if (ipmi.GetThreshold(i, raw, converted) == 0)
            (void)AppendThresholds(*buffer, raw, converted);
    return kSuccess;
}

int GetThresholdInfo(int deviceID, int sensorType, SensorThresholdInformation* buffer) {
    if (NoEnterGetThreshold != 0) return kBusy;  // LCOV_EXCL_BR_LINE: see its definition
    if (IsIpmiSupport() != 0 && buffer != nullptr) ListThresholds(deviceID, sensorType, *buffer);
    NoEnterGetThreshold = 0;
    return kFailure;  // Kept: also after the list has been filled; its quantity says how many.
}

int SetThresholdInfo(int deviceID, int sensorType, int thresholdFlag, double thresholdValue) {
    if (NoEnterSetThreshold != 0) return kBusy;
    ReentryGuard guard(NoEnterSetThreshold);
    if (IsIpmiSupport() == 0) return kFailure;
    IPMIsupport& ipmi = Ipmi();
    int records = 0;
    if (OpenRepository(ipmi, records) != 0) return kFailure;
    SensorNumberInfo sensors{};
    if (ipmi.GetSensorNumberInfo(static_cast<unsigned char>(deviceID),
                                 static_cast<unsigned char>(sensorType), records, sensors) != 0) {
        guard.LeaveSet();  // Kept: every later call answers busy.
        return kFailure;
    }
    for (int k = 0; k < sensors.quantity; ++k)
        if (SetThreshold(ipmi, sensors.sensorOrder[k], sensors.sensorNumber[k], thresholdFlag,
                         thresholdValue) != 0)
            return kFailure;
    return kSuccess;
}
