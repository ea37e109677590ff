// SPDX-License-Identifier: MIT
//
// Bytes, strings and text answers of the getters.

#include "SmBios/SmBiosText.h"

#include <algorithm>
#include <cstring>

#include "SmBios/SmBios.h"

namespace talvane {

ByteView FormattedArea(const std::unique_ptr<BiosDataItem>& item) {
    if (item == nullptr || item->GetFormatedData() == nullptr) return {};
    return ByteView(item->GetFormatedData(), item->GetFormatedDataLength());
}

char* StringAt(const std::unique_ptr<BiosDataItem>& item, std::size_t offset) {
    return item == nullptr ? nullptr : item->GetString(ByteAt(FormattedArea(item), offset));
}

int CopyText(const char* text, char* buf, unsigned size) {
    if (text == nullptr) return -1;
    if (size != 0) std::memcpy(buf, text, std::min<std::size_t>(std::strlen(text), size - 1));
    return 0;
}

int CopyStringAt(const std::unique_ptr<BiosDataItem>& item, std::size_t offset, char* buf,
                 unsigned size) {
    return CopyText(StringAt(item, offset), buf, size);
}

void WriteNumber(char* buf, int value, const char* unit) {
    constexpr int kDecimal = 10;
    itoa(value, buf, kDecimal);
    std::strcat(buf, unit);
}

int WriteUnknown(char* buf) {
    std::strcpy(buf, "Unknown");
    return -1;
}

int WriteNotSupplied(char* buf) {
    std::strcpy(buf, "SmBios can not supply this information");
    return -1;
}

}  // namespace talvane
