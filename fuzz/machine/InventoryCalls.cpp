// SPDX-License-Identifier: MIT
//
// Every answer has a block of its own, so that a write beyond it is a finding.

#include "fuzz/machine/InventoryCalls.h"

#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <vector>

#include "SmBios/SmBios.h"
#include "Talvane.h"

namespace fuzz {
namespace {

struct Command {
    unsigned long code;
    std::size_t recordSize;
};

// The numbers of elements are those that a machine can state at most.
constexpr Command kCommands[] = {
    {TALVANE_BOARD, sizeof(BaseBoardInformation)},
    {TALVANE_PROCESSORS,
     offsetof(ProcessorInformation, cpu) + 16 * sizeof(ProcessorInformation::cpu[0])},
    {TALVANE_MEMORY, sizeof(MemoryInformation)},
    {TALVANE_PORTS, offsetof(IOInformation, port) + 128 * sizeof(PORT)},
    {TALVANE_POWER, offsetof(SystemPowerInformation, PowerSupply) + 32 * sizeof(SYS_POWER)},
    {TALVANE_UPS, offsetof(SystemPowerInformation, PowerSupply) + 32 * sizeof(SYS_POWER)},
    {TALVANE_FANS, offsetof(FanInformation, fan) + 63 * sizeof(FAN_DEVICE)},
    {TALVANE_VOLTAGES, sizeof(VoltageInformation)},
    {TALVANE_TEMPERATURES, sizeof(TemperatureInformation)},
    {TALVANE_SYSTEM, sizeof(SysInformation)},
};

// Texts without a size come as long as they are; a table has less than 64 KiB.
constexpr std::size_t kAnyText = 0x10000 + 64;
constexpr unsigned kBounded = 32;

using TextOf = int (SmBios::*)(char* text, unsigned size);
using NumberedTextOf = int (SmBios::*)(int number, char* text, unsigned size);
using WholeTextOf = int (SmBios::*)(int number, char* text);
using QuantityOf = int (SmBios::*)();

void CallQuantities(SmBios& reader) {
    for (const QuantityOf quantity :
         {&SmBios::GetProcessorQuantity, &SmBios::GetProcessorVirtualQuantity,
          &SmBios::GetMemoryTotalSize, &SmBios::GetPortQuantity, &SmBios::GetPSRedundantQuantity,
          &SmBios::GetPSBiosEnable, &SmBios::GetFanQuantity, &SmBios::GetOnBoardDevQuantity,
          &SmBios::GetVoltageProbeQuantity, &SmBios::GetTemperatureProbeQuantity})
        (void)(reader.*quantity)();
}

void CallBoundedTexts(SmBios& reader, char* text) {
    for (const TextOf get :
         {&SmBios::GetBiosVendor, &SmBios::GetBiosVersion, &SmBios::GetBiosReleaseDate,
          &SmBios::GetSysManufacturer, &SmBios::GetSysProductname, &SmBios::GetSysVersion,
          &SmBios::GetSystemSerialNumber, &SmBios::GetBoardManufacturer, &SmBios::GetBoardProduct,
          &SmBios::GetBoardVersion, &SmBios::GetBoardSerialNo, &SmBios::GetBoardAssetTag})
        (void)(reader.*get)(text, kBounded);
    for (const NumberedTextOf get :
         {&SmBios::GetProcessorManufacturer, &SmBios::GetProcessorVersion,
          &SmBios::GetProcessorSerialNo, &SmBios::GetPortDecription, &SmBios::GetVoltageDescription,
          &SmBios::GetTemperatureDescription})
        for (int number = 0; number < 4; ++number) (void)(reader.*get)(number, text, kBounded);
}

void CallWholeTexts(SmBios& reader, char* text) {
    for (const WholeTextOf get :
         {&SmBios::GetProcessorFamily, &SmBios::GetProcessorVoltage,
          &SmBios::GetProcessorExternalClock, &SmBios::GetProcessorMaxSpeed,
          &SmBios::GetProcessorCurrentSpeed, &SmBios::GetPortType, &SmBios::GetFanStatus,
          &SmBios::GetFanDescription, &SmBios::GetFanSpeed, &SmBios::GetOnBoardDevType,
          &SmBios::GetOnBoardDevDescription, &SmBios::GetVoltageStatus, &SmBios::GetVoltageCurrent,
          &SmBios::GetVoltageMax, &SmBios::GetVoltageMin, &SmBios::GetTemperatureStatus,
          &SmBios::GetTemperatureCurrent})
        for (int number = 0; number < 4; ++number) (void)(reader.*get)(number, text);
}

void CallOthers(SmBios& reader, char* text, char* bounded) {
    for (int number = 0; number < 4; ++number) {
        unsigned char status = 0;
        int enabled = 0;
        (void)reader.GetProcessorStatus(number, &status);
        (void)reader.GetOnBoardDevBiosEnable(number, enabled);
        for (int level = 0; level < 3; ++level) {
            (void)reader.GetCacheDesignation(number, level, bounded, kBounded);
            (void)reader.GetCacheMaxSize(number, level, text);
            (void)reader.GetCacheInstalledSize(number, level, text);
            (void)reader.GetCacheSpeed(number, level, text);
        }
        constexpr int kAnyType = 0xFF;
        (void)reader.GetPSManufacturer(kAnyType, number, bounded, kBounded);
        (void)reader.GetPSDeviceName(kAnyType, number, bounded, kBounded);
        (void)reader.GetPSSerialNo(kAnyType, number, bounded, kBounded);
        (void)reader.GetPSStatus(kAnyType, number, text);
    }
    (void)reader.GetPSQuantity(0xFF);
    LocalMemInfo memory{};
    (void)reader.GetMemoryInformation(&memory);
}

void AskForRecord(const Command& command) {
    const auto record = std::make_unique<unsigned char[]>(command.recordSize);
    (void)GetInfo(command.code, record.get());
}

using OperationGroup = void (*)(SmBios& reader, char* text, char* bounded);

constexpr OperationGroup kGroups[] = {
    [](SmBios& reader, char*, char*) { CallQuantities(reader); },
    [](SmBios& reader, char*, char* bounded) { CallBoundedTexts(reader, bounded); },
    [](SmBios& reader, char* text, char*) { CallWholeTexts(reader, text); },
    CallOthers,
};

void CallReader(OperationGroup group) {
    SmBios reader;
    static char text[kAnyText];
    const auto bounded = std::make_unique<char[]>(kBounded);
    group(reader, text, bounded.get());
}

}  // namespace

void AskFirmware(unsigned question) {
    question %= std::size(kCommands) + std::size(kGroups);
    if (question < std::size(kCommands)) {
        AskForRecord(kCommands[question]);
    } else {
        CallReader(kGroups[question - std::size(kCommands)]);
    }
}

}  // namespace fuzz
