// SPDX-License-Identifier: MIT
//
// _llseek and GetStorageInfo put in front of the library's own: a program with ReplacedCalls.cpp
// decides where a walk reads and which drives there are. Cylinders are counted and not moved, so
// that chains far out or without an end take no time.
#ifndef TALVANE_TESTS_STORAGE_REPLACEDCALLS_H
#define TALVANE_TESTS_STORAGE_REPLACEDCALLS_H

#include <functional>
#include <vector>

#include "storage/GetAllPartitionInfo.h"

struct Seek {
    unsigned long high;
    unsigned long low;
    unsigned whence;

    friend bool operator==(const Seek&, const Seek&) = default;
};

extern std::vector<Seek> seeks;
extern bool seeksAreKept;  // or only counted
extern unsigned long long cylinderSteps;

// Called, where set, with the descriptor of each move to a partition table.
extern std::function<void(int)> atTable;

// What GetStorageInfo finds.
extern StorageInformation drivesFound;

#endif
