// SPDX-License-Identifier: MIT
//
// Identity of the BIOS, the system and the base board.

#include "SmBios/SmBios.h"
#include "SmBios/SmBiosText.h"

using namespace talvane;

namespace {

// Offsets in the structures of BIOS (SMBIOS 7.1), system (7.2) and base board (7.3). All but the
// last are strings.
namespace bios_information {
constexpr std::size_t kVendor = 4;
constexpr std::size_t kVersion = 5;
constexpr std::size_t kReleaseDate = 8;
}  // namespace bios_information

namespace system_information {
constexpr std::size_t kManufacturer = 4;
constexpr std::size_t kProductName = 5;
constexpr std::size_t kVersion = 6;
constexpr std::size_t kSerialNumber = 7;
}  // namespace system_information

namespace base_board {
constexpr std::size_t kManufacturer = 4;
constexpr std::size_t kProduct = 5;
constexpr std::size_t kVersion = 6;
constexpr std::size_t kSerialNumber = 7;
constexpr std::size_t kAssetTag = 8;
constexpr std::size_t kContainedObjects = 14;
}  // namespace base_board

}  // namespace

int SmBios::GetBiosVendor(char* buf, unsigned size) {
    return CopyStringAt(ItemAt(TYPE_BIOS_INFO, 1), bios_information::kVendor, buf, size);
}

int SmBios::GetBiosVersion(char* buf, unsigned size) {
    return CopyStringAt(ItemAt(TYPE_BIOS_INFO, 1), bios_information::kVersion, buf, size);
}

int SmBios::GetBiosReleaseDate(char* buf, unsigned size) {
    return CopyStringAt(ItemAt(TYPE_BIOS_INFO, 1), bios_information::kReleaseDate, buf, size);
}

int SmBios::GetSysManufacturer(char* buf, unsigned size) {
    return CopyStringAt(ItemAt(TYPE_SYSTEM_INFO, 1), system_information::kManufacturer, buf, size);
}

int SmBios::GetSysProductname(char* buf, unsigned size) {
    return CopyStringAt(ItemAt(TYPE_SYSTEM_INFO, 1), system_information::kProductName, buf, size);
}

int SmBios::GetSysVersion(char* buf, unsigned size) {
    return CopyStringAt(ItemAt(TYPE_SYSTEM_INFO, 1), system_information::kVersion, buf, size);
}

int SmBios::GetSystemSerialNumber(char* buf, unsigned size) {
    return CopyStringAt(ItemAt(TYPE_SYSTEM_INFO, 1), system_information::kSerialNumber, buf, size);
}

// Of several boards the first one that contains no other objects (blades and the like list them).
// An only board counts whether it contains others or not.
SmBios::ItemPtr SmBios::Board() {
    if (ItemAt(TYPE_BASE_BOARD, 2) == nullptr) return ItemAt(TYPE_BASE_BOARD, 1);
    for (int index = 1;; ++index) {
        ItemPtr board = ItemAt(TYPE_BASE_BOARD, index);
        if (board == nullptr || ByteAt(FormattedArea(board), base_board::kContainedObjects) == 0)
            return board;
    }
}

int SmBios::GetBoardManufacturer(char* buf, unsigned size) {
    return CopyStringAt(Board(), base_board::kManufacturer, buf, size);
}

int SmBios::GetBoardProduct(char* buf, unsigned size) {
    return CopyStringAt(Board(), base_board::kProduct, buf, size);
}

int SmBios::GetBoardVersion(char* buf, unsigned size) {
    return CopyStringAt(Board(), base_board::kVersion, buf, size);
}

int SmBios::GetBoardSerialNo(char* buf, unsigned size) {
    return CopyStringAt(Board(), base_board::kSerialNumber, buf, size);
}

int SmBios::GetBoardAssetTag(char* buf, unsigned size) {
    return CopyStringAt(Board(), base_board::kAssetTag, buf, size);
}
