// SPDX-License-Identifier: MIT
//
// Construction, loading of the sensor tables, and the watchdog timer.

#include "IPMI/IPMIsupport.h"

#include <utility>

#include "IPMI/RequestData.h"
#include "base/Bytes.h"

using namespace talvane;

namespace {

// Of the watchdog timer, in milliseconds.
constexpr int kShortestTimeOut = 10000;
constexpr int kLongestTimeOut = 999000;
constexpr int kTick = 100;

}  // namespace

IPMIsupport::IPMIsupport() {
    (void)InitIpmiBase();  // result not used: IsInitOK tells
}

IPMIsupport::~IPMIsupport() {}

int IPMIsupport::GetSensorInfo() {
    if (IsInitOK() == 0) return -1;
    int count = 0;
    int version = 0;
    const bool loaded =
        sensor.GetSDRRepositoryInfo(count, version) == 0 && sensor.GetSensorNumbers(count) == 0 &&
        sensor.GetFanSensorsInfo(count) == 0 && sensor.GetVoltSensorsInfo(count) == 0 &&
        sensor.GetTemSensorsInfo(count) == 0 && sensor.GetProcessorSensorInfo(count) == 0;
    return loaded ? 0 : -1;
}

int IPMIsupport::GetFanSensorsNum() {
    return sensor.IsInitOK() != 0 ? sensor.FSInfo.quantity : 0;
}

int IPMIsupport::GetVoltSensorsNum() {
    return sensor.IsInitOK() != 0 ? sensor.VSInfo.quantity : 0;
}

int IPMIsupport::GetTemSensorsNum() {
    return sensor.IsInitOK() != 0 ? sensor.TSInfo.quantity : 0;
}

int IPMIsupport::SetWatchDogTimer(unsigned char timerAction, int timeOutValue) {
    if (IsInitOK() == 0) return -1;
    if (timeOutValue < kShortestTimeOut || timeOutValue > kLongestTimeOut) return -1;
    constexpr unsigned char kOperatingSystem = 0x04;  // timer use; "don't stop", "don't log" clear
    constexpr unsigned char kNoInterval = 0;          // before the time-out
    constexpr unsigned char kKeepFlags = 0;           // of expirations
    const int count = timeOutValue / kTick;
    return Request(APP_CMD, set_watchdog_timer,
                   {kOperatingSystem, LowByte(timerAction & 0x07), kNoInterval, kKeepFlags,
                    LowByte(count), HighByte(count)});
}

int IPMIsupport::GetWatchDogTimer(int& timerAcion, int& timeOutValue, int& presentTimeOutValue) {
    if (Exchange(APP_CMD, get_watchdog_timer, kBmcAddress, {}) != 0) return -1;
    const ByteView response(ResponseBuffer, kResponseSize);
    timerAcion = ByteAt(response, 1) & 0x07;
    timeOutValue = Le16(response, 4) * kTick;
    presentTimeOutValue = Le16(response, 6) * kTick;
    return 0;
}

int IPMIsupport::ResetWatchDogTimer() {
    return Exchange(APP_CMD, reset_watchdog_timer, kBmcAddress, {});
}

// One request of a command that changes the controller's settings.
int IPMIsupport::Request(int netFn, int code, std::initializer_list<unsigned char> data) {
    RequestData sent = CopyOf(data);
    const int result =
        Transact(netFn, code, kBmcAddress, sent.get(), static_cast<int>(data.size()));
    return Settled(result, std::move(sent), request.data);
}
