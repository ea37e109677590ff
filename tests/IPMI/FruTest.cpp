// SPDX-License-Identifier: MIT
//
// The texts of the inventory device.

#include <cstring>
#include <new>
#include <string>

#include "InventoryTest.h"
#include "support/FieldTable.h"

namespace {

using ::testing::SizeIs;

TEST_F(InventoryTest, EveryTextHasItsGetter) {
    PlaceAll();
    EXPECT_EQ(Support().GetFRUInfo(), 0);
    const TextGetter kTexts[] = {
        {"GetBoardManufacturer", &IPMIsupport::GetBoardManufacturer, "Maker"},
        {"GetBoardProductName", &IPMIsupport::GetBoardProductName, "Board"},
        {"GetBoardSerialNumber", &IPMIsupport::GetBoardSerialNumber, "B-SN"},
        {"GetBoardPartNumber", &IPMIsupport::GetBoardPartNumber, "B-PN"},
        {"GetChassisPartNumber", &IPMIsupport::GetChassisPartNumber, "CH-PN"},
        {"GetChassisSerialNumber", &IPMIsupport::GetChassisSerialNumber, "CH-SN"},
        {"GetProductManufacturerName", &IPMIsupport::GetProductManufacturerName, "Acme"},
        {"GetProductName", &IPMIsupport::GetProductName, "Server"},
        {"GetProductPartName", &IPMIsupport::GetProductPartName, "P-PN"},
    };
    ExpectEach(kTexts);
}

TEST_F(InventoryTest, TheProductsVersionStandsForItsSerialNumber) {
    PlaceAll();
    ASSERT_EQ(Support().GetFRUInfo(), 0);
    EXPECT_EQ(AskText(&IPMIsupport::GetProductSerialNumber), Terminated("V1"));
    EXPECT_EQ(AskText(&IPMIsupport::GetProductVersion), Terminated(""));
}

TEST_F(InventoryTest, TheAssetTagIsTheFifthFieldFromItsTypeByteOn) {
    PlaceAll();
    ASSERT_EQ(Support().GetFRUInfo(), 0);
    EXPECT_EQ(AskText(&IPMIsupport::GetProductAssetTag), Terminated("\xC4P-S"));
}

TEST_F(InventoryTest, TextsAreEmptyBeforeTheyAreRead) {
    EXPECT_EQ(AskText(&IPMIsupport::GetBoardManufacturer), Terminated(""));
    EXPECT_EQ(AskText(&IPMIsupport::GetProductAssetTag), Terminated(""));
    EXPECT_THAT(bmc.Requests(), SizeIs(0));
}

TEST_F(InventoryTest, FixedBytesAndFieldHeadsAreKept) {
    PlaceAll();
    ASSERT_EQ(Support().GetFRUInfo(), 0);
    ExpectNumbers({
        {"BoardInfo.version", Fru().BoardInfo.version, 1},
        {"BoardInfo.boardInfoAreaLength", Fru().BoardInfo.boardInfoAreaLength, 32},
        {"BoardInfo.ManufacturerInfo.typeCode", Fru().BoardInfo.ManufacturerInfo.typeCode, 3},
        {"BoardInfo.ManufacturerInfo.manufacturerBytesLen",
         Fru().BoardInfo.ManufacturerInfo.manufacturerBytesLen, 5},
        {"ChassisInfo.version", Fru().ChassisInfo.version, 1},
        {"ChassisInfo.chassisType", Fru().ChassisInfo.chassisType, 0x17},
        {"ChassisInfo.chassisInfoAreaLength", Fru().ChassisInfo.chassisInfoAreaLength, 24},
        {"ProductInfo.version", Fru().ProductInfo.version, 1},
        {"ProductInfo.AssetTagInfo.AssetTagInfoBytesLen",
         Fru().ProductInfo.AssetTagInfo.AssetTagInfoBytesLen, 4},
        {"ProductInfo.productInfoAreaLength", Fru().ProductInfo.productInfoAreaLength, 40},
    });
}

TEST_F(InventoryTest, TheMarkerOfTheLastFieldIsAFieldOfOneByte) {
    const std::string marker(1, '\xC1');
    Place(OtherArea(Field("CH-PN") + marker + "Z", 0x17), BoardArea(""), OtherArea(""));
    ASSERT_EQ(Support().GetFRUInfo(), 0);
    EXPECT_EQ(Fru().ChassisInfo.SerialNumberInfo.typeCode, 3);
    EXPECT_EQ(Fru().ChassisInfo.SerialNumberInfo.serialNumberBytesLen, 1);
    EXPECT_EQ(AskText(&IPMIsupport::GetChassisSerialNumber), Terminated("Z"));
}

TEST_F(InventoryTest, SerialNumbersAreEnglishInEveryArea) {
    Place(OtherArea(Field("abc") + Field("abc")),
          BoardArea(Field("abc") + Field("abc") + Field("abc") + Field("abc"), 1),
          OtherArea(Field("abc") + Field("abc") + Field("abc") + Field("abc") + Field("abc"), 1));
    ASSERT_EQ(Support().GetFRUInfo(), 0);
    const TextGetter kTexts[] = {
        {"GetBoardManufacturer", &IPMIsupport::GetBoardManufacturer, "ab"},
        {"GetBoardProductName", &IPMIsupport::GetBoardProductName, "ab"},
        {"GetBoardSerialNumber", &IPMIsupport::GetBoardSerialNumber, "abc"},
        {"GetBoardPartNumber", &IPMIsupport::GetBoardPartNumber, "ab"},
        {"GetChassisPartNumber", &IPMIsupport::GetChassisPartNumber, "abc"},
        {"GetProductManufacturerName", &IPMIsupport::GetProductManufacturerName, "ab"},
        {"GetProductName", &IPMIsupport::GetProductName, "ab"},
        {"GetProductPartName", &IPMIsupport::GetProductPartName, "ab"},
        {"GetProductSerialNumber", &IPMIsupport::GetProductSerialNumber, "abc"},
        {"GetProductAssetTag", &IPMIsupport::GetProductAssetTag,
         "\xC3"
         "a"},
    };
    ExpectEach(kTexts);
}

TEST_F(InventoryTest, ASixBitFieldOfSixBytesIsEmptyAndSucceeds) {
    Place(OtherArea(Field("abcdef", 2) + Field("SN")), BoardArea(""), OtherArea(""));
    ASSERT_EQ(Fru().GetCommonHeaderInfo(), 0);
    EXPECT_EQ(Fru().GetChassisInfo(), 0);
    EXPECT_EQ(AskText(&IPMIsupport::GetChassisPartNumber), Terminated(""));
    EXPECT_EQ(AskText(&IPMIsupport::GetChassisSerialNumber), Terminated("SN"));
}

TEST_F(InventoryTest, AnAreaOfAnotherVersionIsSkippedAndTheOthersAreRead) {
    Place(OtherArea(Field("CH-PN") + Field("CH-SN")),
          "\x02" + BoardArea(Field("Maker") + Field("Board") + Field("S") + Field("P")).substr(1),
          OtherArea(Field("Acme") + Field("Server") + Field("PN") + Field("V") + Field("S")));
    EXPECT_EQ(Support().GetFRUInfo(), 0);
    EXPECT_EQ(Fru().GetBoardInfo(), -1);
    EXPECT_EQ(AskText(&IPMIsupport::GetBoardManufacturer), Terminated(""));
    EXPECT_EQ(AskText(&IPMIsupport::GetChassisPartNumber), Terminated("CH-PN"));
    EXPECT_EQ(AskText(&IPMIsupport::GetProductName), Terminated("Server"));
}

TEST_F(InventoryTest, AShorterTextLeavesTheTailOfTheOneBefore) {
    PlaceAll();
    ASSERT_EQ(Support().GetFRUInfo(), 0);
    Place(OtherArea(Field("X") + Field("Y")),
          BoardArea(Field("Zz") + Field("") + Field("") + Field("")), OtherArea(""));
    ASSERT_EQ(Support().GetFRUInfo(), 0);
    EXPECT_EQ(AskText(&IPMIsupport::GetChassisPartNumber), Terminated("XH-PN"));
    EXPECT_EQ(AskText(&IPMIsupport::GetBoardManufacturer), Terminated("Zzker"));
}

TEST_F(InventoryTest, AnAreaOfAnotherVersionLeavesTheOneBefore) {
    PlaceAll();
    ASSERT_EQ(Support().GetFRUInfo(), 0);
    bmc.Intercept([](const sim::BmcRequest& request) -> std::optional<sim::Bytes> {
        if (request.command == 0x10 || request.data[3] == 8) return std::nullopt;
        return sim::Bytes{24, 2, 3, 9, 0xC2, 'X', 'Y', 0xC2, 'X', 'Y', 0xC2, 'X', 'Y'};
    });
    ASSERT_EQ(Support().GetFRUInfo(), 0);
    ExpectNumbers({
        {"BoardInfo.version", Fru().BoardInfo.version, 1},
        {"BoardInfo.boardInfoAreaLength", Fru().BoardInfo.boardInfoAreaLength, 32},
        {"BoardInfo.languageCode", Fru().BoardInfo.languageCode, 0},
    });
    EXPECT_EQ(AskText(&IPMIsupport::GetBoardManufacturer), Terminated("Maker"));
    EXPECT_EQ(Fru().ChassisInfo.version, 1);
    EXPECT_EQ(Fru().ChassisInfo.chassisType, 0x17);
    EXPECT_EQ(AskText(&IPMIsupport::GetChassisPartNumber), Terminated("CH-PN"));
    EXPECT_EQ(Fru().ProductInfo.version, 1);
    EXPECT_EQ(AskText(&IPMIsupport::GetProductName), Terminated("Server"));
}

TEST_F(InventoryTest, FieldsPastTheResponseReadAsZeros) {
    bmc.Intercept([](const sim::BmcRequest&) {
        sim::Bytes response(256, 0xFF);  // fields of 63 bytes, 256 of them
        response[1] = 1;
        response[3] = 0;
        return response;
    });
    EXPECT_EQ(Fru().GetProductInfo(), 0);
    EXPECT_EQ(AskText(&IPMIsupport::GetProductPartName), Terminated(std::string(63, '\xFF')));
    EXPECT_EQ(AskText(&IPMIsupport::GetProductSerialNumber),
              Terminated(std::string(256 - 4 - 3 * 64 - 1, '\xFF')));
    EXPECT_EQ(AskText(&IPMIsupport::GetProductAssetTag), Terminated(""));
}

using Getter = int (FRU::*)(char*);
constexpr Getter kGetters[] = {
    &FRU::GetBoardManufacturer,       &FRU::GetBoardProductName,  &FRU::GetBoardSerialNumber,
    &FRU::GetBoardPartNumber,         &FRU::GetChassisPartNumber, &FRU::GetChassisSerialNumber,
    &FRU::GetProductManufacturerName, &FRU::GetProductName,       &FRU::GetProductPartName,
    &FRU::GetProductSerialNumber,     &FRU::GetProductVersion,    &FRU::GetProductAssetTag,
};

TEST_F(InventoryTest, NullPointersAreRefused) {
    for (const Getter getter : kGetters) EXPECT_EQ((Fru().*getter)(nullptr), -1);
}

TEST_F(InventoryTest, TextsAreEmptyWhateverTheMemoryHeldBefore) {
    alignas(FRU) unsigned char memory[sizeof(FRU)];
    std::memset(memory, 0xA5, sizeof memory);
    FRU* const fru = new (memory) FRU;
    for (const Getter getter : kGetters)
        EXPECT_EQ(AskWith(Buffer::kMarked, [&](char* out) { return (fru->*getter)(out); }),
                  Terminated(""));
    EXPECT_EQ(fru->ProductInfo.ProductVersionInfo.ProductVersionBytesLen, 0);
    EXPECT_EQ(fru->ChassisInfo.chassisType, 0);
    EXPECT_EQ(fru->BoardInfo.boardInfoAreaLength, 0);
    fru->~FRU();
}

}  // namespace
