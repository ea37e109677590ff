// SPDX-License-Identifier: MIT
//
// Only a write of a double word to the address register's port selects a register. Other accesses
// to these ports would belong to other devices, of which there are none.

#include "simulator/machine/PciBus.h"

#include <cstdio>
#include <stdexcept>

namespace sim {
namespace {

constexpr std::uint16_t kAddressPort = 0xCF8;
constexpr std::uint16_t kDataPort = 0xCFC;
constexpr std::uint32_t kEnable = 0x80000000;
constexpr std::uint32_t kKeptBits = 0x80FFFFFC;  // the others read as zero

}  // namespace

std::string PciLocation::Text() const {
    char text[24];
    (void)std::snprintf(text, sizeof text, "%02x:%02x.%x", bus, device, function);
    return text;
}

void PciBus::Set(const PciLocation& location, Bytes configuration) {
    if (location.bus > 255 || location.device > 31 || location.function > 7)
        throw std::invalid_argument("there is no PCI location " + location.Text());
    if (configuration.size() > kConfigurationSize)
        throw std::invalid_argument("a PCI function has 256 bytes of configuration space");
    functions_.insert_or_assign(location, std::move(configuration));
}

const Bytes* PciBus::Selected() const {
    if ((address_ & kEnable) == 0) return nullptr;
    const PciLocation location = {(address_ >> 16) & 0xFF, (address_ >> 11) & 0x1F,
                                  (address_ >> 8) & 0x07};
    const auto function = functions_.find(location);
    return function != functions_.end() ? &function->second : nullptr;
}

std::uint32_t PciBus::In(std::uint16_t port, unsigned width) {
    if (port == kAddressPort && width == 4) return address_;
    const Bytes* const function = Selected();
    std::uint32_t value = 0;
    for (unsigned i = 0; i < width; ++i) {
        std::uint8_t byte = 0xFF;
        if (const unsigned at = port + i; function != nullptr && at >= kDataPort) {
            const std::size_t offset = (address_ & 0xFC) + (at - kDataPort);
            byte = offset < function->size() ? (*function)[offset] : std::uint8_t{0};
        }
        value |= std::uint32_t{byte} << (8 * i);
    }
    return value;
}

void PciBus::Out(std::uint16_t port, unsigned width, std::uint32_t value) {
    if (port == kAddressPort && width == 4) address_ = value & kKeptBits;
}

}  // namespace sim
