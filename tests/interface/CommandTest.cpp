// SPDX-License-Identifier: MIT
//
// The command codes of GetInfo: matched exactly, and what each answers without a table.
#include "simulator/machine/IdeDrive.h"
#include "support/InterfaceTest.h"

namespace {

constexpr unsigned long kTableCommands[] = {0x10000,   0x20000,   0x40000,   0x80000,   0x800000,
                                            0x1000000, 0x2000000, 0x4000000, 0x8000000, 0x10000000};

class CommandTest : public InterfaceTest {};

TEST_F(CommandTest, TwoBitsOrNoneWriteNothingAndReturnZero) {
    table.Add(4, 1, 35);
    Place();
    ExpectRecord(0x30000, RecordImage(8192), RecordImage(8192));
    ExpectRecord(0, RecordImage(8192), RecordImage(8192));
}

TEST_F(CommandTest, EveryOtherCodeWritesNothingReturnsZeroAndTouchesNothing) {
    table.Add(4, 1, 35);
    Place();
    const auto expectNothing = [](unsigned long code) {
        ExpectRecord(code, RecordImage(8192), RecordImage(8192));
    };
    for (int bit = 0; bit < 32; ++bit)
        if (bit < 16 || bit > 28) expectNothing(1UL << bit);
    for (const unsigned long command : kTableCommands) {
        expectNothing(command | 1);
        expectNothing(command + 0x8000);
        expectNothing(command | 0x80000000UL);
    }
    expectNothing(0xFFFFFFFFUL);
    expectNothing(0x1FFF0000UL);
    EXPECT_TRUE(server.GetLog().Accesses().empty());
}

TEST_F(CommandTest, WithoutASmbiosTableEveryTableCommandReturnsMinusOneAndWritesNothing) {
    for (const unsigned long command : kTableCommands) {
        RecordImage record(8192);
        EXPECT_EQ(Get(command, record), -1) << command;
        EXPECT_TRUE(SameBytes(RecordImage(8192), record)) << command;
    }
    EXPECT_EQ(server.GetLog().Count("open"), 1u);
}

TEST_F(CommandTest, PciReportRunsWithoutASmbiosTable) {
    DeviceInformation record{};
    EXPECT_EQ(GetInfo(0x100000, &record), 0);
    EXPECT_EQ(record.quantity, 0);
    EXPECT_EQ(server.GetLog().Count("open"), 0u);
}

TEST_F(CommandTest, WithoutASmbiosTableTheOtherCommandsStillRunAndReturnZero) {
    server.GetPci().Set({0, 31, 2}, {0x86, 0x80, 0xD1, 0x24});
    const sim::IdeDrive disk = sim::MakeDisk("ST340014A", 78165360, "5JX7A1B2");
    disk.image->SetEntry(0, 1, {.type = 0x83, .start = 63, .sectors = 20971520});
    sim::InstallDrive(server.GetMachine(), 'a', disk);

    for (const unsigned long command : kTableCommands) {
        RecordImage record(8192);
        EXPECT_EQ(Get(command, record), -1) << command;
    }
    DeviceInformation functions{};
    EXPECT_EQ(GetInfo(0x100000, &functions), 0);
    EXPECT_EQ(functions.quantity, 1);
    StorageInformation drives{};
    EXPECT_EQ(GetInfo(0x200000, &drives), 0);
    EXPECT_EQ(drives.quantityIDE, 1);
    EXPECT_STREQ(drives.driveArray[0].model, "ST340014A");
    PartitionInformation partitions{};
    EXPECT_EQ(GetInfo(0x400000, &partitions), 0);
    EXPECT_EQ(partitions.quantity, 1);
    EXPECT_STREQ(partitions.partition[0].description, "/dev/hda1");
}

TEST_F(CommandTest, EveryTableCommandMakesTheReaderItself) {
    table.Add(4, 1, 35);
    Place();
    for (const unsigned long command : kTableCommands) {
        release();
        server.GetLog().Clear();
        RecordImage record(8192);
        EXPECT_EQ(Get(command, record), 0) << command;
        EXPECT_EQ(server.GetLog().Count("open"), 1u) << command;
        EXPECT_EQ(server.GetLog().Accesses().size(), 6u) << command;
    }
}

}  // namespace
