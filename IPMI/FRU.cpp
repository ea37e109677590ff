// SPDX-License-Identifier: MIT
//
// Reading the inventory device: its size, the common header and the three areas.

#include "IPMI/FRU.h"

#include <algorithm>
#include <array>

#include "IPMI/RequestData.h"
#include "base/Bytes.h"

using namespace talvane;

namespace {

constexpr unsigned char kBmcInventory = 0;  // FRU device ID
constexpr int kBlock = 8;                   // areas start and end at multiples of this
constexpr int kHeaderLength = 8;
constexpr int kAreaHead = 2;  // version and length
constexpr unsigned char kAreaVersion = 1;

// Where the fields of the chassis and product areas start: behind version, length and a byte more.
constexpr int kFirstFieldBehindHead = 4;

// Serial numbers and the chassis' texts are English whatever the area's language.
constexpr unsigned char kEnglish = 0;

// A decoder may write as much; a field has at most 63 bytes.
constexpr int kDecoderLimit = 256;

}  // namespace

// Takes the fields of the area in the response buffer one after the other. Works on a copy that is
// long enough for the longest fields that can follow each other; past the response it is zero.
struct FRU::FieldReader {
    FieldReader(FRU& reader, int firstField) : fru(reader), position(firstField) {
        std::copy_n(reader.ResponseBuffer, static_cast<int>(RESPONSE_SIZE), bytes.begin());
    }

    // Each decodes the next field and steps behind it. False when the field cannot be decoded.
    bool Take(unsigned char language, _ManufacturerInfo& field) {
        return Take(language, field.typeCode, field.manufacturerBytesLen, field.manufacturer);
    }
    bool Take(unsigned char language, _ProductNameInfo& field) {
        return Take(language, field.typeCode, field.productNameBytesLen, field.productName);
    }
    bool Take(unsigned char language, _SerialNumberInfo& field) {
        return Take(language, field.typeCode, field.serialNumberBytesLen, field.serialNumber);
    }
    bool Take(unsigned char language, _PartNumberInfo& field) {
        return Take(language, field.typeCode, field.PartNumberBytesLen, field.PartNumber);
    }
    // Kept: this text starts with the field's own type/length byte and ends a byte early.
    bool Take(unsigned char language, _AssetTagInfo& field) {
        return Take(language, field.typeCode, field.AssetTagInfoBytesLen, field.AssetTag, 0);
    }

private:
    bool Take(unsigned char language, unsigned char& typeCode, int& length, char* text,
              int dataOffset = 1) {
        unsigned char* const field = &bytes[static_cast<std::size_t>(position)];
        typeCode = static_cast<unsigned char>(*field >> 6);
        length = *field & 0x3F;
        position += 1 + length;
        return fru.DecodeByte(language, typeCode, field + dataOffset, length, text,
                              kDecoderLimit) == 0;
    }

    static constexpr std::size_t kMostFields = 6;
    static constexpr std::size_t kLongestField = 1 + 63;
    std::array<unsigned char, RESPONSE_SIZE + kMostFields * kLongestField> bytes{};
    FRU& fru;
    int position;
};

FRU::FRU() : FRUInfo(), CommomHeaderInfo(), BoardInfo(), ChassisInfo(), ProductInfo() {
    (void)InitIpmiBase();  // result not used: IsInitOK tells
}

FRU::~FRU() {}

int FRU::GetFRUInfo() {
    if (GetFRU() != 0 || GetCommonHeaderInfo() != 0) return -1;
    (void)GetBoardInfo();  // results not used: an area that is missing has no texts
    (void)GetChassisInfo();
    (void)GetProductInfo();
    return 0;
}

int FRU::GetFRU() {
    if (IsInitOK() == 0) return -1;
    const int result = ExchangeUnchecked(STORAGE_CMD, Get_FRU_info, ANY_ADDRESS, {kBmcInventory});
    request = {};
    if (result != 0) return -1;
    FRUInfo.FRUInfoSize = Le16(ByteView(ResponseBuffer, RESPONSE_SIZE), 0);
    FRUInfo.accessMode = ResponseBuffer[2] & 0x01;
    return 0;
}

int FRU::GetCommonHeaderInfo() {
    if (IsInitOK() == 0) return -1;
    const int result = ExchangeUnchecked(STORAGE_CMD, Read_FRU_info, ANY_ADDRESS,
                                         {kBmcInventory, 0, 0, kHeaderLength});
    request = {};
    if (result != 0) return -1;

    // Behind the count of bytes read.
    const auto offset = [this](int i) {
        return static_cast<unsigned short>(ResponseBuffer[1 + i] * kBlock);
    };
    CommomHeaderInfo.version = ResponseBuffer[1];
    CommomHeaderInfo.internalUseAreaStartOffset = offset(1);
    CommomHeaderInfo.chassisInfoAreaStartOffset = offset(2);
    CommomHeaderInfo.boardAreaStartOffset = offset(3);
    CommomHeaderInfo.productInfoAreaStartOffset = offset(4);
    CommomHeaderInfo.multiRecordAreaStartOffset = offset(5);
    return 0;
}

// Reads the area at `offset` into the response buffer, where it starts at byte 1. Kept: the whole
// area is asked for in one request, whose count has one byte: of an area of 256 bytes or more, what
// is left of its length.
int FRU::ReadArea(int offset) {
    if (IsInitOK() == 0) return -1;
    constexpr int kReadLength = 4;
    const RequestData read = CopyOf({kBmcInventory, LowByte(offset), HighByte(offset), kAreaHead});
    int result = Transact(STORAGE_CMD, Read_FRU_info, ANY_ADDRESS, read.get(), kReadLength);
    if (result == 0) {
        read[kReadLength - 1] = LowByte(ResponseBuffer[2] * kBlock);
        result = Transact(STORAGE_CMD, Read_FRU_info, ANY_ADDRESS, read.get(), kReadLength);
    }
    request = {};
    return result == 0 && ResponseBuffer[1] == kAreaVersion ? 0 : -1;
}

int FRU::GetBoardInfo() {
    if (ReadArea(CommomHeaderInfo.boardAreaStartOffset) != 0) return -1;
    BoardInfo.version = ResponseBuffer[1];
    BoardInfo.boardInfoAreaLength = ResponseBuffer[2] * kBlock;
    BoardInfo.languageCode = ResponseBuffer[3];
    constexpr int kFirstField = 7;  // behind the date of manufacture
    FieldReader area(*this, kFirstField);
    const unsigned char language = BoardInfo.languageCode;
    const bool decoded = area.Take(language, BoardInfo.ManufacturerInfo) &&
                         area.Take(language, BoardInfo.ProductNameInfo) &&
                         area.Take(kEnglish, BoardInfo.SerialNumberInfo) &&
                         area.Take(language, BoardInfo.PartNumberInfo);
    return EndArea(decoded);
}

int FRU::GetChassisInfo() {
    if (ReadArea(CommomHeaderInfo.chassisInfoAreaStartOffset) != 0) return -1;
    ChassisInfo.version = ResponseBuffer[1];
    ChassisInfo.chassisInfoAreaLength = ResponseBuffer[2] * kBlock;
    ChassisInfo.chassisType = ResponseBuffer[3];
    FieldReader area(*this, kFirstFieldBehindHead);
    const bool decoded = area.Take(kEnglish, ChassisInfo.PartNumberInfo) &&
                         area.Take(kEnglish, ChassisInfo.SerialNumberInfo);
    return EndArea(decoded);
}

int FRU::GetProductInfo() {
    if (ReadArea(CommomHeaderInfo.productInfoAreaStartOffset) != 0) return -1;
    ProductInfo.version = ResponseBuffer[1];
    ProductInfo.productInfoAreaLength = ResponseBuffer[2] * kBlock;
    ProductInfo.languageCode = ResponseBuffer[3];
    FieldReader area(*this, kFirstFieldBehindHead);
    const unsigned char language = ProductInfo.languageCode;
    // Kept: the area's fourth field, the product version, goes where the serial number belongs, and
    // the fifth, the serial number, where the asset tag belongs.
    const bool decoded = area.Take(language, ProductInfo.ManufacturerNameInfo) &&
                         area.Take(language, ProductInfo.ProductNameInfo) &&
                         area.Take(language, ProductInfo.PartModuleInfo) &&
                         area.Take(kEnglish, ProductInfo.SerialNumberInfo) &&
                         area.Take(language, ProductInfo.AssetTagInfo);
    return EndArea(decoded);
}

// Leaves the area in the response buffer when a field could not be decoded.
int FRU::EndArea(bool decoded) {
    if (!decoded) return -1;
    ClearResponse();
    return 0;
}
