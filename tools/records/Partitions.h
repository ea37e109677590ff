// SPDX-License-Identifier: MIT
//
// The partitions of the IDE disks.
#ifndef TALVANE_TOOLS_RECORDS_PARTITIONS_H
#define TALVANE_TOOLS_RECORDS_PARTITIONS_H

#include <optional>
#include <string>
#include <vector>

#include "tools/base/Json.h"
#include "tools/base/Source.h"

namespace tool {

struct Partition {
    std::string device;  // "/dev/hda1"
    std::string fileSystem;
    std::string size;  // bytes, decimal
};

struct Partitions {
    std::vector<Partition> list;
    std::vector<const Source*> notRead;  // when a disk could not be
};

// Nothing when the source cannot be read.
std::optional<Partitions> ReadPartitions();

std::string ToText(const Partitions& partitions);
Json ToJson(const Partitions& partitions);

}  // namespace tool

#endif
