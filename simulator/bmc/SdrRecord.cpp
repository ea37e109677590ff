// SPDX-License-Identifier: MIT
//
// The offsets of the fields in a full sensor record (IPMI 2.0, 43.1).

#include "simulator/bmc/SdrRecord.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace sim {
namespace {

constexpr std::size_t kNameOffset = 48;
constexpr std::size_t kMaxName = 16;

std::uint8_t LowByte(unsigned bits) {
    return static_cast<std::uint8_t>(bits & 0xFF);
}

unsigned SignedBits(int value, unsigned width, const char* what) {
    const int limit = 1 << (width - 1);
    if (value < -limit || value >= limit)
        throw std::invalid_argument(std::string(what) + " does not fit " + std::to_string(width) +
                                    " bits: " + std::to_string(value));
    return static_cast<unsigned>(value) & ((1u << width) - 1);
}

}  // namespace

SdrRecord::SdrRecord(std::string_view name, std::uint8_t sensorNumber) : bytes_(kSize) {
    if (name.size() > kMaxName)
        throw std::invalid_argument("the sensor name \"" + std::string(name) +
                                    "\" is longer than " + std::to_string(kMaxName) +
                                    " characters");
    constexpr std::uint8_t kVersion = 0x51;
    constexpr std::uint8_t kFullSensor = 1;
    constexpr std::uint8_t kOwnerBmc = 0x20;
    constexpr std::uint8_t kLatin = 0xC0;
    Byte(2, kVersion).Byte(3, kFullSensor).Byte(4, kSize - kHeaderSize).Byte(5, kOwnerBmc);
    Byte(7, sensorNumber);
    Byte(47, LowByte(kLatin | static_cast<unsigned>(name.size())));
    std::copy(name.begin(), name.end(), bytes_.begin() + kNameOffset);
    constexpr std::uint8_t kSystemBoard = 7;
    constexpr std::uint8_t kThreshold = 1;
    Entity(kSystemBoard).Event(kThreshold).Factors(1, 0, 0, 0).Limits(0xFF, 0x00);
}

SdrRecord& SdrRecord::Kind(std::uint8_t sensorType) {
    return Byte(12, sensorType);
}

SdrRecord& SdrRecord::Entity(std::uint8_t id, std::uint8_t instance) {
    return Byte(8, id).Byte(9, instance);
}

SdrRecord& SdrRecord::Event(std::uint8_t eventReadingType) {
    return Byte(13, eventReadingType);
}

SdrRecord& SdrRecord::Unit(std::uint8_t base, std::uint8_t modifier) {
    return Byte(21, base).Byte(22, modifier);
}

SdrRecord& SdrRecord::Unit1(std::uint8_t bits) {
    return Byte(20, bits);
}

SdrRecord& SdrRecord::Linearization(std::uint8_t code) {
    return Byte(23, code);
}

SdrRecord& SdrRecord::Factors(int m, int b, int bExponent, int rExponent) {
    const unsigned mBits = SignedBits(m, 10, "M");
    const unsigned bBits = SignedBits(b, 10, "B");
    Byte(24, LowByte(mBits)).Byte(25, LowByte((mBits >> 8) << 6));
    Byte(26, LowByte(bBits)).Byte(27, LowByte((bBits >> 8) << 6));
    return Byte(29, LowByte((SignedBits(rExponent, 4, "the result exponent") << 4) |
                            SignedBits(bExponent, 4, "the exponent of B")));
}

SdrRecord& SdrRecord::Limits(std::uint8_t maximum, std::uint8_t minimum) {
    return Byte(34, maximum).Byte(35, minimum);
}

SdrRecord& SdrRecord::ThresholdMasks(std::uint8_t readable, std::uint8_t settable) {
    return Byte(18, readable).Byte(19, settable);
}

SdrRecord& SdrRecord::Byte(std::size_t offset, std::uint8_t value) {
    bytes_.at(offset) = value;
    return *this;
}

}  // namespace sim
