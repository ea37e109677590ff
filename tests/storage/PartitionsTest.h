// SPDX-License-Identifier: MIT
//
// Fixture of the tests of the partition inventory: disks with partitions, and the record as texts.
#ifndef TALVANE_TESTS_STORAGE_PARTITIONSTEST_H
#define TALVANE_TESTS_STORAGE_PARTITIONSTEST_H

#include <cstdint>
#include <string>
#include <vector>

#include "storage/StorageTest.h"

inline constexpr std::uint32_t kCylinder = 16065;
inline constexpr std::uint64_t kDiskSectors = 78165360;

class PartitionsTest : public StorageTest {
protected:
    // A new disk for the slot, empty but for what the caller writes.
    sim::DiskImage& PutDisk(char letter, std::uint64_t sectors = kDiskSectors) {
        const sim::IdeDrive drive = sim::MakeDisk("Disk", sectors, "1");
        Put(letter, drive);
        return *drive.image;
    }

    // Writes the extended boot record at a cylinder: its logical partition and whether another
    // record follows.
    static void WriteRecord(sim::DiskImage& disk, std::uint32_t cylinder, std::uint8_t type,
                            std::uint32_t sectors, std::uint8_t linkType = 0) {
        disk.SetEntry(std::uint64_t{cylinder} * kCylinder, 1, {type, 63, sectors});
        disk.SetEntry(std::uint64_t{cylinder} * kCylinder, 2, {linkType, 0, 0});
    }

    const PartitionInformation& Read() {
        record = {};
        GetAllPartitionInfo(&record);
        return record;
    }

    // "/dev/hda1 Linux 512" for each entry.
    std::vector<std::string> Entries() {
        Read();
        std::vector<std::string> texts;
        for (int i = 0; i < record.quantity; ++i) {
            const PARTITION& entry = record.partition[i];
            texts.push_back(std::string(entry.description) + " " + entry.FileSystem + " " +
                            entry.size);
        }
        return texts;
    }

    // The entries of a chain whose records lie one after the other from cylinder 1, each with a
    // partition that leaves the next record on the next cylinder.
    std::vector<std::string> EntriesOfChain(const std::vector<std::uint8_t>& types) {
        sim::DiskImage& disk = PutDisk('a');
        disk.SetEntry(0, 1, {0x0F, kCylinder, 1000 * kCylinder});
        for (std::size_t i = 0; i < types.size(); ++i)
            WriteRecord(disk, static_cast<std::uint32_t>(i + 1), types[i],
                        static_cast<std::uint32_t>(i + 1), i + 1 < types.size() ? 0x05 : 0);
        return Entries();
    }

    PartitionInformation record{};
};

#endif
