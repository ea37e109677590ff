// SPDX-License-Identifier: MIT
//
// Inventory fields in 6-bit encoding that would have more characters than their text has room for.
// The decoders are told of room for 256 bytes, so that such a field does not end its area.

#include "InventoryTest.h"

namespace {

class LongSixBitFieldTest : public InventoryTest {
protected:
    // A chassis whose part number has so many bytes in 6-bit encoding.
    int ReadWithLength(std::size_t length) {
        Place(OtherArea(Field(std::string(length, 'x'), 2) + Field("SN")), BoardArea(""),
              OtherArea(""));
        EXPECT_EQ(Fru().GetCommonHeaderInfo(), 0);
        return Fru().GetChassisInfo();
    }
};

TEST_F(LongSixBitFieldTest, OfFortyEightToSixtyThreeBytesIsEmptyAndTheNextFieldIsRead) {
    for (std::size_t length = 47; length <= 63; ++length) {
        SCOPED_TRACE(length);
        EXPECT_EQ(ReadWithLength(length), 0);
        EXPECT_EQ(AskText(&IPMIsupport::GetChassisPartNumber), Terminated(""));
        EXPECT_EQ(AskText(&IPMIsupport::GetChassisSerialNumber), Terminated("SN"));
        EXPECT_EQ(Fru().ChassisInfo.PartNumberInfo.PartNumberBytesLen, static_cast<int>(length));
    }
}

TEST_F(LongSixBitFieldTest, FailsInADecoderThatIsGivenRoomForTheTextOnly) {
    unsigned char source[63] = {};
    char text[64] = {};
    EXPECT_EQ(Fru().Decode6BitASC(source, 47, text, sizeof text), 0);
    EXPECT_EQ(Fru().Decode6BitASC(source, 48, text, sizeof text), -1);
    EXPECT_EQ(Fru().Decode6BitASC(source, 63, text, 85), 0);
    EXPECT_EQ(Fru().Decode6BitASC(source, 63, text, 84), -1);
}

}  // namespace
