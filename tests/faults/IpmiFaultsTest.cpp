// SPDX-License-Identifier: MIT
//
// The exported functions of sensors, thresholds and watchdog while each call of the machine fails
// in turn. The library looks for the controller once in a process, so each run has its own.
#include "Talvane.h"
#include "faults/FaultyController.h"

namespace faults {
namespace {

// Whether the fault can end the search for the controller. Each of three objects opens the device
// and looks at its ports, until one has found an interface.
bool EndsSearch(const Fault& fault) {
    return fault.IsForEver() && (fault.Is("open") || fault.Is("iopl")) && fault.nth == 1;
}

// Memory that runs out is passed on; while the object is created, that can end IPMI.
bool MayAnswer(const Fault& fault, int result) {
    if (fault.Is(kAllocation)) return result == kThrew;
    if (fault.Is("ioctl")) return result == -1;
    return EndsSearch(fault) && result == -1;
}

bool MayAnswerNext(const Fault& fault, int result) {
    if (fault.Is(kAllocation)) return result == -1 || result == 0 || result == 1;
    // Requests that failed during the walk have left sensors out.
    if (fault.Is("ioctl")) return result == -1;
    return EndsSearch(fault) && (result == -1 || result == 1);
}

Operation OwnProcess(const std::string& name, std::size_t size, int (*run)(void* record)) {
    Operation operation;
    operation.name = name;
    operation.recordSize = size;
    operation.run = run;
    operation.mayAnswer = MayAnswer;
    operation.mayAnswerNext = MayAnswerNext;
    operation.restart = [] { (void)release(); };
    // Objects that have found the device and no interface, or no privilege, leave it open.
    operation.descriptorsLeft = [](const Fault& fault) {
        return fault.Is("iopl") || fault.Is(kAllocation) ? 2 : 0;
    };
    operation.ownProcess = true;
    operation.slow = true;
    return operation;
}

// One operation fails in every way; the others begin with the same calls.
Operation InEveryWay(Operation operation) {
    operation.slow = false;
    return operation;
}

template <unsigned long command, class Record>
Operation Query(const std::string& name, std::size_t first, std::size_t elementSize) {
    Operation operation =
        OwnProcess(name, sizeof(Record), [](void* record) { return GetIpmiInfo(command, record); });
    operation.firstElement = first;
    operation.elementSize = elementSize;
    operation.failureLeavesRecord = false;  // memory can run out between two elements
    return operation;
}

class IpmiFaultsTest : public FaultyController {};

TEST_F(IpmiFaultsTest, SensorQueriesStayWithinTheFieldsOfTheirRecords) {
    ExpectAllHolds(server,
                   {InEveryWay(Query<TALVANE_FANS, FanInformation>(
                        "fans", offsetof(FanInformation, fan), sizeof(FAN_DEVICE))),
                    Query<TALVANE_VOLTAGES, VoltageInformation>(
                        "voltages", offsetof(VoltageInformation, voltage), sizeof(VOLTAGE_PROBE)),
                    Query<TALVANE_TEMPERATURES, TemperatureInformation>(
                        "temperatures", offsetof(TemperatureInformation, temperature),
                        sizeof(TEMPERATURE_PROBE))},
                   100);
}

TEST_F(IpmiFaultsTest, ThresholdListsAndSettingsFailOrSucceed) {
    Operation all =
        OwnProcess("GetAllThresholdInfo", sizeof(SensorThresholdInformation), [](void* record) {
            return GetAllThresholdInfo(static_cast<SensorThresholdInformation*>(record));
        });
    all.failureLeavesRecord = false;
    Operation some =
        OwnProcess("GetThresholdInfo", sizeof(SensorThresholdInformation), [](void* record) {
            return GetThresholdInfo(3, 1, static_cast<SensorThresholdInformation*>(record));
        });
    some.failureLeavesRecord = false;
    ExpectAllHolds(
        server,
        {all, some,
         OwnProcess("SetThresholdInfo", 0,
                    [](void*) { return SetThresholdInfo(3, 1, THRESHOLD_UPPER_CRITICAL, 85.0); })},
        100);
}

TEST_F(IpmiFaultsTest, WatchdogAndVersionFailOrSucceed) {
    struct Watchdog {
        int timeOut;
        int present;
        unsigned char action;
    };
    ExpectAllHolds(
        server,
        {OwnProcess("SetWatchDogTimer", 0, [](void*) { return SetWatchDogTimer(0, 20000); }),
         OwnProcess("ResetWatchDogTimer", 0, [](void*) { return ResetWatchDogTimer(); }),
         OwnProcess("StopWatchDogTimer", 0, [](void*) { return StopWatchDogTimer(); }),
         OwnProcess("GetWatchDogTimer", sizeof(Watchdog),
                    [](void* record) {
                        auto& watchdog = *static_cast<Watchdog*>(record);
                        return GetWatchDogTimer(&watchdog.action, &watchdog.timeOut,
                                                &watchdog.present);
                    }),
         OwnProcess("GetBMCVersion", 2,
                    [](void* record) {
                        auto* const bytes = static_cast<unsigned char*>(record);
                        return GetBMCVersion(&bytes[0], &bytes[1]);
                    })},
        80);
}

TEST_F(IpmiFaultsTest, SupportQueryAnswersWhetherTheControllerWasFound) {
    Operation operation = OwnProcess("IsIpmiSupport", 0, [](void*) { return IsIpmiSupport(); });
    operation.mayAnswer = [](const Fault& fault, int result) {
        return (fault.Is(kAllocation) && result == kThrew) || (EndsSearch(fault) && result == 0);
    };
    operation.mayAnswerNext = [](const Fault& fault, int result) {
        return (fault.Is(kAllocation) || EndsSearch(fault)) && result == 0;
    };
    operation.failureLeavesRecord = false;
    ExpectAllHolds(server, {operation}, 10);
}

}  // namespace
}  // namespace faults
