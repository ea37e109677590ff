// SPDX-License-Identifier: MIT
//
// The two encodings of a memory size: of a memory module (7.7.2) and of a memory device (7.18.5).
#ifndef TALVANE_SMBIOS_MEMORYSIZE_H
#define TALVANE_SMBIOS_MEMORYSIZE_H

#include <climits>
#include <cstdint>

// Installed size byte of a module: a power of two of megabytes, or one of three codes for no size.
class ModuleSize {
public:
    constexpr explicit ModuleSize(std::uint8_t installedSize) : exponent(installedSize & 0x7F) {}

    constexpr bool IsKnown() const { return exponent < kNoSize; }

    // Sizes that do not fit are the integer a processor answers for such a conversion.
    constexpr int Megabytes() const { return exponent < 31 ? 1 << exponent : INT_MIN; }

private:
    static constexpr int kNoSize = 125;  // not determinable, not enabled, not installed

    int exponent;
};

// Size word of a device: megabytes, or kilobytes when the top bit is set.
class DeviceSize {
public:
    constexpr explicit DeviceSize(std::uint16_t word) : size(word) {}

    constexpr bool IsEmptySocket() const { return size == 0; }
    constexpr bool IsUnknown() const { return size == 0xFFFF; }
    constexpr bool HasNumber() const { return Number() != 0; }
    constexpr int Number() const { return size & 0x7FFF; }
    constexpr bool IsKilobytes() const { return (size & 0x8000) != 0; }

    // Kept: the kilobyte bit is shifted with the size, so a device in kilobytes counts 32 too many.
    constexpr int Megabytes() const {
        if (IsUnknown() || !HasNumber()) return 0;
        return IsKilobytes() ? size >> 10 : size;
    }

private:
    std::uint16_t size;
};

#endif
