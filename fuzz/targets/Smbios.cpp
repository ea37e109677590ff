// SPDX-License-Identifier: MIT
//
// The firmware's part of an inventory. Input: 32 bytes with an entry point, then the structure
// table, which the entry point's address leads to. An entry point has 31 bytes; the 32nd chooses
// what is asked, since an input that is asked everything takes several times as long.

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
    constexpr std::size_t kQuestion = 31;
    fuzz::AskFirmware(talvane::ByteAt(bytes, kQuestion));
    return 0;
}
