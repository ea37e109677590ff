// SPDX-License-Identifier: MIT
//
// Every text has a block of its own, as long as its operation says that it can get.

#include <memory>

#include "IPMI/IPMIsupport.h"
#include "Talvane.h"
#include "fuzz/machine/Controller.h"

namespace fuzz {
namespace {

constexpr std::size_t kText = 64;
constexpr int kTableEntries = 64;

using SensorTextOf = int (IPMIsupport::*)(int sensor, char* text);
using ByteOf = int (IPMIsupport::*)(int sensor, unsigned char& byte);
using ThresholdsOf = int (IPMIsupport::*)(int sensor, SensorThresholdInfoRaw& raw,
                                          SensorThresholdInfoConverted& converted);

void CallTableGetters(IPMIsupport& ipmi, int sensor, char* text) {
    for (const SensorTextOf get :
         {&IPMIsupport::GetFanIDString, &IPMIsupport::GetVoltageIDString,
          &IPMIsupport::GetTemperatureIDString, &IPMIsupport::GetVoltageMax,
          &IPMIsupport::GetVoltageMin, &IPMIsupport::GetFanSpeed, &IPMIsupport::GetVoltageCurrent,
          &IPMIsupport::GetTemperatureCurrent, &IPMIsupport::GetFanStatusDescription,
          &IPMIsupport::GetVoltageStatusDescription, &IPMIsupport::GetTemperatureStatusDescription})
        (void)(ipmi.*get)(sensor, text);
    unsigned char byte = 0;
    for (const ByteOf get :
         {&IPMIsupport::GetFanEntityID, &IPMIsupport::GetVoltageEntityID,
          &IPMIsupport::GetTemperatureEntityID, &IPMIsupport::GetFanSensorNumber,
          &IPMIsupport::GetVoltageSensorNumber, &IPMIsupport::GetTemperatureSensorNumber,
          &IPMIsupport::GetFanSensorType, &IPMIsupport::GetVoltageSensorType,
          &IPMIsupport::GetTemperatureSensorType})
        (void)(ipmi.*get)(sensor, byte);
    SensorThresholdInfoRaw raw{};
    SensorThresholdInfoConverted converted{};
    for (const ThresholdsOf get :
         {&IPMIsupport::GetThreshold, &IPMIsupport::GetFanSensorThreshold,
          &IPMIsupport::GetVoltageSensorThreshold, &IPMIsupport::GetTemperatureSensorThreshold})
        (void)(ipmi.*get)(sensor, raw, converted);
    char status = 0;
    (void)ipmi.GetFanStatus(sensor, status);
}

}  // namespace

void CallSensorOperations() {
    IPMIsupport ipmi;
    const auto text = std::make_unique<char[]>(kText);
    (void)ipmi.GetSensorInfo();
    const int fans = ipmi.GetFanSensorsNum();
    const int voltages = ipmi.GetVoltSensorsNum();
    const int temperatures = ipmi.GetTemSensorsNum();
    // The first free entry, too.
    for (int sensor = 0; sensor <= fans + voltages + temperatures && sensor <= kTableEntries;
         ++sensor)
        CallTableGetters(ipmi, sensor, text.get());
    SensorNumberInfo matches{};
    (void)ipmi.GetSensorNumberInfo(0, 1, kTableEntries, matches);
}

void CallInventoryOperations() {
    IPMIsupport ipmi;
    const auto text = std::make_unique<char[]>(kText + 1);
    (void)ipmi.GetFRUInfo();
    using FruTextOf = int (IPMIsupport::*)(char* text);
    for (const FruTextOf get :
         {&IPMIsupport::GetBoardManufacturer, &IPMIsupport::GetBoardProductName,
          &IPMIsupport::GetBoardSerialNumber, &IPMIsupport::GetBoardPartNumber,
          &IPMIsupport::GetChassisPartNumber, &IPMIsupport::GetChassisSerialNumber,
          &IPMIsupport::GetProductManufacturerName, &IPMIsupport::GetProductName,
          &IPMIsupport::GetProductPartName, &IPMIsupport::GetProductSerialNumber,
          &IPMIsupport::GetProductVersion, &IPMIsupport::GetProductAssetTag})
        (void)(ipmi.*get)(text.get());
}

void CallControllerFunctions() {
    (void)IsIpmiSupport();
    const auto fans = std::make_unique<FanInformation>();
    const auto voltages = std::make_unique<VoltageInformation>();
    const auto temperatures = std::make_unique<TemperatureInformation>();
    const auto thresholds = std::make_unique<SensorThresholdInformation>();
    (void)GetIpmiInfo(TALVANE_FANS, fans.get());
    (void)GetIpmiInfo(TALVANE_VOLTAGES, voltages.get());
    (void)GetIpmiInfo(TALVANE_TEMPERATURES, temperatures.get());
    (void)GetAllThresholdInfo(thresholds.get());
    (void)GetThresholdInfo(7, 1, thresholds.get());
    (void)SetThresholdInfo(7, 1, THRESHOLD_UPPER_CRITICAL, 1.5);
    unsigned char action = 0;
    unsigned char minor = 0;
    int timeOut = 0;
    int left = 0;
    (void)GetWatchDogTimer(&action, &timeOut, &left);
    (void)SetWatchDogTimer(1, TALVANE_WATCHDOG_SHORTEST);
    (void)ResetWatchDogTimer();
    (void)StopWatchDogTimer();
    (void)GetBMCVersion(&action, &minor);
}

}  // namespace fuzz
