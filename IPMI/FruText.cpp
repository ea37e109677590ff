// SPDX-License-Identifier: MIT
//
// The decoders of the field encodings, and the getters of the decoded texts.

#include <algorithm>
#include <array>
#include <cstring>

#include "IPMI/FRU.h"
#include "IPMI/FruFormat.h"

using namespace talvane;

int FRU::CopyBinaryByte(unsigned char* source, int sourceLength, char* destination,
                        int destinationLength) {
    if (source == nullptr || destination == nullptr) return -1;
    const int length = std::max(std::min(sourceLength, destinationLength), 0);
    std::memcpy(destination, source, static_cast<std::size_t>(length));
    return 0;
}

// Kept: packed digits are not unpacked. A byte below 10 and a byte from 0x0F on are copied, the
// others become 0.
int FRU::DecodeBCDPLUS(unsigned char* source, int sourceLength, char* destination,
                       int destinationLength) {
    if (source == nullptr || destination == nullptr) return -1;
    const int length = std::min(sourceLength, destinationLength);
    for (int i = 0; i < length; ++i) {
        const bool isNoDigit = source[i] > 9 && source[i] < 0x0F;
        destination[i] = isNoDigit ? '\0' : static_cast<char>(source[i]);
    }
    return 0;
}

// Kept: a source of three bytes or more, and so every real text, writes nothing. The second
// character mixes in the first byte.
int FRU::Decode6BitASC(unsigned char* source, int sourceLength, char* destination,
                       int destinationLength) {
    if (source == nullptr || destination == nullptr) return -1;
    if (destinationLength < sourceLength / 3 * 4 + 1) return -1;
    if (sourceLength > 2) return 0;

    std::array<int, 3> group{};
    for (int i = 0; i < sourceLength; ++i) group[static_cast<std::size_t>(i)] = source[i];
    const auto [b0, b1, b2] = group;
    constexpr int kFirstCharacter = 0x20;
    const std::array<int, 4> text{b0 & 0x3F, ((b1 * 4) & 0x3C) | (b0 & 0x3F),
                                  ((b2 * 16) & 0x30) | (b1 >> 4), b2 >> 2};
    const int length = std::min(static_cast<int>(text.size()), destinationLength);
    for (int i = 0; i < length; ++i)
        destination[i] = static_cast<char>(text[static_cast<std::size_t>(i)] + kFirstCharacter);
    return 0;
}

int FRU::DecodeASCLatin(unsigned char languageCode, unsigned char* source, int sourceLength,
                        char* destination, int destinationLength) {
    if (source == nullptr || destination == nullptr) return -1;
    int length = std::max(std::min(sourceLength, destinationLength), 0);
    if (languageCode != kFruEnglishByDefault && languageCode != kFruEnglish) length -= length % 2;
    std::memcpy(destination, source, static_cast<std::size_t>(length));
    return 0;
}

int FRU::DecodeByte(unsigned char languageCode, unsigned char typeCode, unsigned char* source,
                    int sourceLength, char* destination, int destinationLength) {
    switch (typeCode) {
        case kFruBinary:
            return CopyBinaryByte(source, sourceLength, destination, destinationLength);
        case kFruBcdPlus:
            return DecodeBCDPLUS(source, sourceLength, destination, destinationLength);
        case kFruSixBit:
            return Decode6BitASC(source, sourceLength, destination, destinationLength);
        case kFruLatin:
            return DecodeASCLatin(languageCode, source, sourceLength, destination,
                                  destinationLength);
        default:
            return 0;
    }
}

int FRU::CopyField(char (&text)[64], char* out) {
    if (out == nullptr) return -1;
    const char* const end = std::find(text, text + sizeof text, '\0');
    return IpmiSrtringCopy(out, text, sizeof text, static_cast<int>(end - text)) == 0 ? 0 : -1;
}

int FRU::GetBoardManufacturer(char* out) {
    return CopyField(BoardInfo.ManufacturerInfo.manufacturer, out);
}

int FRU::GetBoardProductName(char* out) {
    return CopyField(BoardInfo.ProductNameInfo.productName, out);
}

int FRU::GetBoardSerialNumber(char* out) {
    return CopyField(BoardInfo.SerialNumberInfo.serialNumber, out);
}

int FRU::GetBoardPartNumber(char* out) {
    return CopyField(BoardInfo.PartNumberInfo.PartNumber, out);
}

int FRU::GetChassisPartNumber(char* out) {
    return CopyField(ChassisInfo.PartNumberInfo.PartNumber, out);
}

int FRU::GetChassisSerialNumber(char* out) {
    return CopyField(ChassisInfo.SerialNumberInfo.serialNumber, out);
}

int FRU::GetProductManufacturerName(char* out) {
    return CopyField(ProductInfo.ManufacturerNameInfo.manufacturer, out);
}

int FRU::GetProductName(char* out) {
    return CopyField(ProductInfo.ProductNameInfo.productName, out);
}

int FRU::GetProductPartName(char* out) {
    return CopyField(ProductInfo.PartModuleInfo.PartNumber, out);
}

int FRU::GetProductSerialNumber(char* out) {
    return CopyField(ProductInfo.SerialNumberInfo.serialNumber, out);
}

int FRU::GetProductVersion(char* out) {
    return CopyField(ProductInfo.ProductVersionInfo.ProductVersion, out);
}

int FRU::GetProductAssetTag(char* out) {
    return CopyField(ProductInfo.AssetTagInfo.AssetTag, out);
}
