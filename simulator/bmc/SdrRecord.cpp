// SPDX-License-Identifier: MIT
//
// Where the fields of a full sensor record lie.

#include "simulator/bmc/SdrRecord.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace sim {
namespace {

constexpr std::size_t kName = 48;
constexpr std::size_t kLongestName = 16;

std::uint8_t byteOf(unsigned bits) {
    return static_cast<std::uint8_t>(bits & 0xFF);
}

unsigned bitsOf(int value, unsigned width, const char* what) {
    const int limit = 1 << (width - 1);
    if (value < -limit || value >= limit)
        throw std::invalid_argument(std::string(what) + " does not fit " + std::to_string(width) +
                                    " bits: " + std::to_string(value));
    return static_cast<unsigned>(value) & ((1u << width) - 1);
}

}  // namespace

SdrRecord::SdrRecord(std::string_view name, std::uint8_t sensorNumber) : bytes_(kSize) {
    if (name.size() > kLongestName)
        throw std::invalid_argument("the sensor name \"" + std::string(name) +
                                    "\" is longer than " + std::to_string(kLongestName) +
                                    " characters");
    constexpr std::uint8_t kVersion = 0x51;
    constexpr std::uint8_t kFullSensor = 1;
    constexpr std::uint8_t kOwnerBmc = 0x20;
    constexpr std::uint8_t kLatin = 0xC0;
    byte(2, kVersion).byte(3, kFullSensor).byte(4, kSize - kHeaderSize).byte(5, kOwnerBmc);
    byte(7, sensorNumber);
    byte(47, byteOf(kLatin | static_cast<unsigned>(name.size())));
    std::copy(name.begin(), name.end(), bytes_.begin() + kName);
    constexpr std::uint8_t kSystemBoard = 7;
    constexpr std::uint8_t kThreshold = 1;
    entity(kSystemBoard).event(kThreshold).factors(1, 0, 0, 0).limits(0xFF, 0x00);
}

SdrRecord& SdrRecord::kind(std::uint8_t sensorType) {
    return byte(12, sensorType);
}

SdrRecord& SdrRecord::entity(std::uint8_t id, std::uint8_t instance) {
    return byte(8, id).byte(9, instance);
}

SdrRecord& SdrRecord::event(std::uint8_t eventReadingType) {
    return byte(13, eventReadingType);
}

SdrRecord& SdrRecord::unit(std::uint8_t base, std::uint8_t modifier) {
    return byte(21, base).byte(22, modifier);
}

SdrRecord& SdrRecord::unit1(std::uint8_t bits) {
    return byte(20, bits);
}

SdrRecord& SdrRecord::linearization(std::uint8_t code) {
    return byte(23, code);
}

SdrRecord& SdrRecord::factors(int m, int b, int bExponent, int rExponent) {
    const unsigned mBits = bitsOf(m, 10, "M");
    const unsigned bBits = bitsOf(b, 10, "B");
    byte(24, byteOf(mBits)).byte(25, byteOf((mBits >> 8) << 6));
    byte(26, byteOf(bBits)).byte(27, byteOf((bBits >> 8) << 6));
    return byte(29, byteOf((bitsOf(rExponent, 4, "the result exponent") << 4) |
                           bitsOf(bExponent, 4, "the exponent of B")));
}

SdrRecord& SdrRecord::limits(std::uint8_t maximum, std::uint8_t minimum) {
    return byte(34, maximum).byte(35, minimum);
}

SdrRecord& SdrRecord::thresholdMasks(std::uint8_t readable, std::uint8_t settable) {
    return byte(18, readable).byte(19, settable);
}

SdrRecord& SdrRecord::byte(std::size_t offset, std::uint8_t value) {
    bytes_.at(offset) = value;
    return *this;
}

}  // namespace sim
