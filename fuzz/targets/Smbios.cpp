// SPDX-License-Identifier: MIT
//
// The firmware's part of an inventory. Input: 32 bytes with an entry point, then the structure
// table, which the entry point's address leads to.

#include "SmBios/EntryPointScan.h"
#include "fuzz/machine/FirmwareTable.h"
#include "fuzz/machine/InventoryCalls.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FedMachine machine;
    const talvane::ByteView bytes(data, size);
    // An entry point that the end of the segment cuts off.
    (void)talvane::FindSmBiosEntryPoint(bytes);
    (void)talvane::FindDmiEntryPoint(bytes);

    fuzz::AddFirmwareTable(machine, bytes);
    fuzz::AskForFirmwareRecords();
    fuzz::CallReaderOperations();
    return 0;
}
