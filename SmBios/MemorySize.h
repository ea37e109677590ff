// SPDX-License-Identifier: MIT
//
// The two encodings of a memory size: that of a memory module (SMBIOS 7.7.2) and that of a memory
// device (7.18.5).
#ifndef TALVANE_SMBIOS_MEMORYSIZE_H
#define TALVANE_SMBIOS_MEMORYSIZE_H

#include <climits>
#include <cstdint>

namespace talvane {

// Installed size byte of a module: a power of two of megabytes, or one of three codes for no size.
class ModuleSize {
public:
    constexpr explicit ModuleSize(std::uint8_t installedSize)
        : exponent_(installedSize & kExponentBits) {}

    constexpr bool IsKnown() const { return exponent_ < kNoSize; }

    // A size that does not fit is the lowest integer, as a processor answers such a conversion.
    constexpr int Megabytes() const { return exponent_ < kIntBits ? 1 << exponent_ : INT_MIN; }

private:
    static constexpr int kExponentBits = 0x7F;
    static constexpr int kNoSize = 125;  // not determinable, not enabled, not installed
    static constexpr int kIntBits = 31;

    int exponent_;
};

// Size word of a device: megabytes, or kilobytes when the top bit is set.
class DeviceSize {
public:
    constexpr explicit DeviceSize(std::uint16_t word) : word_(word) {}

    constexpr bool IsEmptySocket() const { return word_ == kEmptySocket; }
    constexpr bool IsUnknown() const { return word_ == kUnknown; }
    constexpr bool HasNumber() const { return Number() != 0; }
    constexpr int Number() const { return word_ & kNumberBits; }
    constexpr bool IsKilobytes() const { return (word_ & kKilobyteBit) != 0; }

    // Kept: the kilobyte bit is shifted with the number, so a device in kilobytes counts 32 too
    // many.
    constexpr int Megabytes() const {
        if (IsUnknown() || !HasNumber()) return 0;
        return IsKilobytes() ? word_ >> kKilobyteShift : word_;
    }

private:
    static constexpr int kEmptySocket = 0;
    static constexpr int kUnknown = 0xFFFF;
    static constexpr int kKilobyteBit = 0x8000;
    static constexpr int kNumberBits = 0x7FFF;
    static constexpr int kKilobyteShift = 10;

    std::uint16_t word_;
};

}  // namespace talvane

#endif
