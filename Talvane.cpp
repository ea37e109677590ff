// SPDX-License-Identifier: MIT
//
// The exported inventory functions: the SMBIOS reader, created on first use, the guards against
// nested calls, and the dispatch of a command to the function that fills its record.

#include "Talvane.h"

#include <utility>

#include "GetPciInfo.h"
#include "SmBios/SmBios.h"
#include "interface/CallResult.h"
#include "interface/InventoryRecords.h"
#include "interface/IpmiState.h"
#include "interface/ReentryGuard.h"
#include "storage/GetAllPartitionInfo.h"
#include "storage/GetStorageInfo.h"

using namespace talvane;

namespace {

SmBios* bios = nullptr;
int creatingReader = 0;  // 1 while the reader reads the machine
int NoEntersmBIOS = 0;   // 1 while GetInfo is in progress

// Created on first use. REQUIRES: not called from within the creation.
SmBios& Bios() {
    if (bios == nullptr) {
        const ReentryGuard guard(creatingReader);
        bios = new SmBios;
    }
    return *bios;
}

// One of the two functions fills the record: from the SMBIOS table, or without one.
struct InventoryCommand {
    unsigned long code;
    void (*fromTable)(SmBios& reader, void* record) = nullptr;
    void (*fromMachine)(void* record) = nullptr;
};

void FillPciFunctions(void* record) {
    // result not used: a failed scan leaves the record as it was
    (void)GetPciInfo(static_cast<DeviceInformation*>(record));
}

void FillDrives(void* record) {
    GetStorageInfo(static_cast<StorageInformation*>(record));
}

void FillPartitions(void* record) {
    GetAllPartitionInfo(static_cast<PartitionInformation*>(record));
}

constexpr InventoryCommand kInventoryCommands[] = {
    {.code = TALVANE_BOARD, .fromTable = FillBoard},
    {.code = TALVANE_PROCESSORS, .fromTable = FillProcessors},
    {.code = TALVANE_MEMORY, .fromTable = FillMemory},
    {.code = TALVANE_PORTS, .fromTable = FillPorts},
    {.code = TALVANE_PCI, .fromMachine = FillPciFunctions},
    {.code = TALVANE_DRIVES, .fromMachine = FillDrives},
    {.code = TALVANE_PARTITIONS, .fromMachine = FillPartitions},
    {.code = TALVANE_POWER, .fromTable = FillPowerSupplies},
    {.code = TALVANE_UPS, .fromTable = FillUps},
    {.code = TALVANE_FANS, .fromTable = FillFans},
    {.code = TALVANE_VOLTAGES, .fromTable = FillVoltages},
    {.code = TALVANE_TEMPERATURES, .fromTable = FillTemperatures},
    {.code = TALVANE_SYSTEM, .fromTable = FillSystem},
};

int Run(const InventoryCommand& row, void* record) {
    if (row.fromMachine != nullptr) {
        row.fromMachine(record);
        return kSuccess;
    }
    SmBios& reader = Bios();
    if (!reader.IsUsable()) return kFailure;
    row.fromTable(reader, record);
    return kSuccess;
}

}  // namespace

extern "C" {

int GetInfo(unsigned long command, void* buffer) {
    if (NoEntersmBIOS != 0 || creatingReader != 0) return kBusy;
    const ReentryGuard guard(NoEntersmBIOS);
    for (const InventoryCommand& row : kInventoryCommands)
        if (row.code == command) return Run(row, buffer);
    return kSuccess;
}

int IsSmBiosSupport(void) {
    if (creatingReader != 0) return 0;  // there is no reader yet, and no second one is made
    return Bios().HasSmBiosEntryPoint();
}

int release(void) {
    delete std::exchange(bios, nullptr);  // forgotten first: a nested call finds no half of it
    ReleaseIpmi();
    return kSuccess;
}

}  // extern "C"
