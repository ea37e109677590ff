// SPDX-License-Identifier: MIT
//
// Reading the inventory device.

#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "support/IpmiTest.h"

namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::SizeIs;

// A field with its type/length byte, 8-bit text by default.
std::string Field(const std::string& text, int type = 3) {
    return static_cast<char>(type << 6 | static_cast<int>(text.size())) + text;
}

class Inventory : public IpmiTest {
protected:
    // An area of whole blocks of eight bytes.
    static std::string Area(std::string bytes, int blocks = -1) {
        bytes += '\xC1';
        while (bytes.size() % 8 != 7) bytes += '\0';
        bytes += '\0';
        bytes[1] = static_cast<char>(blocks < 0 ? static_cast<int>(bytes.size() / 8) : blocks);
        return bytes;
    }
    static std::string BoardArea(const std::string& fields, int language = 0) {
        return Area(std::string("\x01\0", 2) + static_cast<char>(language) +
                    std::string("\0\0\0", 3) + fields);
    }
    static std::string OtherArea(const std::string& fields, int third = 0) {
        return Area(std::string("\x01\0", 2) + static_cast<char>(third) + fields);
    }

    void Place(const std::string& chassis, const std::string& board, const std::string& product) {
        std::string image(8, '\0');
        image[0] = 1;
        const auto append = [&](std::size_t slot, const std::string& area) {
            image[slot] = static_cast<char>(image.size() / 8);
            image += area;
        };
        append(2, chassis);
        append(3, board);
        append(4, product);
        bmc.setInventory(sim::Bytes(image.begin(), image.end()));
    }
    void PlaceAll() {
        Place(OtherArea(Field("CH-PN") + Field("CH-SN"), 0x17),
              BoardArea(Field("Maker") + Field("Board") + Field("B-SN") + Field("B-PN")),
              OtherArea(Field("Acme") + Field("Server") + Field("P-PN") + Field("V1") +
                        Field("P-SN") + Field("TAG")));
    }

    FRU& Fru() { return Support().fru; }
    Answer AskText(int (IPMIsupport::*getter)(char*)) {
        return AskWith(Buffer::marked, [&](char* out) { return (Support().*getter)(out); });
    }
};

TEST_F(Inventory, EveryTextHasItsGetter) {
    PlaceAll();
    EXPECT_EQ(Support().GetFRUInfo(), 0);
    EXPECT_EQ(AskText(&IPMIsupport::GetBoardManufacturer), Terminated("Maker"));
    EXPECT_EQ(AskText(&IPMIsupport::GetBoardProductName), Terminated("Board"));
    EXPECT_EQ(AskText(&IPMIsupport::GetBoardSerialNumber), Terminated("B-SN"));
    EXPECT_EQ(AskText(&IPMIsupport::GetBoardPartNumber), Terminated("B-PN"));
    EXPECT_EQ(AskText(&IPMIsupport::GetChassisPartNumber), Terminated("CH-PN"));
    EXPECT_EQ(AskText(&IPMIsupport::GetChassisSerialNumber), Terminated("CH-SN"));
    EXPECT_EQ(AskText(&IPMIsupport::GetProductManufacturerName), Terminated("Acme"));
    EXPECT_EQ(AskText(&IPMIsupport::GetProductName), Terminated("Server"));
    EXPECT_EQ(AskText(&IPMIsupport::GetProductPartName), Terminated("P-PN"));
}

TEST_F(Inventory, TheProductsVersionStandsForItsSerialNumber) {
    PlaceAll();
    ASSERT_EQ(Support().GetFRUInfo(), 0);
    EXPECT_EQ(AskText(&IPMIsupport::GetProductSerialNumber), Terminated("V1"));
    EXPECT_EQ(AskText(&IPMIsupport::GetProductVersion), Terminated(""));
}

TEST_F(Inventory, TheAssetTagIsTheFifthFieldFromItsTypeByteOn) {
    PlaceAll();
    ASSERT_EQ(Support().GetFRUInfo(), 0);
    EXPECT_EQ(AskText(&IPMIsupport::GetProductAssetTag), Terminated("\xC4P-S"));
}

TEST_F(Inventory, TextsAreEmptyBeforeTheyAreRead) {
    EXPECT_EQ(AskText(&IPMIsupport::GetBoardManufacturer), Terminated(""));
    EXPECT_EQ(AskText(&IPMIsupport::GetProductAssetTag), Terminated(""));
    EXPECT_THAT(bmc.requests(), SizeIs(0));
}

TEST_F(Inventory, AreasAreReadHeadFirstAndThenWhole) {
    PlaceAll();
    ASSERT_EQ(Support().GetFRUInfo(), 0);
    EXPECT_THAT(bmc.requestTexts(),
                ElementsAre("Get FRU Inventory Area Info 00", "Read FRU Data 00 00 00 08",
                            "Read FRU Data 00 20 00 02", "Read FRU Data 00 20 00 20",
                            "Read FRU Data 00 08 00 02", "Read FRU Data 00 08 00 18",
                            "Read FRU Data 00 40 00 02", "Read FRU Data 00 40 00 28"));
    for (const sim::BmcRequest& request : bmc.requests()) EXPECT_EQ(request.timeout, 3000u);
}

TEST_F(Inventory, TheRequestRecordIsClearedAfterwards) {
    PlaceAll();
    ASSERT_EQ(Support().GetFRUInfo(), 0);
    EXPECT_EQ(Fru().request.data, nullptr);
    EXPECT_EQ(Fru().request.dataLength, 0);
    EXPECT_EQ(Fru().request.cmdType, 0);
    EXPECT_EQ(Fru().ResponseBuffer[1], 0) << "and so is the response";
}

TEST_F(Inventory, TheRequestRecordIsClearedAfterEachPart) {
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

TEST_F(Inventory, TheResponseIsClearedAfterEachArea) {
    PlaceAll();
    ASSERT_EQ(Fru().GetCommonHeaderInfo(), 0);
    EXPECT_EQ(Fru().ResponseBuffer[1], 1) << "the header stays there";
    using Part = int (FRU::*)();
    for (const Part part : {&FRU::GetBoardInfo, &FRU::GetChassisInfo, &FRU::GetProductInfo}) {
        EXPECT_EQ((Fru().*part)(), 0);
        EXPECT_THAT(sim::Bytes(Fru().ResponseBuffer, Fru().ResponseBuffer + 256), Each(0));
    }
}

TEST_F(Inventory, SizeAccessModeAndOffsetsAreKept) {
    bmc.intercept([](const sim::BmcRequest& request) {
        return request.command == 0x10 ? sim::Bytes{0x34, 0x12, 0xFF}
                                       : sim::Bytes{8, 1, 2, 3, 4, 5, 0xFF};
    });
    EXPECT_EQ(Fru().GetFRU(), 0);
    EXPECT_EQ(Fru().FRUInfo.FRUInfoSize, 0x1234);
    EXPECT_EQ(Fru().FRUInfo.accessMode, 1);
    EXPECT_EQ(Fru().GetCommonHeaderInfo(), 0);
    EXPECT_EQ(Fru().CommomHeaderInfo.version, 1);
    EXPECT_EQ(Fru().CommomHeaderInfo.internalUseAreaStartOffset, 16);
    EXPECT_EQ(Fru().CommomHeaderInfo.chassisInfoAreaStartOffset, 24);
    EXPECT_EQ(Fru().CommomHeaderInfo.boardAreaStartOffset, 32);
    EXPECT_EQ(Fru().CommomHeaderInfo.productInfoAreaStartOffset, 40);
    EXPECT_EQ(Fru().CommomHeaderInfo.multiRecordAreaStartOffset, 2040);
}

TEST_F(Inventory, FixedBytesAndFieldHeadsAreKept) {
    PlaceAll();
    ASSERT_EQ(Support().GetFRUInfo(), 0);
    EXPECT_EQ(Fru().BoardInfo.version, 1);
    EXPECT_EQ(Fru().BoardInfo.boardInfoAreaLength, 32);
    EXPECT_EQ(Fru().BoardInfo.ManufacturerInfo.typeCode, 3);
    EXPECT_EQ(Fru().BoardInfo.ManufacturerInfo.manufacturerBytesLen, 5);
    EXPECT_EQ(Fru().ChassisInfo.version, 1);
    EXPECT_EQ(Fru().ChassisInfo.chassisType, 0x17);
    EXPECT_EQ(Fru().ChassisInfo.chassisInfoAreaLength, 24);
    EXPECT_EQ(Fru().ProductInfo.version, 1);
    EXPECT_EQ(Fru().ProductInfo.AssetTagInfo.AssetTagInfoBytesLen, 4);
    EXPECT_EQ(Fru().ProductInfo.productInfoAreaLength, 40);
}

TEST_F(Inventory, AnOffsetOfZeroReadsTheHeaderAsAnArea) {
    sim::Bytes image(64, 0);
    image[0] = 1;
    bmc.setInventory(image);
    EXPECT_EQ(Support().GetFRUInfo(), 0);
    EXPECT_THAT(bmc.requestTexts(),
                ElementsAre("Get FRU Inventory Area Info 00", "Read FRU Data 00 00 00 08",
                            "Read FRU Data 00 00 00 02", "Read FRU Data 00 00 00 00",
                            "Read FRU Data 00 00 00 02", "Read FRU Data 00 00 00 00",
                            "Read FRU Data 00 00 00 02", "Read FRU Data 00 00 00 00"));
}

TEST_F(Inventory, TheMarkerOfTheLastFieldIsAFieldOfOneByte) {
    const std::string marker(1, '\xC1');
    Place(OtherArea(Field("CH-PN") + marker + "Z", 0x17), BoardArea(""), OtherArea(""));
    ASSERT_EQ(Support().GetFRUInfo(), 0);
    EXPECT_EQ(Fru().ChassisInfo.SerialNumberInfo.typeCode, 3);
    EXPECT_EQ(Fru().ChassisInfo.SerialNumberInfo.serialNumberBytesLen, 1);
    EXPECT_EQ(AskText(&IPMIsupport::GetChassisSerialNumber), Terminated("Z"));
}

TEST_F(Inventory, SerialNumbersAreEnglishInEveryArea) {
    Place(OtherArea(Field("abc") + Field("abc")),
          BoardArea(Field("abc") + Field("abc") + Field("abc") + Field("abc"), 1),
          OtherArea(Field("abc") + Field("abc") + Field("abc") + Field("abc") + Field("abc"), 1));
    ASSERT_EQ(Support().GetFRUInfo(), 0);
    EXPECT_EQ(AskText(&IPMIsupport::GetBoardManufacturer), Terminated("ab"));
    EXPECT_EQ(AskText(&IPMIsupport::GetBoardProductName), Terminated("ab"));
    EXPECT_EQ(AskText(&IPMIsupport::GetBoardSerialNumber), Terminated("abc"));
    EXPECT_EQ(AskText(&IPMIsupport::GetBoardPartNumber), Terminated("ab"));
    EXPECT_EQ(AskText(&IPMIsupport::GetChassisPartNumber), Terminated("abc"));
    EXPECT_EQ(AskText(&IPMIsupport::GetProductManufacturerName), Terminated("ab"));
    EXPECT_EQ(AskText(&IPMIsupport::GetProductName), Terminated("ab"));
    EXPECT_EQ(AskText(&IPMIsupport::GetProductPartName), Terminated("ab"));
    EXPECT_EQ(AskText(&IPMIsupport::GetProductSerialNumber), Terminated("abc"));
    EXPECT_EQ(AskText(&IPMIsupport::GetProductAssetTag), Terminated("\xC3"
                                                                    "a"));
}

TEST_F(Inventory, ASixBitFieldOfSixBytesIsEmptyAndSucceeds) {
    Place(OtherArea(Field("abcdef", 2) + Field("SN")), BoardArea(""), OtherArea(""));
    ASSERT_EQ(Fru().GetCommonHeaderInfo(), 0);
    EXPECT_EQ(Fru().GetChassisInfo(), 0);
    EXPECT_EQ(AskText(&IPMIsupport::GetChassisPartNumber), Terminated(""));
    EXPECT_EQ(AskText(&IPMIsupport::GetChassisSerialNumber), Terminated("SN"));
}

TEST_F(Inventory, AnAreaOfThirtyTwoBlocksIsAskedForWithCountZero) {
    PlaceAll();
    bmc.intercept([](const sim::BmcRequest& request) -> std::optional<sim::Bytes> {
        if (request.command == 0x11 && request.data[3] == 2) return sim::Bytes{2, 1, 0x20};
        return std::nullopt;
    });
    ASSERT_EQ(Fru().GetCommonHeaderInfo(), 0);
    EXPECT_EQ(Fru().GetProductInfo(), -1) << "nothing comes back";
    EXPECT_EQ(bmc.requestTexts().back(), "Read FRU Data 00 40 00 00");
}

TEST_F(Inventory, AnAreaOfAnotherVersionIsSkippedAndTheOthersAreRead) {
    Place(OtherArea(Field("CH-PN") + Field("CH-SN")),
          "\x02" + BoardArea(Field("Maker") + Field("Board") + Field("S") + Field("P")).substr(1),
          OtherArea(Field("Acme") + Field("Server") + Field("PN") + Field("V") + Field("S")));
    EXPECT_EQ(Support().GetFRUInfo(), 0);
    EXPECT_EQ(Fru().GetBoardInfo(), -1);
    EXPECT_EQ(AskText(&IPMIsupport::GetBoardManufacturer), Terminated(""));
    EXPECT_EQ(AskText(&IPMIsupport::GetChassisPartNumber), Terminated("CH-PN"));
    EXPECT_EQ(AskText(&IPMIsupport::GetProductName), Terminated("Server"));
}

TEST_F(Inventory, AShorterTextLeavesTheTailOfTheOneBefore) {
    PlaceAll();
    ASSERT_EQ(Support().GetFRUInfo(), 0);
    Place(OtherArea(Field("X") + Field("Y")),
          BoardArea(Field("Zz") + Field("") + Field("") + Field("")), OtherArea(""));
    ASSERT_EQ(Support().GetFRUInfo(), 0);
    EXPECT_EQ(AskText(&IPMIsupport::GetChassisPartNumber), Terminated("XH-PN"));
    EXPECT_EQ(AskText(&IPMIsupport::GetBoardManufacturer), Terminated("Zzker"));
}

TEST_F(Inventory, AnAreaOfAnotherVersionLeavesTheOneBefore) {
    PlaceAll();
    ASSERT_EQ(Support().GetFRUInfo(), 0);
    bmc.intercept([](const sim::BmcRequest& request) -> std::optional<sim::Bytes> {
        if (request.command == 0x10 || request.data[3] == 8) return std::nullopt;
        return sim::Bytes{24, 2, 3, 9, 0xC2, 'X', 'Y', 0xC2, 'X', 'Y', 0xC2, 'X', 'Y'};
    });
    ASSERT_EQ(Support().GetFRUInfo(), 0);
    EXPECT_EQ(Fru().BoardInfo.version, 1);
    EXPECT_EQ(Fru().BoardInfo.boardInfoAreaLength, 32);
    EXPECT_EQ(Fru().BoardInfo.languageCode, 0);
    EXPECT_EQ(AskText(&IPMIsupport::GetBoardManufacturer), Terminated("Maker"));
    EXPECT_EQ(Fru().ChassisInfo.version, 1);
    EXPECT_EQ(Fru().ChassisInfo.chassisType, 0x17);
    EXPECT_EQ(AskText(&IPMIsupport::GetChassisPartNumber), Terminated("CH-PN"));
    EXPECT_EQ(Fru().ProductInfo.version, 1);
    EXPECT_EQ(AskText(&IPMIsupport::GetProductName), Terminated("Server"));
}

TEST_F(Inventory, LengthsOfAreasAreCountedPastAByte) {
    bmc.intercept([](const sim::BmcRequest&) { return sim::Bytes{1, 1, 0xFF}; });
    EXPECT_EQ(Fru().GetBoardInfo(), 0);
    EXPECT_EQ(Fru().GetChassisInfo(), 0);
    EXPECT_EQ(Fru().GetProductInfo(), 0);
    EXPECT_EQ(Fru().BoardInfo.boardInfoAreaLength, 2040);
    EXPECT_EQ(Fru().ChassisInfo.chassisInfoAreaLength, 2040);
    EXPECT_EQ(Fru().ProductInfo.productInfoAreaLength, 2040);
    EXPECT_EQ(bmc.requests()[1].data[3], 0xF8) << "not so the count that is asked for";
}

TEST_F(Inventory, FieldsPastTheResponseReadAsZeros) {
    bmc.intercept([](const sim::BmcRequest&) {
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

TEST_F(Inventory, WithoutAControllerNothingIsRead) {
    PlaceAll();
    Support();
    InitOK = 0;
    EXPECT_EQ(Support().GetFRUInfo(), -1);
    EXPECT_EQ(Fru().GetFRU(), -1);
    EXPECT_EQ(Fru().GetCommonHeaderInfo(), -1);
    EXPECT_EQ(Fru().GetBoardInfo(), -1);
    EXPECT_EQ(Fru().GetChassisInfo(), -1);
    EXPECT_EQ(Fru().GetProductInfo(), -1);
    EXPECT_THAT(bmc.requests(), SizeIs(0));
}

using Getter = int (FRU::*)(char*);
constexpr Getter kGetters[] = {
    &FRU::GetBoardManufacturer,       &FRU::GetBoardProductName,  &FRU::GetBoardSerialNumber,
    &FRU::GetBoardPartNumber,         &FRU::GetChassisPartNumber, &FRU::GetChassisSerialNumber,
    &FRU::GetProductManufacturerName, &FRU::GetProductName,       &FRU::GetProductPartName,
    &FRU::GetProductSerialNumber,     &FRU::GetProductVersion,    &FRU::GetProductAssetTag,
};

TEST_F(Inventory, NullPointersAreRefused) {
    for (const Getter getter : kGetters) EXPECT_EQ((Fru().*getter)(nullptr), -1);
}

TEST_F(Inventory, TextsAreEmptyWhateverTheMemoryHeldBefore) {
    alignas(FRU) unsigned char memory[sizeof(FRU)];
    std::memset(memory, 0xA5, sizeof memory);
    FRU* const fru = new (memory) FRU;
    for (const Getter getter : kGetters)
        EXPECT_EQ(AskWith(Buffer::marked, [&](char* out) { return (fru->*getter)(out); }),
                  Terminated(""));
    EXPECT_EQ(fru->ProductInfo.ProductVersionInfo.ProductVersionBytesLen, 0);
    EXPECT_EQ(fru->ChassisInfo.chassisType, 0);
    EXPECT_EQ(fru->BoardInfo.boardInfoAreaLength, 0);
    fru->~FRU();
}

}  // namespace
