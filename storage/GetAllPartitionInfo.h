// SPDX-License-Identifier: MIT
//
// The partitions of the IDE disks, read from the disks themselves.
#ifndef TALVANE_STORAGE_GETALLPARTITIONINFO_H
#define TALVANE_STORAGE_GETALLPARTITIONINFO_H

#include "../Export.h"
#include "../InformationRecords.h"

// One of the four entries of a boot record's partition table, as it lies on the disk.
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

// What a walk notes of a partition.
struct part_info {
    int flag;
    unsigned long long size;  // bytes
    char lable[50];
    char used[50];
    unsigned char filesys;  // type code
};

// Fills one entry per partition of a listed type, at most 26: `description`, `FileSystem` and
// `size`, terminated. Prints and does all that GetStorageInfo does.
TALVANE_EXPORT void GetAllPartitionInfo(PartitionInformation* info);

// Appends the logical partitions of the extended partition `ext` to the entries; `*count` of them
// are filled, and `device` is the path that their descriptions start with. Notes the first 26 in
// `scratch`. Returns the number of extended boot records visited.
//
// Kept: the disk is taken to have 255 heads and 63 sectors, and each record to lie on the cylinder
// behind the partition before; where the links point is not looked at. A chain ends, too, at a
// listed type without a free entry and after 2^25 steps from cylinder to cylinder.
TALVANE_EXPORT int get_logic_info_from_ext(int fd, partition ext, part_info* scratch,
                                           PartitionInformation* info, int* count, char* device);

// The 4-byte little-endian number at `bytes`.
TALVANE_EXPORT void valueofarray(unsigned char* bytes, unsigned long long* out);

// The Linux system call: moves a descriptor by 64 bits. Returns 0, or -1 with errno set.
TALVANE_EXPORT int _llseek(unsigned int fd, unsigned long offset_high, unsigned long offset_low,
                           long long* result, unsigned int whence);

#endif
