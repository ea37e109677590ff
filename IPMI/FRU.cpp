// SPDX-License-Identifier: MIT
//
// Reads the inventory device: its size, the common header and the three areas.

#include "IPMI/FRU.h"

#include <algorithm>
#include <array>

#include "IPMI/FruFormat.h"
#include "IPMI/RequestData.h"
#include "IPMI/Responses.h"
#include "base/Bytes.h"

using namespace talvane;

namespace {

constexpr unsigned char kBmcInventory = 0;  // FRU device ID

// The offset in the response of a byte of the header or the area.
constexpr unsigned InResponse(unsigned offset) {
    return InventoryDataResponse::kData + offset;
}

// Takes the fields of the area in a response one after the other. Works on a copy of the response
// that is followed by zeros, with room for the longest fields that can follow each other.
class FieldReader {
public:
    FieldReader(FRU& fru, ByteView response, unsigned firstField)
        : fru_(fru), position_(InResponse(firstField)) {
        std::copy_n(response.begin(), std::min(response.size(), kMaxResponse), bytes_.begin());
    }

    // Each decodes the next field and moves on to the one after it. False when the field cannot be
    // decoded.
    bool Take(unsigned char language, FRU::_ManufacturerInfo& field) {
        return Take(language, field.typeCode, field.manufacturerBytesLen, field.manufacturer);
    }
    bool Take(unsigned char language, FRU::_ProductNameInfo& field) {
        return Take(language, field.typeCode, field.productNameBytesLen, field.productName);
    }
    bool Take(unsigned char language, FRU::_SerialNumberInfo& field) {
        return Take(language, field.typeCode, field.serialNumberBytesLen, field.serialNumber);
    }
    bool Take(unsigned char language, FRU::_PartNumberInfo& field) {
        return Take(language, field.typeCode, field.PartNumberBytesLen, field.PartNumber);
    }
    // Kept: this text begins with the field's own type/length byte and ends one byte early.
    bool Take(unsigned char language, FRU::_AssetTagInfo& field) {
        return Take(language, field.typeCode, field.AssetTagInfoBytesLen, field.AssetTag, 0);
    }

private:
    // Kept: the decoders are told that a text has room for 256 bytes; it has 64. They stay within
    // it, since a field has at most 63 bytes.
    static constexpr int kDecoderLimit = 256;

    bool Take(unsigned char language, unsigned char& typeCode, int& length, char* text,
              unsigned dataOffset = 1) {
        unsigned char* const field = &bytes_[position_];
        typeCode = static_cast<unsigned char>(*field >> kFruEncodingShift);
        length = *field & kFruLengthBits;
        position_ += 1 + static_cast<unsigned>(length);
        return fru_.DecodeByte(language, typeCode, field + dataOffset, length, text,
                               kDecoderLimit) == 0;
    }

    static constexpr std::size_t kMaxResponse = 256;
    static constexpr std::size_t kMaxFields = 6;
    static constexpr std::size_t kMaxFieldLength = 1 + kFruLengthBits;
    std::array<unsigned char, kMaxResponse + kMaxFields * kMaxFieldLength> bytes_{};
    FRU& fru_;
    unsigned position_;
};

}  // namespace

FRU::FRU() : FRUInfo(), CommomHeaderInfo(), BoardInfo(), ChassisInfo(), ProductInfo() {
    (void)InitIpmiBase();  // result not used: IsInitOK answers whether it worked
}

FRU::~FRU() {}

int FRU::GetFRUInfo() {
    if (GetFRU() != 0 || GetCommonHeaderInfo() != 0) return -1;
    (void)GetBoardInfo();  // results not used: an area that cannot be read keeps its texts
    (void)GetChassisInfo();
    (void)GetProductInfo();
    return 0;
}

int FRU::GetFRU() {
    if (IsInitOK() == 0) return -1;
    const int result = ExchangeUnchecked(STORAGE_CMD, Get_FRU_info, kAnyAddress, {kBmcInventory});
    request = {};
    if (result != 0) return -1;
    FRUInfo.FRUInfoSize = ResponseLe16(InventoryInfoResponse::kSize);
    FRUInfo.accessMode =
        ResponseByte(InventoryInfoResponse::kAccess) & InventoryInfoResponse::kAccessByWords;
    return 0;
}

int FRU::GetCommonHeaderInfo() {
    if (IsInitOK() == 0) return -1;
    constexpr unsigned char kHeaderStart = 0;
    const int result =
        ExchangeUnchecked(STORAGE_CMD, Read_FRU_info, kAnyAddress,
                          {kBmcInventory, kHeaderStart, kHeaderStart, FruHeader::kLength});
    request = {};
    if (result != 0) return -1;

    const auto startOf = [this](unsigned area) {
        return static_cast<unsigned short>(ResponseByte(InResponse(area)) * kFruBlock);
    };
    CommomHeaderInfo.version = ResponseByte(InResponse(FruHeader::kVersion));
    CommomHeaderInfo.internalUseAreaStartOffset = startOf(FruHeader::kInternalUseArea);
    CommomHeaderInfo.chassisInfoAreaStartOffset = startOf(FruHeader::kChassisArea);
    CommomHeaderInfo.boardAreaStartOffset = startOf(FruHeader::kBoardArea);
    CommomHeaderInfo.productInfoAreaStartOffset = startOf(FruHeader::kProductArea);
    CommomHeaderInfo.multiRecordAreaStartOffset = startOf(FruHeader::kMultiRecordArea);
    return 0;
}

// Reads the area at `offset` into the response buffer. Returns -1 when the area has another version
// than 1. Kept: the whole area is asked for in one request, whose count has only one byte. Of an
// area of 256 bytes or more, the request asks for the remainder of the length divided by 256.
int FRU::ReadArea(int offset) {
    if (IsInitOK() == 0) return -1;
    constexpr int kReadLength = 4;
    constexpr int kCount = 3;
    const RequestData read =
        CopyOf({kBmcInventory, LowByte(offset), HighByte(offset), FruArea::kHeadLength});
    int result = Transact(STORAGE_CMD, Read_FRU_info, kAnyAddress, read.get(), kReadLength);
    if (result == 0) {
        read[kCount] = LowByte(AreaLength());
        result = Transact(STORAGE_CMD, Read_FRU_info, kAnyAddress, read.get(), kReadLength);
    }
    request = {};
    return result == 0 && AreaByte(FruArea::kVersion) == FruArea::kCurrentVersion ? 0 : -1;
}

unsigned char FRU::AreaByte(unsigned offset) const {
    return ResponseByte(InResponse(offset));
}

int FRU::AreaLength() const {
    return AreaByte(FruArea::kLength) * kFruBlock;
}

int FRU::GetBoardInfo() {
    if (ReadArea(CommomHeaderInfo.boardAreaStartOffset) != 0) return -1;
    BoardInfo.version = AreaByte(FruArea::kVersion);
    BoardInfo.boardInfoAreaLength = AreaLength();
    BoardInfo.languageCode = AreaByte(FruArea::kLanguage);
    FieldReader area(*this, ByteView(ResponseBuffer, kResponseSize), FruArea::kFirstBoardField);
    const unsigned char language = BoardInfo.languageCode;
    // Serial numbers are English whatever the area's language is.
    const bool decoded = area.Take(language, BoardInfo.ManufacturerInfo) &&
                         area.Take(language, BoardInfo.ProductNameInfo) &&
                         area.Take(kFruEnglishByDefault, BoardInfo.SerialNumberInfo) &&
                         area.Take(language, BoardInfo.PartNumberInfo);
    return EndArea(decoded);
}

int FRU::GetChassisInfo() {
    if (ReadArea(CommomHeaderInfo.chassisInfoAreaStartOffset) != 0) return -1;
    ChassisInfo.version = AreaByte(FruArea::kVersion);
    ChassisInfo.chassisInfoAreaLength = AreaLength();
    ChassisInfo.chassisType = AreaByte(FruArea::kChassisType);
    FieldReader area(*this, ByteView(ResponseBuffer, kResponseSize), FruArea::kFirstField);
    const bool decoded = area.Take(kFruEnglishByDefault, ChassisInfo.PartNumberInfo) &&
                         area.Take(kFruEnglishByDefault, ChassisInfo.SerialNumberInfo);
    return EndArea(decoded);
}

int FRU::GetProductInfo() {
    if (ReadArea(CommomHeaderInfo.productInfoAreaStartOffset) != 0) return -1;
    ProductInfo.version = AreaByte(FruArea::kVersion);
    ProductInfo.productInfoAreaLength = AreaLength();
    ProductInfo.languageCode = AreaByte(FruArea::kLanguage);
    FieldReader area(*this, ByteView(ResponseBuffer, kResponseSize), FruArea::kFirstField);
    const unsigned char language = ProductInfo.languageCode;
    // Kept: the area's fourth field, the product version, is stored as the serial number, and the
    // fifth, the serial number, as the asset tag.
    const bool decoded = area.Take(language, ProductInfo.ManufacturerNameInfo) &&
                         area.Take(language, ProductInfo.ProductNameInfo) &&
                         area.Take(language, ProductInfo.PartModuleInfo) &&
                         area.Take(kFruEnglishByDefault, ProductInfo.SerialNumberInfo) &&
                         area.Take(language, ProductInfo.AssetTagInfo);
    return EndArea(decoded);
}

// When a field could not be decoded, the area stays in the response buffer.
int FRU::EndArea(bool decoded) {
    if (!decoded) return -1;
    ClearResponse();
    return 0;
}
