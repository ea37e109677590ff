// SPDX-License-Identifier: MIT
//
// Captured /proc/ide trees and partition tables, beside what the capture's own tools say of them.
#include <cctype>
#include <cstdio>
#include <map>
#include <sstream>

#include "simulator/description/SectorText.h"
#include "storage/StorageTest.h"
#include "support/SharedData.h"

namespace {

using ::testing::ElementsAreArray;
using ::testing::UnorderedElementsAre;

std::string LineOf(const std::filesystem::path& file) {
    std::string text = ContentOf(file);
    if (!text.empty() && text.back() == '\n') text.pop_back();
    return text;
}

// "40g-linux-ext0f" as part of a test's name.
std::string TestName(std::string name) {
    for (char& c : name)
        if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = '_';
    return name;
}

struct ExpectedDisk {
    const char* drive;
    const char* controllerNo;
    const char* size;
};

struct IdeMachine {
    const char* name;
    std::vector<ExpectedDisk> disks;
};

class IdeCaptureTest : public StorageTest, public ::testing::WithParamInterface<IdeMachine> {};

TEST_P(IdeCaptureTest, ListsItsDisks) {
    const std::filesystem::path folder = SharedData("proc/ide") / GetParam().name;
    if (!std::filesystem::exists(folder)) GTEST_SKIP() << kNoCaptures;
    for (const auto& channel : std::filesystem::directory_iterator(folder))
        for (const auto& drive : std::filesystem::directory_iterator(channel)) {
            sim::IdeDrive files;
            for (const auto& file : std::filesystem::directory_iterator(drive))
                files.files[file.path().filename().string()] = ContentOf(file.path());
            Put(drive.path().filename().string().back(), files);
        }

    StorageInformation record{};
    GetStorageInfo(&record);
    ASSERT_EQ(static_cast<std::size_t>(record.quantityIDE), GetParam().disks.size());
    const DriveInfo* disk = record.driveArray;
    for (const ExpectedDisk& expected : GetParam().disks) {
        EXPECT_STREQ(disk->ControllerNo, expected.controllerNo);
        EXPECT_EQ(disk->model, LineOf(folder / expected.drive / "model"));
        EXPECT_STREQ(disk->size, expected.size);
        EXPECT_STREQ(disk->type, "hdd");
        ++disk;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Machines, IdeCaptureTest,
    ::testing::Values(IdeMachine{"ali-pentium3", {{"ide0/hda", "Primary Master", "160041885696"}}},
                      IdeMachine{"two-disks-two-optical",
                                 {{"ide0/hda", "Primary Master", "80060424192"},
                                  {"ide0/hdb", "Primary Slave", "8004132864"}}},
                      IdeMachine{"hda-and-hdc-disks",
                                 {{"ide0/hda", "Primary Master", "2111864832"},
                                  {"ide1/hdc", "Secondry Master", "80026361856"}}}),
    [](const auto& machine) { return TestName(machine.param.name); });

TEST(IdeCapturesTest, AreAllCompared) {
    const std::filesystem::path folder = SharedData("proc/ide");
    if (!std::filesystem::exists(folder)) GTEST_SKIP() << kNoCaptures;
    std::vector<std::string> names;
    for (const auto& machine : std::filesystem::directory_iterator(folder))
        if (machine.is_directory()) names.push_back(machine.path().filename().string());
    EXPECT_THAT(names,
                UnorderedElementsAre("ali-pentium3", "two-disks-two-optical", "hda-and-hdc-disks"));
}

// One partition that is listed: the kernel's number of it and its type's name. Its size is the
// peer's, or, where `sizeOf` is set, what the walk leaves there.
struct Listed {
    int number;
    const char* fileSystem;
    int sizeOf = 0;  // another partition whose size it ends up with; -1: an empty text
};

struct DiskCase {
    const char* name;
    std::vector<Listed> partitions;
};

// Sizes in sectors by partition number, from the dump of sfdisk.
std::map<int, std::uint64_t> PeerSizes(const std::string& name) {
    std::istringstream lines(ContentOf(SharedData("disk") / (name + ".peer.txt")));
    std::map<int, std::uint64_t> sizes;
    for (std::string line; std::getline(lines, line);) {
        int number = 0;
        unsigned long long sectors = 0;
        const std::size_t at = line.find(".img");
        if (at != std::string::npos &&
            std::sscanf(line.c_str() + at, ".img%d : start=%*u, size=%llu", &number, &sectors) == 2)
            sizes[number] = sectors;
    }
    return sizes;
}

class DiskCaptureTest : public StorageTest, public ::testing::WithParamInterface<DiskCase> {};

TEST_P(DiskCaptureTest, ListsItsPartitions) {
    const std::filesystem::path dump =
        SharedData("disk") / (std::string(GetParam().name) + ".sectors.txt");
    if (!std::filesystem::exists(dump)) GTEST_SKIP() << kNoCaptures;
    const sim::IdeDrive drive = sim::MakeDisk("Disk", 0xFFFFFFFF, "1");
    for (const auto& [sector, bytes] : sim::ReadSectorText(ContentOf(dump)))
        drive.image->Write(sector, bytes);
    Put('a', drive);

    std::map<int, std::uint64_t> sizes = PeerSizes(GetParam().name);
    std::vector<std::string> expected;
    for (const Listed& partition : GetParam().partitions) {
        const int sizeOf = partition.sizeOf == 0 ? partition.number : partition.sizeOf;
        expected.push_back("/dev/hda" + std::to_string(partition.number) + " " +
                           partition.fileSystem + " " +
                           (sizeOf < 0 ? "" : std::to_string(sizes.at(sizeOf) * 512)));
    }
    PartitionInformation record{};
    GetAllPartitionInfo(&record);
    std::vector<std::string> listed;
    for (int i = 0; i < record.quantity; ++i) {
        const PARTITION& entry = record.partition[i];
        listed.push_back(std::string(entry.description) + " " + entry.FileSystem + " " +
                         entry.size);
    }
    EXPECT_THAT(listed, ElementsAreArray(expected));
}

INSTANTIATE_TEST_SUITE_P(
    Disks, DiskCaptureTest,
    ::testing::Values(
        DiskCase{"primary-4types",
                 {{1, "Linux"}, {2, "Linux swap"}, {3, "Win95 FAT32"}, {4, "HPFS/NTFS"}}},
        DiskCase{"40g-linux-ext0f", {{1, "Linux"}, {2, "Linux swap"}, {5, "Linux"}, {6, "Linux"}}},
        // The last logical one is of an unlisted type and leaves its size with the one before.
        DiskCase{"80g-winlinux-9logical",
                 {{1, "HPFS/NTFS"},
                  {5, "Win95 FAT32"},
                  {6, "Win95 FAT32 (LBA)"},
                  {7, "Linux"},
                  {8, "FAT 16"},
                  {9, "Linux swap"},
                  {10, "Win95 FAT16 (LBA)"},
                  {11, "Hidden FAT16"},
                  {12, "Hidden HPFS/NTFS", 13}}},
        DiskCase{"20g-ext05", {{1, "Linux"}}}, DiskCase{"ext85", {{1, "Linux"}}},
        DiskCase{"2tib-ext-high",
                 {{1, "HPFS/NTFS"}, {2, "Linux"}, {5, "Linux"}, {6, "Linux"}, {7, "Win95 FAT32"}}},
        DiskCase{"blank-no-signature", {}}, DiskCase{"fat-superfloppy", {}},
        DiskCase{"fat16-primaries-hidden", {}},
        // Records that do not lie where the walk looks for them read as empty ones, whose size of
        // zero goes to the entry before.
        DiskCase{"120g-1mib-aligned-ext0f", {{1, "Linux"}, {2, "Linux swap", -1}}},
        DiskCase{"odd-sizes-63-offset", {{1, "Linux"}, {5, "Linux swap", -1}}},
        DiskCase{"logicals-with-gap", {{1, "Linux"}, {5, "Linux", -1}}}),
    [](const auto& disk) { return TestName(disk.param.name); });

TEST(DiskCapturesTest, AreAllCompared) {
    const std::vector<std::string> names = CapturesEndingIn("disk", ".sectors.txt");
    if (names.empty()) GTEST_SKIP() << kNoCaptures;
    EXPECT_EQ(names.size(), 12u);
}

}  // namespace
