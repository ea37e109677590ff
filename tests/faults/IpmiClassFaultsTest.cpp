// SPDX-License-Identifier: MIT
//
// Every operation of the exported IPMI classes that sends requests, while each of them fails in
// turn. The driver's refusal is not passed on: the response reads as zeros, and an operation ends
// as with a controller that answers so.
#include "faults/FaultyController.h"

namespace faults {
namespace {

constexpr std::size_t kRoom = 512;  // for the answer of any operation

class IpmiClassFaultsTest : public FaultyController {
protected:
    // An operation of an object that has read the repository and the inventory.
    Operation OnLoaded(const std::string& name, int (*run)(IPMIsupport& ipmi, char* out),
                       std::size_t room = kRoom) {
        Operation operation;
        operation.name = name;
        operation.recordSize = room;
        operation.run = [this, run](void* record) {
            return run(*loaded, static_cast<char*>(record));
        };
        operation.failureLeavesRecord = false;
        operation.mayAnswer = [](const Fault& fault, int result) {
            return fault.Is(kAllocation) ? result == kThrew : result == -1 || result == 0;
        };
        operation.restart = [this] {
            loaded.reset();  // closes the device, before another is opened
            InitOK = 0;
            hDevice = -1;
            loaded = std::make_unique<IPMIsupport>();
            (void)loaded->GetSensorInfo();
            (void)loaded->GetFRUInfo();
        };
        return operation;
    }

    // A text of a sensor or of the inventory: at most 64 bytes.
    Operation Text(const std::string& name, int (*run)(IPMIsupport& ipmi, char* out)) {
        Operation operation = OnLoaded(name, run);
        operation.otherFields = {{0, 65}};
        return operation;
    }

    std::unique_ptr<IPMIsupport> loaded;
};

template <class Value>
Value& As(char* out) {
    return *reinterpret_cast<Value*>(out);
}

TEST_F(IpmiClassFaultsTest, ReadingsAndStatesFailOrAreWritten) {
    using Support = IPMIsupport;
    ExpectAllHolds(
        server,
        {Text("GetFanSpeed", [](Support& ipmi, char* out) { return ipmi.GetFanSpeed(0, out); }),
         Text("GetVoltageCurrent",
              [](Support& ipmi, char* out) { return ipmi.GetVoltageCurrent(0, out); }),
         Text("GetTemperatureCurrent",
              [](Support& ipmi, char* out) { return ipmi.GetTemperatureCurrent(0, out); }),
         Text("GetFanStatusDescription",
              [](Support& ipmi, char* out) { return ipmi.GetFanStatusDescription(0, out); }),
         Text("GetVoltageStatusDescription",
              [](Support& ipmi, char* out) { return ipmi.GetVoltageStatusDescription(0, out); }),
         Text(
             "GetTemperatureStatusDescription",
             [](Support& ipmi, char* out) { return ipmi.GetTemperatureStatusDescription(0, out); }),
         OnLoaded("GetFanStatus",
                  [](Support& ipmi, char* out) { return ipmi.GetFanStatus(0, *out); }),
         OnLoaded("ReadSensor",
                  [](Support& ipmi, char* out) {
                      return ipmi.sensor.ReadSensor(0x10, As<unsigned char>(out));
                  }),
         OnLoaded("GetSensorStatus",
                  [](Support& ipmi, char* out) {
                      return ipmi.sensor.GetSensorStatus(0x10, 1, As<unsigned char>(out));
                  })},
        60);
}

TEST_F(IpmiClassFaultsTest, RepositoryIsReadOrNot) {
    using Support = IPMIsupport;
    ExpectAllHolds(
        server,
        {OnLoaded("GetSDRRepositoryInfo",
                  [](Support& ipmi, char* out) {
                      int* const numbers = &As<int>(out);
                      return ipmi.GetSDRRepositoryInfo(numbers[0], numbers[1]);
                  }),
         OnLoaded("ReserveSDRRepository",
                  [](Support& ipmi, char*) {
                      unsigned short reservation = 0;  // another one each time
                      return ipmi.sensor.ReserveSDRRepository(reservation);
                  }),
         OnLoaded("GetSDR",
                  [](Support& ipmi, char* out) {
                      const int next = ipmi.sensor.GetSDR(0, 0, &As<unsigned char>(out), 0xFF);
                      return next == 0 ? -1 : 0;
                  }),
         OnLoaded("GetSensorNumbers",
                  [](Support& ipmi, char*) { return ipmi.GetSensorNumbers(3); }),
         OnLoaded("GetSensorInfo", [](Support& ipmi, char*) { return ipmi.GetSensorInfo(); })},
        50);
}

TEST_F(IpmiClassFaultsTest, ThresholdsAreReadAndSetOrNot) {
    using Support = IPMIsupport;
    struct Thresholds {
        SensorThresholdInfoRaw raw;
        SensorThresholdInfoConverted converted;
    };
    ExpectAllHolds(
        server,
        {OnLoaded("GetSensorThreshold",
                  [](Support& ipmi, char* out) {
                      auto& thresholds = As<Thresholds>(out);
                      return ipmi.sensor.GetSensorThreshold(0x10, {}, thresholds.raw,
                                                            thresholds.converted);
                  }),
         OnLoaded("SetSensorThreshold",
                  [](Support& ipmi, char*) { return ipmi.SetSensorThreshold(0x10, {}); })},
        20);
}

TEST_F(IpmiClassFaultsTest, InventoryIsReadOrNot) {
    using Support = IPMIsupport;
    ExpectAllHolds(
        server,
        {OnLoaded("GetFRUInfo", [](Support& ipmi, char*) { return ipmi.GetFRUInfo(); }),
         OnLoaded("GetFRU", [](Support& ipmi, char*) { return ipmi.fru.GetFRU(); }),
         OnLoaded("GetCommonHeaderInfo",
                  [](Support& ipmi, char*) { return ipmi.fru.GetCommonHeaderInfo(); }),
         OnLoaded("GetBoardInfo", [](Support& ipmi, char*) { return ipmi.fru.GetBoardInfo(); }),
         OnLoaded("GetChassisInfo", [](Support& ipmi, char*) { return ipmi.fru.GetChassisInfo(); }),
         OnLoaded("GetProductInfo",
                  [](Support& ipmi, char*) { return ipmi.fru.GetProductInfo(); })},
        50);
}

TEST_F(IpmiClassFaultsTest, SettingsAndChannelsFailOrSucceed) {
    using Support = IPMIsupport;
    ExpectAllHolds(
        server,
        {OnLoaded("GetDeviceID",
                  [](Support& ipmi, char* out) {
                      auto* const revision = &As<unsigned char>(out);
                      return ipmi.GetDeviceID(&revision[0], &revision[1]);
                  }),
         OnLoaded("SetWatchDogTimer",
                  [](Support& ipmi, char*) { return ipmi.SetWatchDogTimer(0, 20000); }),
         OnLoaded("GetWatchDogTimer",
                  [](Support& ipmi, char* out) {
                      int* const numbers = &As<int>(out);
                      return ipmi.GetWatchDogTimer(numbers[0], numbers[1], numbers[2]);
                  }),
         OnLoaded("ResetWatchDogTimer",
                  [](Support& ipmi, char*) { return ipmi.ResetWatchDogTimer(); }),
         OnLoaded("GetChannelInfo",
                  [](Support& ipmi, char* out) {
                      return ipmi.GetChannelInfo(1, &As<ChannelInfo>(out));
                  }),
         OnLoaded("GetLANChannelInfo",
                  [](Support& ipmi, char* out) {
                      return ipmi.GetLANChannelInfo(&As<ChannelInfo>(out));
                  }),
         OnLoaded("SetUserInfo",
                  [](Support& ipmi, char*) { return ipmi.SetUserInfo(2, "admin", nullptr); }),
         OnLoaded("SetLANParameter",
                  [](Support& ipmi, char*) {
                      return ipmi.SetLANParameter({1, {}, {}, {}});
                  })},
        100);
}

}  // namespace
}  // namespace faults
