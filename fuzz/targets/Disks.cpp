// SPDX-License-Identifier: MIT
//
// Drives, primary and logical partitions. Input: what AddDrives takes.

#include <memory>

#include "Talvane.h"
#include "fuzz/machine/Drives.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FedMachine machine;
    fuzz::Input input(data, size);
    fuzz::AddDrives(machine, input);
    // A folder without a drive, so that the library does not print that there is none.
    machine.files["/proc/ide/drivers"];
    const auto drives = std::make_unique<StorageInformation>();
    const auto partitions = std::make_unique<PartitionInformation>();
    (void)GetInfo(TALVANE_DRIVES, drives.get());
    (void)GetInfo(TALVANE_PARTITIONS, partitions.get());
    return 0;
}
