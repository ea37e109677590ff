// SPDX-License-Identifier: MIT
//
// The drive inventory: which slots count, what is read of each, and what a failure leaves.
#include <cstring>

#include "Talvane.h"
#include "storage/StorageTest.h"
#include "support/RecordImage.h"

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr std::uint64_t kSectors = 78165360;

// Where an entry's fields lie, from the binary interface.
constexpr std::size_t EntryAt(std::size_t index) {
    return 8 + index * 456;
}
constexpr std::size_t kType = 8, kSize = 72, kModel = 136, kControllerType = 200;
constexpr std::size_t kControllerNo = 264, kSerialNo = 328;

class DrivesTest : public StorageTest {
protected:
    sim::IdeDrive Disk(const std::string& model = "ST340014A",
                       const std::string& serial = "5JX7A1B2") {
        return sim::MakeDisk(model, kSectors, serial);
    }

    // The drive with another text in one of its files.
    sim::IdeDrive With(const char* file, const std::string& text) {
        sim::IdeDrive drive = Disk();
        drive.files[file] = text;
        return drive;
    }
    sim::IdeDrive Without(const char* file) {
        sim::IdeDrive drive = Disk();
        drive.files.erase(file);
        return drive;
    }

    const StorageInformation& Read() {
        record = {};
        GetStorageInfo(&record);
        return record;
    }

    const DriveInfo& ReadOnly(const sim::IdeDrive& drive) {
        Put('a', drive);
        EXPECT_EQ(Read().quantityIDE, 1);
        return record.driveArray[0];
    }

    std::vector<std::string> ControllerNumbers() {
        std::vector<std::string> numbers;
        for (int i = 0; i < record.quantityIDE; ++i)
            numbers.emplace_back(record.driveArray[i].ControllerNo);
        return numbers;
    }

    // Each opened file and directory is closed, and nothing else is.
    void ExpectAllClosed() {
        std::size_t opened = 0;
        for (const sim::Access& access : server.GetLog().Calls())
            if ((access.call == "open" || access.call == "opendir") && access.answer == "ok")
                ++opened;
        EXPECT_EQ(server.GetLog().Count("close") + server.GetLog().Count("closedir"), opened);
    }

    StorageInformation record{};
};

TEST_F(DrivesTest, ServerWithoutIdeDevicesSaysSo) {
    record.quantityIDE = 7;
    testing::internal::CaptureStdout();
    GetStorageInfo(&record);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "No ide devices.");
    EXPECT_EQ(record.quantityIDE, 0);
    EXPECT_THAT(server.GetLog().Lines(), ElementsAre("opendir /proc/ide -> -1 ENOENT"));
}

TEST_F(DrivesTest, ServerWithAnEmptyIdeFolderSaysNothing) {
    server.GetMachine().InstallDirectory("/proc/ide");
    record.quantityIDE = 7;
    testing::internal::CaptureStdout();
    GetStorageInfo(&record);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(record.quantityIDE, 0);
    ExpectAllClosed();
}

TEST_F(DrivesTest, DiskFillsItsEntryAndNothingElse) {
    Put('a', Disk());
    RecordImage expected(sizeof(StorageInformation));
    expected.Number(0, 1);
    std::string type(64, '\0');  // cleared before
    expected.Copied(EntryAt(0) + kType, type.replace(0, 3, "hdd"));
    expected.Text(EntryAt(0) + kSize, "40020664320");
    expected.Text(EntryAt(0) + kModel, "ST340014A");
    expected.Text(EntryAt(0) + kControllerType, "ide");
    expected.Text(EntryAt(0) + kControllerNo, "Primary Master");
    expected.Text(EntryAt(0) + kSerialNo, "5JX7A1B2            ");
    RecordImage actual(sizeof(StorageInformation));
    GetStorageInfo(static_cast<StorageInformation*>(actual.Data()));
    EXPECT_TRUE(SameBytes(expected, actual));
}

TEST_F(DrivesTest, FilesAreReadInTheirOrderAndClosed) {
    Put('a', Disk());
    Read();
    EXPECT_THAT(
        server.GetLog().Lines(),
        ElementsAre(
            "opendir /proc/ide -> ok", "closedir /proc/ide -> 0", "opendir /proc/ide/ide0/ -> ok",
            "closedir /proc/ide/ide0/ -> 0", "opendir /proc/ide/ide0/hda/ -> ok",
            "closedir /proc/ide/ide0/hda/ -> 0", "open /proc/ide/ide0/hda/media O_RDONLY -> ok",
            "read /proc/ide/ide0/hda/media 0x0 64 -> 5", "close /proc/ide/ide0/hda/media -> 0",
            "open /proc/ide/ide0/hda/model O_RDONLY -> ok",
            "read /proc/ide/ide0/hda/model 0x0 64 -> 10", "close /proc/ide/ide0/hda/model -> 0",
            "open /proc/ide/ide0/hda/capacity O_RDONLY -> ok",
            "read /proc/ide/ide0/hda/capacity 0x0 64 -> 9",
            "close /proc/ide/ide0/hda/capacity -> 0", "open /dev/hda O_RDONLY -> ok",
            "ioctl /dev/hda 0x30D -> 0", "close /dev/hda -> 0", "opendir /proc/ide/ide0/ -> ok",
            "closedir /proc/ide/ide0/ -> 0", "opendir /proc/ide/ide0/hdb/ -> -1 ENOENT",
            "opendir /proc/ide/ide1/ -> -1 ENOENT", "opendir /proc/ide/ide1/ -> -1 ENOENT"));
}

TEST_F(DrivesTest, FourDisksFillFourEntriesInTheOrderOfTheirSlots) {
    for (const char letter : {'d', 'b', 'c', 'a'}) Put(letter, Disk(std::string("Disk ") + letter));
    EXPECT_EQ(Read().quantityIDE, 4);
    EXPECT_THAT(ControllerNumbers(), ElementsAre("Primary Master", "Primary Slave",
                                                 "Secondry Master", "Secondry Slave"));
    EXPECT_STREQ(record.driveArray[1].model, "Disk b");
    EXPECT_STREQ(record.driveArray[3].model, "Disk d");
    ExpectAllClosed();
}

TEST_F(DrivesTest, OnlyDiskAtHdcIsTheFirstEntry) {
    Put('c', Disk());
    EXPECT_EQ(Read().quantityIDE, 1);
    EXPECT_STREQ(record.driveArray[0].ControllerNo, "Secondry Master");
    EXPECT_THAT(server.GetLog().Lines(), Contains("open /dev/hdc O_RDONLY -> ok"));
}

TEST_F(DrivesTest, OpticalDriveHasNoEntryAndDoesNotHideTheNextDisk) {
    Put('a', With("media", "cdrom\n"));
    Put('b', Disk("After"));
    EXPECT_EQ(Read().quantityIDE, 1);
    EXPECT_STREQ(record.driveArray[0].type, "hdd");
    EXPECT_STREQ(record.driveArray[0].model, "After");
    EXPECT_STREQ(record.driveArray[0].ControllerNo, "Primary Slave");
}

TEST_F(DrivesTest, MediaOfARejectedDriveStaysInTheEntryAfterTheLast) {
    Put('a', Disk());
    Put('d', With("media", "cdrom\n"));
    EXPECT_EQ(Read().quantityIDE, 1);
    EXPECT_STREQ(record.driveArray[1].type, "cdrom");
    EXPECT_STREQ(record.driveArray[1].model, "");
}

TEST_F(DrivesTest, OnlyTheExactWordDiskIsADisk) {
    for (const char* media : {"cdrom\n", "disks\n", "dis\n", "Disk\n", "disk\n\n", " disk\n", "\n",
                              "disk \n", "tape\n", "UNKNOWN\n"}) {
        Put('a', With("media", media));
        EXPECT_EQ(Read().quantityIDE, 0) << media;
        ExpectAllClosed();
    }
    Put('a', With("media", "disk"));
    EXPECT_EQ(Read().quantityIDE, 1);
}

TEST_F(DrivesTest, UnreadableMediaIsNoDiskEvenIfTheRecordSaysSo) {
    Put('a', Without("media"));
    std::strcpy(record.driveArray[0].type, "disk");
    GetStorageInfo(&record);
    EXPECT_EQ(record.quantityIDE, 0);
    Put('a', With("media", ""));
    GetStorageInfo(&record);
    EXPECT_EQ(record.quantityIDE, 0);
}

TEST_F(DrivesTest, MissingFilesLeaveTheirFields) {
    sim::IdeDrive drive = Disk();
    drive.files = {{"media", "disk\n"}};
    Put('a', drive);
    std::strcpy(record.driveArray[0].model, "model before");
    std::strcpy(record.driveArray[0].size, "size before");
    GetStorageInfo(&record);
    EXPECT_EQ(record.quantityIDE, 1);
    EXPECT_STREQ(record.driveArray[0].model, "model before");
    EXPECT_STREQ(record.driveArray[0].size, "size before");
    EXPECT_STREQ(record.driveArray[0].ControllerType, "ide");
}

TEST_F(DrivesTest, FailedReadsLeaveTheirFields) {
    Put('a', Disk());
    std::strcpy(record.driveArray[0].model, "model before");
    server.Fail("read", 2);
    GetStorageInfo(&record);
    EXPECT_EQ(record.quantityIDE, 1);
    EXPECT_STREQ(record.driveArray[0].model, "model before");
    EXPECT_STREQ(record.driveArray[0].size, "40020664320");
    ExpectAllClosed();
}

TEST_F(DrivesTest, MissingFoldersSkipTheSlot) {
    Put('a', Disk());
    Put('b', Disk("Second"));
    server.Fail("opendir", 2, EMFILE);  // ide0 for hda
    EXPECT_EQ(Read().quantityIDE, 1);
    EXPECT_STREQ(record.driveArray[0].model, "Second");
    server.Fail("opendir", 3, EMFILE);  // hda in it
    EXPECT_EQ(Read().quantityIDE, 1);
    EXPECT_STREQ(record.driveArray[0].model, "Second");
}

TEST_F(DrivesTest, TextsOfTheMachineAreCutToTheirFields) {
    sim::IdeDrive drive = With("model", std::string(80, 'm') + "\n");
    Put('a', drive);
    Read();
    EXPECT_EQ(std::string(record.driveArray[0].model), std::string(63, 'm'));
    EXPECT_STREQ(record.driveArray[0].ControllerType, "ide");
}

TEST_F(DrivesTest, TextThatFillsItsFieldWithTheLineEndIsWhole) {
    EXPECT_EQ(std::string(ReadOnly(With("model", std::string(63, 'm') + "\n")).model),
              std::string(63, 'm'));
    EXPECT_EQ(std::string(ReadOnly(With("model", std::string(62, 'm') + "\n")).model),
              std::string(62, 'm'));
    EXPECT_EQ(std::string(ReadOnly(With("model", std::string(64, 'm'))).model),
              std::string(63, 'm'));
}

TEST_F(DrivesTest, ShortTextOverALongerOneIsTerminated) {
    Put('a', Disk("Short"));
    std::strcpy(record.driveArray[0].model, "A much longer model name");
    GetStorageInfo(&record);
    EXPECT_STREQ(record.driveArray[0].model, "Short");
}

TEST_F(DrivesTest, CapacityIsGivenInBytes) {
    EXPECT_STREQ(ReadOnly(With("capacity", "78165360\n")).size, "40020664320");
    EXPECT_STREQ(ReadOnly(With("capacity", "1\n")).size, "512");
}

TEST_F(DrivesTest, CapacityOfZeroIsAnEmptyText) {
    EXPECT_STREQ(ReadOnly(With("capacity", "0\n")).size, "");
}

TEST_F(DrivesTest, CapacityInAnyBaseIsRead) {
    EXPECT_STREQ(ReadOnly(With("capacity", "0x10\n")).size, "8192");
    EXPECT_STREQ(ReadOnly(With("capacity", "010\n")).size, "4096");
}

TEST_F(DrivesTest, CapacityThatIsNoNumberIsZero) {
    EXPECT_STREQ(ReadOnly(With("capacity", "none\n")).size, "");
    EXPECT_STREQ(ReadOnly(With("capacity", "12 sectors\n")).size, "6144");
}

TEST_F(DrivesTest, CapacityOfATerabyteAndMoreHasAFirstCharacterBeyondTheDigits) {
    EXPECT_STREQ(ReadOnly(With("capacity", "1953525168\n")).size, ":00204886016");
}

TEST_F(DrivesTest, CapacityBeyondAllDisksStaysInItsField) {
    const DriveInfo& disk = ReadOnly(With("capacity", std::string(63, '9') + "\n"));
    EXPECT_LE(std::strlen(disk.size), 12u);
    EXPECT_STREQ(disk.model, "ST340014A");
}

TEST_F(DrivesTest, SerialNumberRunsOnIntoTheFieldsAfterIt) {
    sim::IdeDrive drive = Disk();
    std::memcpy(drive.identity->data() + 20, "SERIAL67890123456789ABCDEF1.00", 30);
    (*drive.identity)[50] = 0;
    EXPECT_STREQ(ReadOnly(drive).SerialNo, "SERIAL67890123456789ABCDEF1.00");
}

TEST_F(DrivesTest, SerialNumberEndsAtTheFirstZeroByte) {
    sim::IdeDrive drive = Disk();
    (*drive.identity)[24] = 0;
    EXPECT_STREQ(ReadOnly(drive).SerialNo, "5JX7");
    (*drive.identity)[20] = 0;
    EXPECT_STREQ(ReadOnly(drive).SerialNo, "");
}

TEST_F(DrivesTest, LongSerialNumberIsCutToItsField) {
    sim::IdeDrive drive = Disk();
    drive.identity->fill('S');
    const DriveInfo& disk = ReadOnly(drive);
    EXPECT_EQ(std::string(disk.SerialNo), std::string(63, 'S'));
    EXPECT_STREQ(disk.FirmwareVersion, "");
}

TEST_F(DrivesTest, SerialNumberOfExactlyTheFieldIsWhole) {
    sim::IdeDrive drive = Disk();
    drive.identity->fill('S');
    (*drive.identity)[20 + 63] = 0;
    EXPECT_EQ(std::string(ReadOnly(drive).SerialNo), std::string(63, 'S'));
}

TEST_F(DrivesTest, RefusedIdentityLeavesTheSerialNumber) {
    sim::IdeDrive drive = Disk();
    drive.identity.reset();
    Put('a', drive);
    std::strcpy(record.driveArray[0].SerialNo, "serial before");
    GetStorageInfo(&record);
    EXPECT_EQ(record.quantityIDE, 1);
    EXPECT_STREQ(record.driveArray[0].SerialNo, "serial before");
    ExpectAllClosed();
}

TEST_F(DrivesTest, DiskThatCannotBeOpenedStillHasItsEntry) {
    Put('a', Disk());
    server.Refuse("/dev/hda", EACCES);
    EXPECT_EQ(Read().quantityIDE, 1);
    EXPECT_STREQ(record.driveArray[0].SerialNo, "");
    EXPECT_STREQ(record.driveArray[0].size, "40020664320");
    EXPECT_EQ(server.GetLog().Count("ioctl"), 0u);
}

TEST_F(DrivesTest, CommandOfGetInfoNeedsNoSmbiosTable) {
    Put('a', Disk());
    EXPECT_EQ(GetInfo(TALVANE_DRIVES, &record), 0);
    EXPECT_EQ(record.quantityIDE, 1);
    EXPECT_EQ(GetInfo(0x200000, &record), 0);
}

TEST_F(DrivesTest, CommandOfGetInfoSucceedsWithoutDrives) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(GetInfo(TALVANE_DRIVES, &record), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "No ide devices.");
}

}  // namespace
