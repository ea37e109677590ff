// SPDX-License-Identifier: MIT
//
// Inventories that are not as they should be, and what the library makes of them.

#include "FieldQuirkTest.h"

namespace {

using ::testing::ElementsAre;

class InventoryQuirkTest : public FieldQuirkTest {
protected:
    using Getter = int (IPMIsupport::*)(char*);

    void DescribeInventory(const std::string& image) {
        folder = std::make_unique<MachineFolder>("bmc kcs\ninventory image\n");
        folder->Write("image", image);
        server = std::make_unique<sim::SimulatedServer>(folder->path);
        support = std::make_unique<IPMIsupport>();
        result = support->GetFRUInfo();
    }
    std::string Text(Getter getter) {
        char text[64] = {};
        EXPECT_EQ(((*support).*getter)(text), 0);
        return text;
    }
    std::vector<std::string> Board() {
        return {Text(&IPMIsupport::GetBoardManufacturer), Text(&IPMIsupport::GetBoardProductName),
                Text(&IPMIsupport::GetBoardSerialNumber), Text(&IPMIsupport::GetBoardPartNumber)};
    }
    std::vector<std::string> Chassis() {
        return {Text(&IPMIsupport::GetChassisPartNumber),
                Text(&IPMIsupport::GetChassisSerialNumber)};
    }

    // A header with these places, in blocks of eight bytes.
    static std::string Header(char internal, char chassis, char board, char product) {
        return {1, internal, chassis, board, product, 0, 0, 0};
    }
    static std::string Field(const std::string& text) {
        return static_cast<char>(0xC0 | static_cast<int>(text.size())) + text;
    }
    // An area that states this number of blocks.
    static std::string Area(char blocks, const std::string& after) {
        std::string bytes{1, blocks};
        bytes += after + '\xC1';
        bytes.resize((bytes.size() + 8) / 8 * 8);
        return bytes;
    }
    static std::string ChassisArea(char blocks) {
        return Area(blocks, '\x17' + Field("CH-PN") + Field("CH-SN"));
    }
    static std::string BoardArea(char blocks) {
        return Area(blocks, std::string(4, '\0') + Field("Maker") + Field("Board") + Field("B-SN") +
                                Field("B-PN"));
    }

    std::unique_ptr<IPMIsupport> support;
};

TEST_F(InventoryQuirkTest, AreaOffsetsOfZeroGiveEmptyTexts) {
    DescribeInventory(Header(0, 0, 0, 0) + ChassisArea(3));
    EXPECT_EQ(result, 0);
    EXPECT_THAT(Board(), ElementsAre("", "", "", ""));
    EXPECT_THAT(Chassis(), ElementsAre("", ""));
}

// The header is read as an area of as many blocks as its first offset says.
TEST_F(InventoryQuirkTest, AnOffsetOfZeroAfterAnInternalAreaGivesEmptyTextsToo) {
    DescribeInventory(Header(1, 2, 0, 0) + std::string(8, '\0') + ChassisArea(3));
    EXPECT_EQ(result, 0);
    EXPECT_THAT(Board(), ElementsAre("", "", "", ""));
    EXPECT_THAT(Chassis(), ElementsAre("CH-PN", "CH-SN"));
}

TEST_F(InventoryQuirkTest, AnAreaOfNoLengthIsEmptyAndTheOthersAreRead) {
    DescribeInventory(Header(0, 1, 4, 0) + ChassisArea(0) + BoardArea(4));
    EXPECT_EQ(result, 0);
    EXPECT_THAT(Chassis(), ElementsAre("", ""));
    EXPECT_THAT(Board(), ElementsAre("Maker", "Board", "B-SN", "B-PN"));
}

TEST_F(InventoryQuirkTest, AnAreaShorterThanItsFieldsEndsWithZeros) {
    DescribeInventory(Header(0, 0, 1, 0) + BoardArea(2));
    EXPECT_THAT(Board(), ElementsAre("Maker", "Boa", "", ""));
}

TEST_F(InventoryQuirkTest, AnAreaLongerThanTheImageIsReadAsFarAsItGoes) {
    DescribeInventory(Header(0, 0, 1, 0) + BoardArea(30));
    EXPECT_THAT(Board(), ElementsAre("Maker", "Board", "B-SN", "B-PN"));
}

TEST_F(InventoryQuirkTest, AnAreaPastTheImageIsEmpty) {
    DescribeInventory(Header(0, 1, 99, 0) + ChassisArea(3));
    EXPECT_EQ(result, 0);
    EXPECT_THAT(Board(), ElementsAre("", "", "", ""));
    EXPECT_THAT(Chassis(), ElementsAre("CH-PN", "CH-SN"));
}

TEST_F(InventoryQuirkTest, AFieldThatRunsPastItsAreaEndsWithItAndTheNextAreEmpty) {
    DescribeInventory(Header(0, 0, 1, 0) + Area(2, std::string(4, '\0') + "\xFFMaker"));
    EXPECT_THAT(Board(), ElementsAre("Maker\xC1", "", "", ""));
}

TEST_F(InventoryQuirkTest, NoInventoryAtAllGivesEmptyTexts) {
    Describe("");
    support = std::make_unique<IPMIsupport>();
    EXPECT_EQ(support->GetFRUInfo(), 0);
    EXPECT_THAT(Board(), ElementsAre("", "", "", ""));
}

}  // namespace
