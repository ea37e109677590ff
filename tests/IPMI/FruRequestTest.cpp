// SPDX-License-Identifier: MIT
//
// The requests that read the inventory device, and what stands in its headers.

#include "InventoryTest.h"
#include "support/FieldTable.h"

namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::SizeIs;

TEST_F(InventoryTest, AreasAreReadHeadFirstAndThenWhole) {
    PlaceAll();
    ASSERT_EQ(Support().GetFRUInfo(), 0);
    EXPECT_THAT(bmc.RequestTexts(),
                ElementsAre("Get FRU Inventory Area Info 00", "Read FRU Data 00 00 00 08",
                            "Read FRU Data 00 20 00 02", "Read FRU Data 00 20 00 20",
                            "Read FRU Data 00 08 00 02", "Read FRU Data 00 08 00 18",
                            "Read FRU Data 00 40 00 02", "Read FRU Data 00 40 00 28"));
    for (const sim::BmcRequest& request : bmc.Requests()) EXPECT_EQ(request.timeout, 3000u);
}

TEST_F(InventoryTest, TheRequestRecordIsClearedAfterwards) {
    PlaceAll();
    ASSERT_EQ(Support().GetFRUInfo(), 0);
    EXPECT_EQ(Fru().request.data, nullptr);
    EXPECT_EQ(Fru().request.dataLength, 0);
    EXPECT_EQ(Fru().request.cmdType, 0);
    EXPECT_EQ(Fru().ResponseBuffer[1], 0) << "and so is the response";
}

TEST_F(InventoryTest, TheRequestRecordIsClearedAfterEachPart) {
    PlaceAll();
    using Part = int (FRU::*)();
    for (const Part part : {&FRU::GetFRU, &FRU::GetCommonHeaderInfo, &FRU::GetBoardInfo,
                            &FRU::GetChassisInfo, &FRU::GetProductInfo}) {
        EXPECT_EQ((Fru().*part)(), 0);
        EXPECT_EQ(Fru().request.cmdType, 0);
        EXPECT_EQ(Fru().request.rsSa, 0);
        EXPECT_EQ(Fru().request.netFn, 0);
        EXPECT_EQ(Fru().request.data, nullptr);
        EXPECT_EQ(Fru().request.dataLength, 0);
    }
}

TEST_F(InventoryTest, TheResponseIsClearedAfterEachArea) {
    PlaceAll();
    ASSERT_EQ(Fru().GetCommonHeaderInfo(), 0);
    EXPECT_EQ(Fru().ResponseBuffer[1], 1) << "the header stays there";
    using Part = int (FRU::*)();
    for (const Part part : {&FRU::GetBoardInfo, &FRU::GetChassisInfo, &FRU::GetProductInfo}) {
        EXPECT_EQ((Fru().*part)(), 0);
        EXPECT_THAT(sim::Bytes(Fru().ResponseBuffer, Fru().ResponseBuffer + 256), Each(0));
    }
}

TEST_F(InventoryTest, SizeAccessModeAndOffsetsAreKept) {
    bmc.Intercept([](const sim::BmcRequest& request) {
        return request.command == 0x10 ? sim::Bytes{0x34, 0x12, 0xFF}
                                       : sim::Bytes{8, 1, 2, 3, 4, 5, 0xFF};
    });
    EXPECT_EQ(Fru().GetFRU(), 0);
    EXPECT_EQ(Fru().FRUInfo.FRUInfoSize, 0x1234);
    EXPECT_EQ(Fru().FRUInfo.accessMode, 1);
    EXPECT_EQ(Fru().GetCommonHeaderInfo(), 0);
    ExpectNumbers({
        {"version", Fru().CommomHeaderInfo.version, 1},
        {"internalUseAreaStartOffset", Fru().CommomHeaderInfo.internalUseAreaStartOffset, 16},
        {"chassisInfoAreaStartOffset", Fru().CommomHeaderInfo.chassisInfoAreaStartOffset, 24},
        {"boardAreaStartOffset", Fru().CommomHeaderInfo.boardAreaStartOffset, 32},
        {"productInfoAreaStartOffset", Fru().CommomHeaderInfo.productInfoAreaStartOffset, 40},
        {"multiRecordAreaStartOffset", Fru().CommomHeaderInfo.multiRecordAreaStartOffset, 2040},
    });
}

TEST_F(InventoryTest, AnOffsetOfZeroReadsTheHeaderAsAnArea) {
    sim::Bytes image(64, 0);
    image[0] = 1;
    bmc.SetInventory(image);
    EXPECT_EQ(Support().GetFRUInfo(), 0);
    EXPECT_THAT(bmc.RequestTexts(),
                ElementsAre("Get FRU Inventory Area Info 00", "Read FRU Data 00 00 00 08",
                            "Read FRU Data 00 00 00 02", "Read FRU Data 00 00 00 00",
                            "Read FRU Data 00 00 00 02", "Read FRU Data 00 00 00 00",
                            "Read FRU Data 00 00 00 02", "Read FRU Data 00 00 00 00"));
}

TEST_F(InventoryTest, AnAreaOfThirtyTwoBlocksIsAskedForWithCountZero) {
    PlaceAll();
    bmc.Intercept([](const sim::BmcRequest& request) -> std::optional<sim::Bytes> {
        if (request.command == 0x11 && request.data[3] == 2) return sim::Bytes{2, 1, 0x20};
        return std::nullopt;
    });
    ASSERT_EQ(Fru().GetCommonHeaderInfo(), 0);
    EXPECT_EQ(Fru().GetProductInfo(), -1) << "nothing comes back";
    EXPECT_EQ(bmc.RequestTexts().back(), "Read FRU Data 00 40 00 00");
}

TEST_F(InventoryTest, LengthsOfAreasAreCountedPastAByte) {
    bmc.Intercept([](const sim::BmcRequest&) { return sim::Bytes{1, 1, 0xFF}; });
    EXPECT_EQ(Fru().GetBoardInfo(), 0);
    EXPECT_EQ(Fru().GetChassisInfo(), 0);
    EXPECT_EQ(Fru().GetProductInfo(), 0);
    EXPECT_EQ(Fru().BoardInfo.boardInfoAreaLength, 2040);
    EXPECT_EQ(Fru().ChassisInfo.chassisInfoAreaLength, 2040);
    EXPECT_EQ(Fru().ProductInfo.productInfoAreaLength, 2040);
    EXPECT_EQ(bmc.Requests()[1].data[3], 0xF8) << "not so the count that is asked for";
}

TEST_F(InventoryTest, WithoutAControllerNothingIsRead) {
    PlaceAll();
    Support();
    InitOK = 0;
    EXPECT_EQ(Support().GetFRUInfo(), -1);
    EXPECT_EQ(Fru().GetFRU(), -1);
    EXPECT_EQ(Fru().GetCommonHeaderInfo(), -1);
    EXPECT_EQ(Fru().GetBoardInfo(), -1);
    EXPECT_EQ(Fru().GetChassisInfo(), -1);
    EXPECT_EQ(Fru().GetProductInfo(), -1);
    EXPECT_THAT(bmc.Requests(), SizeIs(0));
}

}  // namespace
