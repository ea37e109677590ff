// SPDX-License-Identifier: MIT
//
// Copies a structure and finds its strings by their numbers.

#include "SmBios/BiosDataItem.h"

#include <cstring>
#include <new>

#include "SmBios/FreeBuffer.h"
#include "SmBios/StructureWalk.h"

using namespace talvane;

namespace {

constexpr int kMaxStringNumber = 20;

// A copy of `size` bytes with `extra` zero bytes after them, or null.
unsigned char* CopyOf(const unsigned char* from, std::size_t size, std::size_t extra) {
    unsigned char* copy = new (std::nothrow) unsigned char[size + extra]();
    if (copy != nullptr) std::memcpy(copy, from, size);
    return copy;
}

}  // namespace

BiosDataItem::BiosDataItem(unsigned char* structure)
    : header(HeaderOf(structure)),
      FormatedData(CopyOf(structure, header.length, 1)),
      StringBuffer(nullptr),
      EndAddress(nullptr),
      StringBufferLength(0) {
    if (FormatedData == nullptr) return;
    const unsigned char* strings = structure + header.length;
    const std::size_t textLength = static_cast<std::size_t>(EndOfStringSet(structure) - strings);
    EndAddress = structure + header.length + textLength + 1;
    StringBufferLength = static_cast<unsigned>(textLength + kEndOfStringSet);
    // One byte more than the set: the second index past the last string points there.
    StringBuffer = CopyOf(strings, textLength, kEndOfStringSet + 1);
}

BiosDataItem::~BiosDataItem() {
    FreeBuffer(FormatedData);
    FreeBuffer(StringBuffer);
}

unsigned char BiosDataItem::GetType() {
    return header.type;
}

unsigned char BiosDataItem::GetFormatedDataLength() {
    return header.length;
}

unsigned short BiosDataItem::GetHandle() {
    return header.handle;
}

unsigned char* BiosDataItem::GetFormatedData() {
    return FormatedData;
}

unsigned char* BiosDataItem::GetEndAddress() {
    return EndAddress;
}

char* BiosDataItem::GetString(int index) const {
    if (index == 0 || index > kMaxStringNumber || StringBuffer == nullptr) return nullptr;
    char* text = reinterpret_cast<char*>(StringBuffer);
    const char* end = text + StringBufferLength;
    for (int skipped = 1; skipped < index; ++skipped) {
        // Kept: the bound is tested before a string is skipped, but not after the last one, so the
        // first two indexes past the last string are empty texts.
        if (text >= end) return nullptr;
        text += std::strlen(text) + 1;
    }
    return text;
}
