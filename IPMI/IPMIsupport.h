// SPDX-License-Identifier: MIT
//
// The BMC of a machine: its sensors, its inventory, and the controller itself (watchdog, firmware
// revision, channels, users, LAN). The operations of sensors and inventory are those of Sensor.h
// and FRU.h, with the same arguments and results.
//
// Rules of the other operations, unless one says otherwise: they return 0. They return -1 when no
// system interface has been found, an output pointer is null, or the controller refuses the
// command; then the outputs stay untouched. ThresholdFlag and the range of the watchdog's time-out
// are declared in InformationRecords.h. Section numbers are those of IPMI 2.0.
#ifndef TALVANE_IPMI_IPMISUPPORT_H
#define TALVANE_IPMI_IPMISUPPORT_H

#include <initializer_list>
#include <memory>

#include "../Export.h"
#include "FRU.h"
#include "IPMIbase.h"
#include "Sensor.h"

struct ChannelInfo {
    unsigned char channelNumber;
    unsigned char channelProtocoltype;
    unsigned char channelMediatype;
};
static_assert(sizeof(ChannelInfo) == 3, "bytes only");

struct LANParameter {
    unsigned char channelNumber;
    unsigned char IPAddress[4];  // most significant byte first
    unsigned char MACAddress[6];
    unsigned char SubnetMask[4];
};
static_assert(sizeof(LANParameter) == 15, "bytes only");

struct WatchdogTimerInfo {
    unsigned char timerAction;
    unsigned short countDown;
};
static_assert(sizeof(WatchdogTimerInfo) == 4, "one byte of padding");

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"  // see IPMIbase
#endif

class TALVANE_EXPORT IPMIsupport : public IPMIbase {
public:
    enum command {
        Set_LAN_parameter = 1,
        Get_SDR_RepositoryInfo = 32,
        Get_SDR = 35,
        Get_sensor_reading = 45,
        Get_channel_auth_capability = 56,
        Get_session_challenge = 57,
        Activate_session = 58,
        Set_session_priviledge_level = 59,
        close_session = 60,
        Get_session_info = 61,
        Get_auth_code = 63,
        Set_channel_access = 64,
        Get_channel_access = 65,
        Get_channel_info = 66,
        Set_user_access = 67,
        Get_user_access = 68,
        Set_user_name = 69,
        Get_user_name = 70,
        Set_user_passwd = 71
    };

    enum NetFunCode {
        CHASSIS_CMD = 0,
        CHASSIS_REP = 1,
        BRIDGE_CMD = 2,
        BRIDGE_REP = 3,
        SENSER_EVENT_CMD = 4,
        SENSER_EVENT_REP = 5,
        APP_CMD = 6,
        APP_REP = 7,
        FIRMWARE_CMD = 8,
        FIRMWARE_REP = 9,
        STORAGE_CMD = 10,
        STORAGE_REP = 11,
        TRASPORT_CMD = 12,
        TRANPORT_REP = 13,
        OEM_CMD = 48
    };

    enum LUNs { BMC_LUN = 0, OEM_LUN1 = 1, SMS_LUN = 2, OEM_LUN2 = 3 };
    enum BusTypeCode { PUBLIC_BUS = 0 };

    // Opens the IPMI device unless it is open already.
    IPMIsupport();
    ~IPMIsupport();

    // Walks over the repository and fills the four sensor tables: fans, voltages, temperatures,
    // processors. Stops at the first step that fails and returns -1.
    int GetSensorInfo();

    // The quantity of a table, which can exceed its 64 entries. 0 while no system interface has
    // been found.
    int GetFanSensorsNum();
    int GetVoltSensorsNum();
    int GetTemSensorsNum();

    // Puts `value` into the threshold `which`, a ThresholdFlag, and moves the settable thresholds
    // that would then be out of order, at most to MinThreshold and MaxThreshold. Thresholds that
    // are not settable stay untouched; a value for one of them is dropped. Always returns 0.
    int SetThresholdOrder(SensorThresholdInfoRaw& raw, int which, unsigned char value);

    // The watchdog timer (27.5 to 27.7). Set stops a running countdown, reset starts it. Times are
    // in milliseconds, and the controller counts tenths of a second. Set returns -1 for a time-out
    // outside of the range of TALVANE_WATCHDOG_SHORTEST and TALVANE_WATCHDOG_LONGEST. Only the low
    // three bits of the action count: 0 none, 1 hard reset, 2 power down, 3 power cycle.
    int SetWatchDogTimer(unsigned char timerAction, int timeOutValue);
    int GetWatchDogTimer(int& timerAcion, int& timeOutValue, int& presentTimeOutValue);
    int ResetWatchDogTimer();

    // Channels (22.24). GetLANChannelInfo looks at channels 1 to 7. When none of them is a LAN
    // channel it still returns 0, and `pCI` describes channel 7: check its medium.
    int GetChannelInfo(unsigned char channelNum, ChannelInfo* pCI);
    int GetLANChannelInfo(ChannelInfo* pCI);

    // Kept: only a user without a password can be set. With `passward` other than null the call
    // returns -1. A name is cut to 16 characters.
    int SetUserInfo(unsigned char userID, const char* userName, const char* passward);

    // Sets the addresses, the mask and the fixed settings of a LAN channel (23.1), between "set in
    // progress" and "commit". Stops at the first request that is refused.
    int SetLANParameter(LANParameter lp);

    // See Sensor.h.
    int GetDeviceID(unsigned char* majorFirmwareRevision, unsigned char* minorFirmwareRevision);
    int GetSDRRepositoryInfo(int& recordCount, int& sdrVersion);
    int GetSensorNumbers(int n);
    int GetSensorNumberInfo(unsigned char entityID, unsigned char sensorType, int n,
                            SensorNumberInfo& info);
    int GetSensorFormulaParameter(unsigned char index, SensorFormulaParameter& out);
    int GetThreshold(int index, SensorThresholdInfoRaw& raw,
                     SensorThresholdInfoConverted& converted);
    int GetValueConversion(SensorFormulaParameter p, unsigned char& raw, double value);
    int SetSensorThreshold(unsigned char sensorNumber, SensorThresholdInfoRaw raw);
    int GetFanEntityID(int i, unsigned char& entityID);
    int GetVoltageEntityID(int i, unsigned char& entityID);
    int GetTemperatureEntityID(int i, unsigned char& entityID);
    int GetFanSensorNumber(int i, unsigned char& number);
    int GetVoltageSensorNumber(int i, unsigned char& number);
    int GetTemperatureSensorNumber(int i, unsigned char& number);
    int GetFanSensorType(int i, unsigned char& type);
    int GetVoltageSensorType(int i, unsigned char& type);
    int GetTemperatureSensorType(int i, unsigned char& type);
    int GetFanIDString(int i, char* out);
    int GetVoltageIDString(int i, char* out);
    int GetTemperatureIDString(int i, char* out);
    int GetVoltageMax(int i, char* out);
    int GetVoltageMin(int i, char* out);
    int GetFanSensorThreshold(int i, SensorThresholdInfoRaw& raw,
                              SensorThresholdInfoConverted& converted);
    int GetVoltageSensorThreshold(int i, SensorThresholdInfoRaw& raw,
                                  SensorThresholdInfoConverted& converted);
    int GetTemperatureSensorThreshold(int i, SensorThresholdInfoRaw& raw,
                                      SensorThresholdInfoConverted& converted);
    int GetFanSpeed(int i, char* out);
    int GetVoltageCurrent(int i, char* out);
    int GetTemperatureCurrent(int i, char* out);
    int GetFanStatus(int i, char& status);
    int GetFanStatusDescription(int i, char* out);
    int GetVoltageStatusDescription(int i, char* out);
    int GetTemperatureStatusDescription(int i, char* out);

    // See FRU.h.
    int GetFRUInfo();
    int GetBoardManufacturer(char* out);
    int GetBoardProductName(char* out);
    int GetBoardSerialNumber(char* out);
    int GetBoardPartNumber(char* out);
    int GetChassisPartNumber(char* out);
    int GetChassisSerialNumber(char* out);
    int GetProductManufacturerName(char* out);
    int GetProductName(char* out);
    int GetProductPartName(char* out);
    int GetProductSerialNumber(char* out);
    int GetProductVersion(char* out);
    int GetProductAssetTag(char* out);

private:
    IPMIsupport(const IPMIsupport&);             // not copyable
    IPMIsupport& operator=(const IPMIsupport&);  // not assignable

    // Helpers of the operations; not exported.

    // One request of a command that changes a setting of the controller. Returns 0 or -1.
    TALVANE_LOCAL int SendSetting(int netFn, int code, std::initializer_list<unsigned char> data);

    // Ends a command that changes a setting: `result` is that of its last request, `sent` the data
    // of that request. Returns `result`.
    TALVANE_LOCAL int FinishSetting(int result, std::unique_ptr<unsigned char[]> sent);

    Sensor sensor;
    FRU fru;
};
static_assert(sizeof(IPMIsupport) == sizeof(IPMIbase) + sizeof(Sensor) + sizeof(FRU),
              "the members above, in this order, without padding");

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

#endif
