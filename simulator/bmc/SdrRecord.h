// SPDX-License-Identifier: MIT
//
// Writes a full sensor record (IPMI 2.0, 43.1), field by field. What is not set is zero; a new
// record is a threshold sensor of the system board with readings from 0 to 255 as they are.
//
//     SdrRecord("CPU Temp", 0x30).kind(1).entity(3, 1).unit(1).limits(0x7F, 0x00)
#ifndef TALVANE_SIMULATOR_BMC_SDRRECORD_H
#define TALVANE_SIMULATOR_BMC_SDRRECORD_H

#include <cstdint>
#include <string_view>

#include "simulator/base/Bytes.h"

namespace sim {

class SdrRecord {
public:
    static constexpr std::size_t kSize = 64;
    static constexpr std::size_t kHeaderSize = 5;

    // std::invalid_argument for names of more than 16 characters.
    SdrRecord(std::string_view name, std::uint8_t sensorNumber);

    SdrRecord& Kind(std::uint8_t sensorType);
    SdrRecord& Entity(std::uint8_t id, std::uint8_t instance = 1);
    SdrRecord& Event(std::uint8_t eventReadingType);
    SdrRecord& Unit(std::uint8_t base, std::uint8_t modifier = 0);
    SdrRecord& Unit1(std::uint8_t bits);  // data format, rate, modifier use, percentage
    SdrRecord& Linearization(std::uint8_t code);

    // M and B of 10 bits, exponents of 4, all signed; std::invalid_argument outside of that.
    SdrRecord& Factors(int m, int b, int bExponent, int rExponent);

    SdrRecord& Limits(std::uint8_t maximum, std::uint8_t minimum);

    // The masks in the order of the thresholds: bit 0 lower non-critical to bit 5 upper
    // non-recoverable.
    SdrRecord& ThresholdMasks(std::uint8_t readable, std::uint8_t settable);

    SdrRecord& Byte(std::size_t offset, std::uint8_t value);  // any byte of the record

    const Bytes& Image() const { return bytes_; }

private:
    Bytes bytes_;
};

}  // namespace sim

#endif
