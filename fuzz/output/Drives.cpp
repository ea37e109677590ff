// SPDX-License-Identifier: MIT
//
// The texts in the order of the fields.

#include "fuzz/output/Drives.h"

namespace fuzz {

tool::Drives TakeDrives(Input& input) {
    tool::Drives drives(2);
    for (tool::Drive& drive : drives) {
        drive.controller = input.TakeText();
        drive.position = input.TakeText();
        drive.model = input.TakeText();
        drive.size = input.TakeText();
        drive.serialNumber = input.TakeText();
    }
    return drives;
}

tool::Partitions TakePartitions(Input& input) {
    tool::Partitions partitions;
    partitions.list.resize(2);
    for (tool::Partition& partition : partitions.list) {
        partition.device = input.TakeText();
        partition.fileSystem = input.TakeText();
        partition.size = input.TakeText();
    }
    return partitions;
}

}  // namespace fuzz
