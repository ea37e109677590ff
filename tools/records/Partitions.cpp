// SPDX-License-Identifier: MIT
//
// Reads and shows TALVANE_PARTITIONS.

#include "tools/records/Partitions.h"

#include <fcntl.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "Talvane.h"
#include "tools/base/ByteSize.h"
#include "tools/base/Descriptor.h"
#include "tools/base/JsonValue.h"
#include "tools/base/Layout.h"
#include "tools/base/Text.h"
#include "tools/library/ChildProcess.h"
#include "tools/library/IdeDrives.h"

namespace tool {
namespace {

bool CanBeOpened(const Drive& drive) {
    return Descriptor(DevicePath(drive).c_str(), O_RDONLY).IsOpen();
}

}  // namespace

std::optional<Partitions> ReadPartitions() {
    const auto drives = ReadDrives();
    if (!drives) return std::nullopt;
    // In a child process: without IDE the library writes a remark to standard output.
    const auto answer = FillInChildProcess<PartitionInformation>(
        [](PartitionInformation& record) { (void)GetInfo(TALVANE_PARTITIONS, &record); });
    if (!answer) return std::nullopt;
    Partitions partitions;
    for (int i = 0; i < answer->record.quantity; ++i) {
        const PARTITION& partition = answer->record.partition[i];
        partitions.list.push_back({.device = FieldText(partition.description),
                                   .fileSystem = FieldText(partition.FileSystem),
                                   .size = FieldText(partition.size)});
    }
    // To the library a disk that it cannot open has no partitions.
    if (!std::all_of(drives->begin(), drives->end(), CanBeOpened))
        partitions.notRead.push_back(&kDisks);
    return partitions;
}

std::string ToText(const Partitions& partitions) {
    std::vector<Row> rows;
    for (const Partition& partition : partitions.list)
        rows.push_back({partition.device, partition.fileSystem, SizeText(partition.size)});
    return Section("Partitions",
                   {TableBlock({{"Partition"}, {"Type"}, {"Size", Column::Align::kRight}}, rows)});
}

Json ToJson(const Partitions& partitions) {
    Json list = Json::array();
    for (const Partition& partition : partitions.list)
        list.push_back({{"device", TextJson(partition.device)},
                        {"type", TextJson(partition.fileSystem)},
                        {"size", SizeJson(partition.size)}});
    return list;
}

}  // namespace tool
