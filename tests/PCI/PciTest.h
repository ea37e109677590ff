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
    PciHeader() : bytes_(64, 0) { id(0x8086, 0x100E).code(0x02, 0x00, 0x00); }

    PciHeader& id(std::uint16_t vendor, std::uint16_t device) {
        return word(0, vendor).word(2, device);
    }
    PciHeader& status(std::uint16_t value) { return word(6, value); }
    PciHeader& revision(std::uint8_t value) { return byte(8, value); }
    PciHeader& code(std::uint8_t classCode, std::uint8_t subClass, std::uint8_t progIf) {
        return byte(9, progIf).byte(10, subClass).byte(11, classCode);
    }
    PciHeader& baseAddress(std::uint32_t value) {
        return word(16, static_cast<std::uint16_t>(value))
            .word(18, static_cast<std::uint16_t>(value >> 16));
    }
    PciHeader& interruptLine(std::uint8_t value) { return byte(60, value); }

    PciHeader& byte(std::size_t offset, std::uint8_t value) {
        bytes_.at(offset) = value;
        return *this;
    }
    PciHeader& word(std::size_t offset, std::uint16_t value) {
        return byte(offset, static_cast<std::uint8_t>(value))
            .byte(offset + 1, static_cast<std::uint8_t>(value >> 8));
    }

    const sim::Bytes& bytes() const { return bytes_; }

private:
    sim::Bytes bytes_;
};

class PciTest : public ::testing::Test {
protected:
    void Put(const sim::PciLocation& location, const PciHeader& header = {}) {
        server.pci().set(location, header.bytes());
    }

    // So many functions, from bus 0 on as they come.
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
