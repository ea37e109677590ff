// SPDX-License-Identifier: MIT
//
// Drives and partitions with texts of an input. The tool asks for them in a child process, which
// would take nearly all of the time.
#ifndef TALVANE_FUZZ_OUTPUT_DRIVES_H
#define TALVANE_FUZZ_OUTPUT_DRIVES_H

#include "fuzz/Input.h"
#include "tools/records/Drives.h"
#include "tools/records/Partitions.h"

namespace fuzz {

// Two drives, each text up to a zero byte.
tool::Drives TakeDrives(Input& input);

// Two partitions, likewise.
tool::Partitions TakePartitions(Input& input);

}  // namespace fuzz

#endif
