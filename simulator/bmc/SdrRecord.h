// SPDX-License-Identifier: MIT
//
// Writes a full sensor record (IPMI 2.0, 43.1), field by field. A new record is a threshold sensor
// of the system board whose readings 0 to 255 need no conversion; every other field is zero.
//
//     SdrRecord("CPU Temp", 0x30).Kind(1).Entity(3, 1).Unit(1).Limits(0x7F, 0x00)
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

    // M and B have 10 bits, the exponents 4, all signed; std::invalid_argument for other values.
    SdrRecord& Factors(int m, int b, int bExponent, int rExponent);

    SdrRecord& Limits(std::uint8_t maximum, std::uint8_t minimum);

    // Bit 0 of a mask is the lower non-critical threshold, bit 5 the upper non-recoverable one.
    SdrRecord& ThresholdMasks(std::uint8_t readable, std::uint8_t settable);

    SdrRecord& Byte(std::size_t offset, std::uint8_t value);  // any byte of the record

    // The whole record, as Get SDR returns it.
    const Bytes& Image() const { return bytes_; }

private:
    Bytes bytes_;
};

}  // namespace sim

#endif
