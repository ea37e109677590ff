// SPDX-License-Identifier: MIT
//
// Fills each inventory record from the getters of the SMBIOS reader. Their results are not used: a
// field for which a getter finds nothing stays as the caller gave it, and only the counts decide
// how far a loop goes.

#include "interface/InventoryRecords.h"

#include <cstddef>
#include <cstring>

#include "InformationRecords.h"
#include "SmBios/ProcessorStatus.h"
#include "SmBios/SmBios.h"

namespace talvane {
namespace {

// Element i, from 0, of the array at `offset` in a record. Kept: the firmware's counts are not cut
// to the size of the record's array; a caller that expects more elements passes a longer record.
template <class Element>
Element& ElementAt(void* record, std::size_t offset, int i) {
    return reinterpret_cast<Element*>(static_cast<char*>(record) + offset)[i];
}

void FillProcessor(SmBios& reader, int index, CPU& cpu) {
    unsigned char status = 0;
    (void)reader.GetProcessorStatus(index, &status);
    const int state = status & processor_status::kState;
    if (state == processor_status::kDisabledByUser || state == processor_status::kDisabledByBios)
        cpu.IsDisabled = 1;
    if (state == processor_status::kUnknown) cpu.IsUHT = 1;

    (void)reader.GetProcessorMaxSpeed(index, cpu.MaxSpeed);
    (void)reader.GetProcessorCurrentSpeed(index, cpu.CurrentSpeed);
    (void)reader.GetProcessorExternalClock(index, cpu.ExternalClock);
    (void)reader.GetProcessorFamily(index, cpu.family);
    (void)reader.GetProcessorManufacturer(index, cpu.manufacturer, sizeof cpu.manufacturer);

    int level = 0;
    for (CACHE& cache : cpu.cache) {
        // The order of the calls decides what remains where a text runs into the next field.
        (void)reader.GetCacheDesignation(index, level, cache.designation, sizeof cache.designation);
        (void)reader.GetCacheInstalledSize(index, level, cache.InstalledSize);
        (void)reader.GetCacheMaxSize(index, level, cache.MaxSize);
        (void)reader.GetCacheSpeed(index, level, cache.speed);
        ++level;
    }
}

void FillSupplies(SmBios& reader, void* record, int typeMask) {
    const int supplies = static_cast<SystemPowerInformation*>(record)->TotalNumber;
    for (int n = 1; n <= supplies; ++n) {
        SYS_POWER& supply =
            ElementAt<SYS_POWER>(record, offsetof(SystemPowerInformation, PowerSupply), n - 1);
        (void)reader.GetPSDeviceName(typeMask, n, supply.DeviceName, sizeof supply.DeviceName);
        (void)reader.GetPSManufacturer(typeMask, n, supply.manufacturer,
                                       sizeof supply.manufacturer);
        (void)reader.GetPSSerialNo(typeMask, n, supply.SerialNo, sizeof supply.SerialNo);
        (void)reader.GetPSStatus(typeMask, n, supply.status);
    }
}

// Kept: only the probes of this location are asked for, whatever probes the machine has.
constexpr int kProbeLocation = SmBios::TnV_PROCESSOR;

}  // namespace

void FillBoard(SmBios& reader, void* record) {
    BaseBoardInformation& board = *static_cast<BaseBoardInformation*>(record);
    (void)reader.GetBoardManufacturer(board.Manufacturer, sizeof board.Manufacturer);
    (void)reader.GetBoardProduct(board.ProductName, sizeof board.ProductName);
    (void)reader.GetBiosReleaseDate(board.RomReleaseDate, sizeof board.RomReleaseDate);
    (void)reader.GetBiosVendor(board.RomVendor, sizeof board.RomVendor);
    (void)reader.GetBiosVersion(board.RomVersion, sizeof board.RomVersion);
    // Kept: the release date and the manufacturer are asked for twice.
    (void)reader.GetBiosReleaseDate(board.RomReleaseDate, sizeof board.RomReleaseDate);
    (void)reader.GetBoardManufacturer(board.Manufacturer, sizeof board.Manufacturer);
    (void)reader.GetBoardSerialNo(board.SerialNo, sizeof board.SerialNo);
}

void FillProcessors(SmBios& reader, void* record) {
    ProcessorInformation& processors = *static_cast<ProcessorInformation*>(record);
    processors.quantity = reader.GetProcessorVirtualQuantity();
    for (int index = 1; index <= processors.quantity; ++index)
        FillProcessor(reader, index,
                      ElementAt<CPU>(record, offsetof(ProcessorInformation, cpu), index - 1));
}

void FillMemory(SmBios& reader, void* record) {
    LocalMemInfo summary{};
    if (reader.GetMemoryInformation(&summary) != 0) return;
    MemoryInformation& memory = *static_cast<MemoryInformation*>(record);
    memory.TotalSize = summary.TotalSize;
    memory.quantity = summary.quantity;

    constexpr int kLocalBanks = sizeof summary.bank / sizeof summary.bank[0];
    int filled = 0;
    int local = 0;
    while (filled < memory.quantity && local < kLocalBanks) {
        const BankInfo& from = summary.bank[local];
        if (from.type[0] == '\0') {
            local += 2;  // Kept: the bank after one without a type is also left out.
            continue;
        }
        BANK& bank = memory.bank[filled];
        std::strcpy(bank.size, from.size);
        std::strcpy(bank.speed, from.speed);
        std::strcpy(bank.type, from.type);
        std::strcpy(bank.TypeDetail, from.TypeDetail);
        std::strcpy(bank.manufacturer, from.manufacturer);
        bank.SlotNumber = from.SlotNumber;
        ++filled;
        ++local;
    }
}

void FillPorts(SmBios& reader, void* record) {
    IOInformation& ports = *static_cast<IOInformation*>(record);
    ports.quantity = reader.GetPortQuantity();
    for (int index = 1; index <= ports.quantity; ++index) {
        PORT& port = ElementAt<PORT>(record, offsetof(IOInformation, port), index - 1);
        (void)reader.GetPortType(index, port.type);
        (void)reader.GetPortDecription(index, port.description, sizeof port.description);
    }
}

void FillPowerSupplies(SmBios& reader, void* record) {
    constexpr int kAllTypes = 15;
    SystemPowerInformation& power = *static_cast<SystemPowerInformation*>(record);
    power.TotalNumber = reader.GetPSQuantity(kAllTypes);
    power.RedundantNumber = reader.GetPSRedundantQuantity();
    FillSupplies(reader, record, kAllTypes);
}

void FillUps(SmBios& reader, void* record) {
    static_cast<SystemPowerInformation*>(record)->TotalNumber =
        reader.GetPSQuantity(SmBios::PS_UPS);
    FillSupplies(reader, record, SmBios::PS_UPS);
}

void FillFans(SmBios& reader, void* record) {
    FanInformation& fans = *static_cast<FanInformation*>(record);
    fans.quantity = reader.GetFanQuantity();
    for (int index = 1; index <= fans.quantity; ++index)
        (void)reader.GetFanSpeed(
            index, ElementAt<FAN_DEVICE>(record, offsetof(FanInformation, fan), index - 1).speed);
}

void FillVoltages(SmBios& reader, void* record) {
    VoltageInformation& voltages = *static_cast<VoltageInformation*>(record);
    voltages.quantity = reader.GetVoltageProbeQuantity();
    VOLTAGE_PROBE& first = voltages.voltage[0];
    (void)reader.GetVoltageCurrent(kProbeLocation, first.CurrentVoltage);
    (void)reader.GetVoltageMax(kProbeLocation, first.max);
    (void)reader.GetVoltageMin(kProbeLocation, first.min);
}

void FillTemperatures(SmBios& reader, void* record) {
    TemperatureInformation& temperatures = *static_cast<TemperatureInformation*>(record);
    temperatures.quantity = reader.GetTemperatureProbeQuantity();
    (void)reader.GetTemperatureCurrent(kProbeLocation,
                                       temperatures.temperature[0].CurrentTemperature);
}

void FillSystem(SmBios& reader, void* record) {
    SysInformation& system = *static_cast<SysInformation*>(record);
    (void)reader.GetSysManufacturer(system.manufacturer, sizeof system.manufacturer);
    (void)reader.GetSysProductname(system.SysProductName, sizeof system.SysProductName);
    (void)reader.GetSysVersion(system.version, sizeof system.version);
}

}  // namespace talvane
