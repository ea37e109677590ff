// SPDX-License-Identifier: MIT
//
// The exported interface: the reader, created on first use, the guard against nested calls, and the
// dispatch of a command to the function that fills its record.

#include "Talvane.h"

#include "GetPciInfo.h"
#include "SmBios/SmBios.h"
#include "interface/CallResult.h"
#include "interface/InventoryRecords.h"
#include "interface/IpmiState.h"
#include "interface/ReentryGuard.h"
#include "storage/GetAllPartitionInfo.h"
#include "storage/GetStorageInfo.h"

namespace {

SmBios* bios = nullptr;
int NoEntersmBIOS = 0;

SmBios& Bios() {
    if (bios == nullptr) bios = new SmBios;
    return *bios;
}

// Either of the two functions fills the record: from the SMBIOS table, or without one.
struct InventoryCommand {
    unsigned long code;
    void (*fromTable)(SmBios& reader, void* record) = nullptr;
    void (*fromMachine)(void* record) = nullptr;
};

void FillPciFunctions(void* record) {
    // Result not used: a failed scan leaves the record as it was.
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
    if (reader.IsInitOK() == 0) return kFailure;
    row.fromTable(reader, record);
    return kSuccess;
}

}  // namespace

extern "C" {

int GetInfo(unsigned long command, void* buffer) {
    if (NoEntersmBIOS != 0) return kBusy;
    const ReentryGuard guard(NoEntersmBIOS);
    for (const InventoryCommand& row : kInventoryCommands)
        if (row.code == command) return Run(row, buffer);
    return kSuccess;
}

int IsSmBiosSupport(void) {
    return Bios().IsMatchSmBios();
}

int release(void) {
    delete bios;
    bios = nullptr;
    talvane::ReleaseIpmi();
    return kSuccess;
}

}  // extern "C"
