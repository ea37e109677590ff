// SPDX-License-Identifier: MIT
//
// The total memory size: modules, else devices, else mapped address ranges, modulo 65536.
#include "support/MemoryTest.h"

namespace {

class MemoryTotalTest : public MemoryTest {
protected:
    int Total() {
        Open();
        return reader->GetMemoryTotalSize();
    }
};

TEST_F(MemoryTotalTest, NothingGivesZero) {
    table.Add(0, 0, 20);
    EXPECT_EQ(Total(), 0);
}

TEST_F(MemoryTotalTest, ModulesAddUp) {
    AddModule(1, 8);
    AddModule(2, 0x80 | 7);
    AddModule(3, 0);
    EXPECT_EQ(Total(), 256 + 128 + 1);
}

TEST_F(MemoryTotalTest, ModulesCountWithoutAController) {
    AddModule(0x600, 8);
    EXPECT_EQ(Total(), 256);
}

TEST_F(MemoryTotalTest, EverySizeByteAddsItsPowerOfTwo) {
    for (int size = 0; size < 256; ++size) {
        NewTable();
        AddModule(1, 4);
        AddModule(2, size);
        const int n = size & 0x7F;
        EXPECT_EQ(Total(), 16 + (n < 16 ? 1 << n : 0)) << size;
    }
}

TEST_F(MemoryTotalTest, TotalIsKeptIn16Bits) {
    AddModule(1, 15);
    AddModule(2, 15);
    AddModule(3, 5);
    EXPECT_EQ(Total(), 32);
}

TEST_F(MemoryTotalTest, DevicesAreNotAddedToModules) {
    AddModule(1, 8);
    AddDevice(512, "A", "B");
    EXPECT_EQ(Total(), 256);
}

TEST_F(MemoryTotalTest, DevicesCountWhenTheModulesAddUpToZero) {
    AddModule(1, 125);
    AddModule(2, 15);
    AddModule(3, 15);
    AddDevice(512, "A", "B");
    EXPECT_EQ(Total(), 512);
}

TEST_F(MemoryTotalTest, DevicesAddUp) {
    AddDevice(512, "A", "B");
    AddDevice(0x7FFF, "A", "B");
    AddDevice(1, "A", "B");
    EXPECT_EQ(Total(), 512 + 0x7FFF + 1);
}

TEST_F(MemoryTotalTest, DeviceTotalWrapsToo) {
    AddDevice(0x7FFF, "A", "B");
    AddDevice(0x7FFF, "A", "B");
    AddDevice(12, "A", "B");
    EXPECT_EQ(Total(), 10);
}

TEST_F(MemoryTotalTest, SizesInKilobytesAddWithBit15ShiftedAlong) {
    AddDevice(0x8200, "A", "B");
    AddDevice(0x8400, "A", "B");
    EXPECT_EQ(Total(), 32 + 33);
}

TEST_F(MemoryTotalTest, UnknownAndEmptySizesAddNothing) {
    AddDevice(0xFFFF, "A", "B");
    AddDevice(0x0000, "A", "B");
    AddDevice(0x8000, "A", "B");
    EXPECT_EQ(Total(), 0);
    AddDevice(64, "A", "B");
    EXPECT_EQ(Total(), 64);
}

TEST_F(MemoryTotalTest, RomFlashAndRdramDevicesAreSkipped) {
    for (int type = 0; type < 256; ++type) {
        NewTable();
        AddDevice(512, "A", "B", type);
        AddDevice(1, "A", "B");
        const bool skipped = (type >= 8 && type <= 12) || type == 17;
        EXPECT_EQ(Total(), skipped ? 1 : 513) << type;
    }
}

TEST_F(MemoryTotalTest, MappedRangesOfTheDevicesCountWhenNoSizeIsKnown) {
    AddDevice(0xFFFF, "A", "B");
    AddDevice(0, "A", "B");
    AddMappedAddress(0x1100, 0x1000, 0x1100);
    AddMappedAddress(0x1101, 0x0, 0x30);
    EXPECT_EQ(Total(), 0x100 + 0x30);
}

TEST_F(MemoryTotalTest, MappedRangesAreNotAddedToDevices) {
    AddDevice(64, "A", "B");
    AddMappedAddress(0x1100, 0x1000, 0x1100);
    EXPECT_EQ(Total(), 64);
}

TEST_F(MemoryTotalTest, MappedRangesOfOtherHandlesDoNotCount) {
    AddDevice(0xFFFF, "A", "B");
    AddMappedAddress(0x1101, 0x1000, 0x1100);
    AddMappedAddress(0x0011, 0x1000, 0x1100);
    EXPECT_EQ(Total(), 0);
}

TEST_F(MemoryTotalTest, MappedRangeOfHandleZeroNeedsADeviceOfHandleZero) {
    AddDevice(0xFFFF, "A", "B");
    AddMappedAddress(0, 0x1000, 0x1100);
    EXPECT_EQ(Total(), 0);
    deviceHandle = 0;
    AddDevice(0xFFFF, "A", "B");
    EXPECT_EQ(Total(), 0x100);
}

TEST_F(MemoryTotalTest, WithoutDevicesMappedRangesDoNotCount) {
    AddMappedAddress(0, 0x1000, 0x1100);
    AddMappedAddress(0x1100, 0x1000, 0x1100);
    EXPECT_EQ(Total(), 0);
}

TEST_F(MemoryTotalTest, MappedRangesAreTruncatedTo16BitsEach) {
    AddDevice(0xFFFF, "A", "B");
    AddMappedAddress(0x1100, 0x00000001, 0x12345679);
    EXPECT_EQ(Total(), 0x5678);
    AddMappedAddress(0x1100, 0x10, 0x00);  // ends before it starts
    EXPECT_EQ(Total(), 0x5668);
    AddMappedAddress(0x1100, 0, 0xB000);
    EXPECT_EQ(Total(), (0x5668 + 0xB000) & 0xFFFF);
}

TEST_F(MemoryTotalTest, DevicesWithOneHandleCountTheRangeOnceEach) {
    AddDevice(0xFFFF, "A", "B");
    deviceHandle = 0x1100;
    AddDevice(0xFFFF, "A", "B");
    AddMappedAddress(0x1100, 0, 0x100);
    EXPECT_EQ(Total(), 0x200);
}

TEST_F(MemoryTotalTest, HandlesOfSkippedDevicesAreRecordedToo) {
    AddDevice(512, "A", "B", 9);
    AddDevice(0x8000, "A", "B");
    AddMappedAddress(0x1100, 0, 0x100);
    AddMappedAddress(0x1101, 0, 0x001);
    EXPECT_EQ(Total(), 0x101);
}

TEST_F(MemoryTotalTest, EightDeviceHandlesAreRecorded) {
    for (int i = 0; i < 9; ++i) AddDevice(0xFFFF, "A", "B");
    AddMappedAddress(0x1107, 0, 0x100);
    AddMappedAddress(0x1108, 0, 0x001);
    EXPECT_EQ(Total(), 0x100);
}

TEST_F(MemoryTotalTest, MoreThanEightDevicesAreAllAdded) {
    for (int i = 0; i < 20; ++i) AddDevice(256, "A", "B");
    EXPECT_EQ(Total(), 20 * 256);
}

TEST_F(MemoryTotalTest, WalksEndAfterTwoHundredFiftyFiveStructures) {
    for (int i = 0; i < 256; ++i) AddModule(1, 0);
    EXPECT_EQ(Total(), 255);
    NewTable();
    for (int i = 0; i < 256; ++i) AddDevice(1, "A", "B");
    EXPECT_EQ(Total(), 255);
    NewTable();
    AddDevice(0xFFFF, "A", "B");
    for (int i = 0; i < 256; ++i) AddMappedAddress(0x1102 + 255, 0, 1);
    deviceHandle = 0x1102 + 255;
    AddDevice(0xFFFF, "A", "B");
    EXPECT_EQ(Total(), 255);
}

}  // namespace
