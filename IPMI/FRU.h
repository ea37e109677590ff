// SPDX-License-Identifier: MIT
//
// The BMC's own inventory (FRU device 0): the board, chassis and product information areas, read
// once and kept as texts ("Platform Management FRU Information Storage Definition" 1.0).
//
// Rules of all operations, unless one says otherwise: they return 0, or -1 when no system interface
// has been found or a pointer is null. Texts are NUL-terminated.
#ifndef TALVANE_IPMI_FRU_H
#define TALVANE_IPMI_FRU_H

#include "../Export.h"
#include "IPMIbase.h"

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"  // see IPMIbase
#endif

class TALVANE_EXPORT FRU : public IPMIbase {
public:
    enum FieldStatus { FIELD_EMPTY = 0, FIELD_END = 1 };

    struct _FRUInfo {
        unsigned short FRUInfoSize;  // bytes
        int accessMode;              // 0: by bytes, 1: by words
    };

    // Offsets in bytes.
    struct _CommomHeaderInfo {
        unsigned char version;
        unsigned short internalUseAreaStartOffset;
        unsigned short chassisInfoAreaStartOffset;
        unsigned short boardAreaStartOffset;
        unsigned short productInfoAreaStartOffset;
        unsigned short multiRecordAreaStartOffset;
    };

    // Fields: the encoding (0 to 3), the length that the area states, the decoded text. A text that
    // fills all 64 bytes is not NUL-terminated.
    struct _ManufacturerInfo {
        unsigned char typeCode;
        int manufacturerBytesLen;
        char manufacturer[64];
    };

    struct _ProductNameInfo {
        unsigned char typeCode;
        int productNameBytesLen;
        char productName[64];
    };

    struct _SerialNumberInfo {
        unsigned char typeCode;
        int serialNumberBytesLen;
        char serialNumber[64];
    };

    struct _PartNumberInfo {
        unsigned char typeCode;
        int PartNumberBytesLen;
        char PartNumber[64];
    };

    struct _ProductVersionInfo {
        unsigned char typeCode;
        int ProductVersionBytesLen;
        char ProductVersion[64];
    };

    struct _AssetTagInfo {
        unsigned char typeCode;
        int AssetTagInfoBytesLen;
        char AssetTag[64];
    };

    struct _BoardInfo {
        unsigned char version;
        int boardInfoAreaLength;  // bytes
        unsigned char languageCode;
        _ManufacturerInfo ManufacturerInfo;
        _ProductNameInfo ProductNameInfo;
        _SerialNumberInfo SerialNumberInfo;
        _PartNumberInfo PartNumberInfo;
    };

    struct _ChassisInfo {
        unsigned char version;
        int chassisInfoAreaLength;
        unsigned char chassisType;
        _PartNumberInfo PartNumberInfo;
        _SerialNumberInfo SerialNumberInfo;
    };

    struct _ProductInfo {
        unsigned char version;
        int productInfoAreaLength;
        unsigned char languageCode;
        _ManufacturerInfo ManufacturerNameInfo;
        _ProductNameInfo ProductNameInfo;
        _PartNumberInfo PartModuleInfo;
        _ProductVersionInfo ProductVersionInfo;  // not filled
        _SerialNumberInfo SerialNumberInfo;      // Kept: filled with the product version
        _AssetTagInfo AssetTagInfo;              // Kept: filled with the serial number
    };

    // Opens the IPMI device unless it is open already.
    FRU();
    ~FRU();

    // Reads everything. The fields of an area that cannot be read or decoded keep their values. A
    // text that is shorter than the one it replaces leaves the end of the old text. Returns -1 when
    // the size of the inventory device or the common header cannot be read.
    int GetFRUInfo();

    // The parts of GetFRUInfo: the size of the inventory device, the common header, and the areas
    // whose offsets the header holds. The areas return -1 for another version than 1.
    int GetFRU();
    int GetCommonHeaderInfo();
    int GetBoardInfo();
    int GetChassisInfo();
    int GetProductInfo();

    // Decoders of the field encodings. They write no NUL and at most destinationLength bytes.
    int CopyBinaryByte(unsigned char* source, int sourceLength, char* destination,
                       int destinationLength);
    int DecodeBCDPLUS(unsigned char* source, int sourceLength, char* destination,
                      int destinationLength);
    // Returns -1 when the destination has no room for four characters for every three bytes of the
    // source, and one more.
    int Decode6BitASC(unsigned char* source, int sourceLength, char* destination,
                      int destinationLength);
    // Languages other than English (0 and 25) have characters of two bytes: an odd last byte is
    // dropped.
    int DecodeASCLatin(unsigned char languageCode, unsigned char* source, int sourceLength,
                       char* destination, int destinationLength);
    // Calls the decoder of the encoding: 0 to 3 in the order above. For any other encoding writes
    // nothing and returns 0.
    int DecodeByte(unsigned char languageCode, unsigned char typeCode, unsigned char* source,
                   int sourceLength, char* destination, int destinationLength);

    // The texts, up to 64 bytes. Empty before GetFRUInfo has read them.
    int GetBoardManufacturer(char* out);
    int GetBoardProductName(char* out);
    int GetBoardSerialNumber(char* out);
    int GetBoardPartNumber(char* out);
    int GetChassisPartNumber(char* out);
    int GetChassisSerialNumber(char* out);
    int GetProductManufacturerName(char* out);
    int GetProductName(char* out);
    int GetProductPartName(char* out);
    int GetProductSerialNumber(char* out);
    int GetProductVersion(char* out);  // always empty
    int GetProductAssetTag(char* out);

private:
    FRU(const FRU&);             // not copyable
    FRU& operator=(const FRU&);  // not assignable

    // Helpers of the operations; not exported. AreaByte and AreaLength (in bytes) are those of the
    // area that ReadArea has read into the response buffer.
    TALVANE_LOCAL int ReadArea(int offset);
    TALVANE_LOCAL unsigned char AreaByte(unsigned offset) const;
    TALVANE_LOCAL int AreaLength() const;
    TALVANE_LOCAL int EndArea(bool decoded);
    TALVANE_LOCAL int CopyField(char (&text)[64], char* out);

    _FRUInfo FRUInfo;
    _CommomHeaderInfo CommomHeaderInfo;
    _BoardInfo BoardInfo;
    _ChassisInfo ChassisInfo;
    _ProductInfo ProductInfo;
};
static_assert(sizeof(FRU::_FRUInfo) == 8, "two bytes of padding");
static_assert(sizeof(FRU::_CommomHeaderInfo) == 12, "one byte of padding");
static_assert(sizeof(FRU::_BoardInfo) == 12 + 4 * 72, "four fields");
static_assert(sizeof(FRU::_ChassisInfo) == 12 + 2 * 72, "two fields");
static_assert(sizeof(FRU::_ProductInfo) == 12 + 6 * 72, "six fields");
static_assert(sizeof(FRU) == 952, "the members above, in this order");

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

#endif
