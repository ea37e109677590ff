// SPDX-License-Identifier: MIT
//
// The partitions of the IDE disks, read from the disks themselves.
#ifndef TALVANE_STORAGE_GETALLPARTITIONINFO_H
#define TALVANE_STORAGE_GETALLPARTITIONINFO_H

#include "../Export.h"
#include "../InformationRecords.h"

// One of the four entries of a boot record's partition table: the image of it on the disk.
struct partition {
    unsigned char boot_ind;
    unsigned char head;
    unsigned char sector;
    unsigned char cyl;
    unsigned char sys_ind;  // type code
    unsigned char end_head;
    unsigned char end_sector;
    unsigned char end_cyl;
    unsigned char start4[4];  // first sector, relative
    unsigned char size4[4];   // number of sectors
};
static_assert(sizeof(partition) == 16, "the memory image of a table entry");

// What the walk over logical partitions notes about one of them.
struct part_info {
    int flag;
    unsigned long long size;  // bytes
    char lable[50];
    char used[50];
    unsigned char filesys;  // type code
};

// Fills one entry per partition of a listed type, at most 26: `description`, `FileSystem` and
// `size`, NUL-terminated. Looks for the disks with GetStorageInfo, which prints a line on standard
// output where there are no IDE devices.
TALVANE_EXPORT void GetAllPartitionInfo(PartitionInformation* info);

// Appends the logical partitions of the extended partition `ext` to the entries. `*count` is the
// number of filled entries, before and after. `device` is the path with which the descriptions
// start. Notes type and size of the first 26 partitions in `scratch`. Returns the number of
// extended boot records that it visited.
//
// Kept: the disk is taken to have 255 heads and 63 sectors per track, and each record to lie on the
// cylinder after the partition before it; where the links point to is not looked at. A chain also
// ends at a partition of a listed type when no entry is free, and after 2^25 steps from cylinder to
// cylinder.
TALVANE_EXPORT int get_logic_info_from_ext(int fd, partition ext, part_info* scratch,
                                           PartitionInformation* info, int* count, char* device);

// Writes the 4-byte little-endian number at `bytes` to `*out`.
TALVANE_EXPORT void valueofarray(unsigned char* bytes, unsigned long long* out);

// The Linux system call: moves a descriptor by a 64-bit offset and writes the new position to
// `*result`. Returns 0, or -1 with errno set.
TALVANE_EXPORT int _llseek(unsigned int fd, unsigned long offset_high, unsigned long offset_low,
                           long long* result, unsigned int whence);

#endif
