// SPDX-License-Identifier: MIT
//
// Fixture of the PCI tests: a simulated server, functions to put on its bus, and the report.
#ifndef TALVANE_TESTS_PCI_PCITEST_H
#define TALVANE_TESTS_PCI_PCITEST_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>

#include "GetPciInfo.h"
#include "simulator/SimulatedServer.h"

// A configuration header written field by field; an Ethernet controller unless said otherwise.
class PciHeader {
public:
    PciHeader() : bytes_(64, 0) { Id(0x8086, 0x100E).Code(0x02, 0x00, 0x00); }

    PciHeader& Id(std::uint16_t vendor, std::uint16_t device) {
        return Word(0, vendor).Word(2, device);
    }
    PciHeader& Status(std::uint16_t value) { return Word(6, value); }
    PciHeader& Revision(std::uint8_t value) { return Byte(8, value); }
    PciHeader& Code(std::uint8_t classCode, std::uint8_t subClass, std::uint8_t progIf) {
        return Byte(9, progIf).Byte(10, subClass).Byte(11, classCode);
    }
    PciHeader& BaseAddress(std::uint32_t value) {
        return Word(16, static_cast<std::uint16_t>(value))
            .Word(18, static_cast<std::uint16_t>(value >> 16));
    }
    PciHeader& InterruptLine(std::uint8_t value) { return Byte(60, value); }

    PciHeader& Byte(std::size_t offset, std::uint8_t value) {
        bytes_.at(offset) = value;
        return *this;
    }
    PciHeader& Word(std::size_t offset, std::uint16_t value) {
        return Byte(offset, static_cast<std::uint8_t>(value))
            .Byte(offset + 1, static_cast<std::uint8_t>(value >> 8));
    }

    const sim::Bytes& Image() const { return bytes_; }

private:
    sim::Bytes bytes_;
};

class PciTest : public ::testing::Test {
protected:
    void Put(const sim::PciLocation& location, const PciHeader& header = {}) {
        server.GetPci().Set(location, header.Image());
    }

    // This number of functions, from bus 0 on in order.
    void PutMany(unsigned count) {
        for (unsigned i = 0; i < count; ++i) Put({i / 256, i / 8 % 32, i % 8});
    }

    // The record after one report into zeroes.
    const DeviceInformation& Report() {
        record = {};
        EXPECT_EQ(GetPciInfo(&record), 0);
        return record;
    }

    // The entry of the only function.
    const DEV& ReportOf(const PciHeader& header) {
        Put({0, 0, 0}, header);
        EXPECT_EQ(Report().quantity, 1);
        return record.dev[0];
    }

    sim::SimulatedServer server;
    DeviceInformation record{};
};

#endif
