// SPDX-License-Identifier: MIT
//
// One SMBIOS structure with its string set, copied out of the structure table (SMBIOS 6.1).
#ifndef TALVANE_SMBIOS_BIOSDATAITEM_H
#define TALVANE_SMBIOS_BIOSDATAITEM_H

#include "../Export.h"

// The four bytes that every structure starts with (SMBIOS 6.1.2).
struct HEADER {
    unsigned char type;
    unsigned char length;  // of the formatted area, these four bytes included
    unsigned short handle;
};
static_assert(sizeof(HEADER) == 4, "the memory image of a header");

class TALVANE_EXPORT BiosDataItem {
public:
    // Copies the structure at `structure`.
    // REQUIRES: its formatted area is there, followed by a string set that ends in two zero bytes.
    // Where no memory is left for a copy, GetFormatedData or GetString answers null.
    explicit BiosDataItem(unsigned char* structure);
    ~BiosDataItem();
    BiosDataItem(const BiosDataItem&) = delete;
    BiosDataItem& operator=(const BiosDataItem&) = delete;

    unsigned char GetType();
    unsigned char GetFormatedDataLength();
    unsigned short GetHandle();

    // The formatted area, header included, and one zero byte after it. Owned by the item.
    unsigned char* GetFormatedData();

    // The second of the two zero bytes that end the structure, in the table that it was copied
    // from.
    unsigned char* GetEndAddress();

    // String `index` of the set, counted from 1, as a NUL-terminated text owned by the item. The
    // first two indexes past the last string (three in an empty set) are empty texts. Higher
    // indexes, those above 20 and index 0 answer null. An index below 0 is the first string.
    char* GetString(int index) const;

private:
    HEADER header;
    unsigned char* FormatedData;
    unsigned char* StringBuffer;
    unsigned char* EndAddress;
    unsigned int StringBufferLength;  // up to and including the second ending zero byte
};
static_assert(sizeof(BiosDataItem) == 20, "a header, three pointers and a length");

#endif
