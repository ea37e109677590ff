// SPDX-License-Identifier: MIT
//
// The exported interface: the reader, created on first use, the guard against nested calls, and the
// dispatch of a command to the function that fills its record.

#include "Talvane.h"

#include "InventoryRecords.h"
#include "ReentryGuard.h"
#include "SmBios/SmBios.h"

namespace {

constexpr int kSuccess = 0;
constexpr int kFailure = -1;
constexpr int kBusy = 1;

SmBios* bios = nullptr;
int NoEntersmBIOS = 0;

SmBios& Bios() {
    if (bios == nullptr) bios = new SmBios;
    return *bios;
}

struct InventoryCommand {
    unsigned long code;
    void (*fill)(SmBios& reader, void* record);
};

constexpr InventoryCommand kInventoryCommands[] = {
    {TALVANE_BOARD, FillBoard},
    {TALVANE_PROCESSORS, FillProcessors},
    {TALVANE_MEMORY, FillMemory},
    {TALVANE_PORTS, FillPorts},
    {TALVANE_POWER, FillPowerSupplies},
    {TALVANE_UPS, FillUps},
    {TALVANE_FANS, FillFans},
    {TALVANE_VOLTAGES, FillVoltages},
    {TALVANE_TEMPERATURES, FillTemperatures},
    {TALVANE_SYSTEM, FillSystem},
};

}  // namespace

extern "C" {

int GetInfo(unsigned long command, void* buffer) {
    if (NoEntersmBIOS != 0) return kBusy;
    const ReentryGuard guard(NoEntersmBIOS);
    for (const InventoryCommand& row : kInventoryCommands) {
        if (row.code != command) continue;
        SmBios& reader = Bios();
        if (reader.IsInitOK() == 0) return kFailure;
        row.fill(reader, buffer);
    }
    return kSuccess;
}

int IsSmBiosSupport(void) {
    return Bios().IsMatchSmBios();
}

int release(void) {
    delete bios;
    bios = nullptr;
    return kSuccess;
}

}  // extern "C"
