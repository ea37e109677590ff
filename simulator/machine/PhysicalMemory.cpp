// SPDX-License-Identifier: MIT
//
// The memory is sparse: a page exists after something was written to it.

#include "simulator/machine/PhysicalMemory.h"

#include <algorithm>
#include <stdexcept>

namespace sim {
namespace {

constexpr std::uint64_t kAddressSpace = std::uint64_t{1} << 32;

}  // namespace

void PhysicalMemory::Resize(std::uint64_t size) {
    if (size > kAddressSpace)
        throw std::out_of_range("a 32-bit machine has at most 4 GiB of memory");
    size_ = size;
}

void PhysicalMemory::Write(std::uint32_t address, std::span<const std::uint8_t> bytes) {
    if (bytes.size() > kAddressSpace - address)
        throw std::out_of_range("bytes run past the end of the 4 GiB address space");
    while (!bytes.empty()) {
        const std::size_t inPage = address % kPageSize;
        const std::size_t count = std::min(bytes.size(), kPageSize - inPage);
        Page& page = pages_[address / kPageSize];
        std::copy_n(bytes.begin(), count, page.begin() + static_cast<std::ptrdiff_t>(inPage));
        bytes = bytes.subspan(count);
        address += static_cast<std::uint32_t>(count);
    }
}

bool PhysicalMemory::Read(std::uint64_t address, std::span<std::uint8_t> out) const {
    if (address > size_ || out.size() > size_ - address) return false;
    std::fill(out.begin(), out.end(), std::uint8_t{0});
    const std::uint64_t end = address + out.size();
    for (auto page = pages_.lower_bound(static_cast<std::uint32_t>(address / kPageSize));
         page != pages_.end(); ++page) {
        const std::uint64_t start = std::uint64_t{page->first} * kPageSize;
        if (start >= end) break;
        const std::uint64_t from = std::max(start, address);
        const std::uint64_t to = std::min(start + kPageSize, end);
        std::copy_n(page->second.begin() + static_cast<std::ptrdiff_t>(from - start), to - from,
                    out.begin() + static_cast<std::ptrdiff_t>(from - address));
    }
    return true;
}

}  // namespace sim
