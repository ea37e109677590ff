// SPDX-License-Identifier: MIT
//
// The checksum of a header.

#include "archive/TarHeader.h"

namespace archive {

unsigned TarChecksum(std::span<const std::uint8_t> header) {
    unsigned sum = 0;
    for (std::size_t i = 0; i < kTarBlock; ++i) {
        const bool isChecksum = i >= kTarChecksum.at && i < kTarChecksum.at + kTarChecksum.size;
        sum += isChecksum ? ' ' : header[i];
    }
    return sum;
}

}  // namespace archive
