// SPDX-License-Identifier: MIT
//
// Identity of the BIOS, the system and the base board.

#include "SmBios/SmBios.h"
#include "SmBios/SmBiosText.h"

using namespace talvane;

namespace {

// BIOS information (7.1).
constexpr std::size_t kBiosVendor = 4;
constexpr std::size_t kBiosVersion = 5;
constexpr std::size_t kBiosReleaseDate = 8;

// System information (7.2).
constexpr std::size_t kSystemManufacturer = 4;
constexpr std::size_t kSystemProductName = 5;
constexpr std::size_t kSystemVersion = 6;
constexpr std::size_t kSystemSerialNumber = 7;

// Base board information (7.3).
constexpr std::size_t kBoardManufacturer = 4;
constexpr std::size_t kBoardProduct = 5;
constexpr std::size_t kBoardVersion = 6;
constexpr std::size_t kBoardSerialNumber = 7;
constexpr std::size_t kBoardAssetTag = 8;
constexpr std::size_t kBoardContainedObjects = 14;

}  // namespace

int SmBios::GetBiosVendor(char* buf, unsigned size) {
    return CopyStringAt(ItemAt(TYPE_BIOS_INFO, 1), kBiosVendor, buf, size);
}

int SmBios::GetBiosVersion(char* buf, unsigned size) {
    return CopyStringAt(ItemAt(TYPE_BIOS_INFO, 1), kBiosVersion, buf, size);
}

int SmBios::GetBiosReleaseDate(char* buf, unsigned size) {
    return CopyStringAt(ItemAt(TYPE_BIOS_INFO, 1), kBiosReleaseDate, buf, size);
}

int SmBios::GetSysManufacturer(char* buf, unsigned size) {
    return CopyStringAt(ItemAt(TYPE_SYSTEM_INFO, 1), kSystemManufacturer, buf, size);
}

int SmBios::GetSysProductname(char* buf, unsigned size) {
    return CopyStringAt(ItemAt(TYPE_SYSTEM_INFO, 1), kSystemProductName, buf, size);
}

int SmBios::GetSysVersion(char* buf, unsigned size) {
    return CopyStringAt(ItemAt(TYPE_SYSTEM_INFO, 1), kSystemVersion, buf, size);
}

int SmBios::GetSystemSerialNumber(char* buf, unsigned size) {
    return CopyStringAt(ItemAt(TYPE_SYSTEM_INFO, 1), kSystemSerialNumber, buf, size);
}

// The first board that contains no other objects (blades and the like list them); the only board
// whether it does or not.
SmBios::ItemPtr SmBios::Board() {
    if (ItemAt(TYPE_BASE_BOARD, 2) == nullptr) return ItemAt(TYPE_BASE_BOARD, 1);
    for (int index = 1;; ++index) {
        ItemPtr board = ItemAt(TYPE_BASE_BOARD, index);
        if (board == nullptr || ByteAt(FormattedArea(board), kBoardContainedObjects) == 0)
            return board;
    }
}

int SmBios::GetBoardManufacturer(char* buf, unsigned size) {
    return CopyStringAt(Board(), kBoardManufacturer, buf, size);
}

int SmBios::GetBoardProduct(char* buf, unsigned size) {
    return CopyStringAt(Board(), kBoardProduct, buf, size);
}

int SmBios::GetBoardVersion(char* buf, unsigned size) {
    return CopyStringAt(Board(), kBoardVersion, buf, size);
}

int SmBios::GetBoardSerialNo(char* buf, unsigned size) {
    return CopyStringAt(Board(), kBoardSerialNumber, buf, size);
}

int SmBios::GetBoardAssetTag(char* buf, unsigned size) {
    return CopyStringAt(Board(), kBoardAssetTag, buf, size);
}
