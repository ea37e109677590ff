// SPDX-License-Identifier: MIT
//
// Construction, the loading of the sensor tables, the watchdog timer, and what the commands that
// change a setting share.

#include "IPMI/IPMIsupport.h"

#include <utility>

#include "IPMI/RequestData.h"
#include "IPMI/Responses.h"
#include "InformationRecords.h"
#include "base/Bytes.h"

using namespace talvane;

namespace {

constexpr int kMillisecondsPerTick = 100;  // of the watchdog timer
constexpr unsigned char kActionBits = 0x07;

}  // namespace

IPMIsupport::IPMIsupport() {
    (void)InitIpmiBase();  // result not used: IsInitOK answers whether it worked
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
    if (timeOutValue < TALVANE_WATCHDOG_SHORTEST || timeOutValue > TALVANE_WATCHDOG_LONGEST)
        return -1;
    constexpr unsigned char kOperatingSystem = 0x04;  // timer use; "don't stop", "don't log" clear
    constexpr unsigned char kNoPreTimeOut = 0;
    constexpr unsigned char kClearNoFlags = 0;  // of expired timers
    const int ticks = timeOutValue / kMillisecondsPerTick;
    return SendSetting(APP_CMD, set_watchdog_timer,
                       {kOperatingSystem, LowByte(timerAction & kActionBits), kNoPreTimeOut,
                        kClearNoFlags, LowByte(ticks), HighByte(ticks)});
}

int IPMIsupport::GetWatchDogTimer(int& timerAcion, int& timeOutValue, int& presentTimeOutValue) {
    using Response = WatchdogResponse;
    if (Exchange(APP_CMD, get_watchdog_timer, kBmcAddress, {}) != 0) return -1;
    timerAcion = ResponseByte(Response::kAction) & kActionBits;
    timeOutValue = ResponseLe16(Response::kInitialCountdown) * kMillisecondsPerTick;
    presentTimeOutValue = ResponseLe16(Response::kPresentCountdown) * kMillisecondsPerTick;
    return 0;
}

int IPMIsupport::ResetWatchDogTimer() {
    return Exchange(APP_CMD, reset_watchdog_timer, kBmcAddress, {});
}

int IPMIsupport::SendSetting(int netFn, int code, std::initializer_list<unsigned char> data) {
    RequestData sent = CopyOf(data);
    const int result =
        Transact(netFn, code, kBmcAddress, sent.get(), static_cast<int>(data.size()));
    return FinishSetting(result, std::move(sent));
}

int IPMIsupport::FinishSetting(int result, RequestData sent) {
    if (result == 0) {
        request.data = nullptr;
        return 0;
    }
    // Kept: the request record goes on pointing at the data of a refused setting. The data live
    // until another setting is refused.
    static RequestData refused;
    refused = std::move(sent);
    return result;
}
