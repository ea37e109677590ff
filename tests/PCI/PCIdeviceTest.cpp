// SPDX-License-Identifier: MIT
//
// The record of one function: the accessors and the two ways to fill it.
#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "PCI/PCIdevice.h"
#include "support/FieldTable.h"

namespace {

// Every byte is 0x80 plus its offset.
std::array<char, 64> Image() {
    std::array<char, 64> image;
    for (std::size_t i = 0; i < image.size(); ++i) image[i] = static_cast<char>(0x80 + i);
    return image;
}

void ExpectFieldsOfImage(PCIdevice& device) {
    ExpectNumbers({
        {"getVendorID()", device.getVendorID(), 0x8180},
        {"header.DeviceID", device.header.DeviceID, 0x8382},
        {"header.Command", device.header.Command, 0x8584},
        {"getStatus()", device.getStatus(), 0x8786},
        {"getRevisionID()", device.getRevisionID(), 0x88},
        {"getProgIF()", device.getProgIF(), 0x89},
        {"getSubClassCode()", device.getSubClassCode(), 0x8A},
        {"getClassCode()", device.getClassCode(), 0x8B},
        {"header.CLS", device.header.CLS, 0x8C},
        {"header.latency", device.header.latency, 0x8D},
        {"header.HeaderType", device.header.HeaderType, 0x8E},
        {"header.BIST", device.header.BIST, 0x8F},
        {"header.BaseAddress[0]", device.header.BaseAddress[0], 0x93929190u},
        {"header.BaseAddress[5]", device.header.BaseAddress[5], 0xA7A6A5A4u},
        {"header.Reserved1[0]", device.header.Reserved1[0], 0xABAAA9A8u},
        {"header.ROMBase", device.header.ROMBase, 0xB3B2B1B0u},
        {"header.Reserved2[1]", device.header.Reserved2[1], 0xBBBAB9B8u},
        {"getIntLine()", device.getIntLine(), 0xBC},
        {"header.INTPin", device.header.INTPin, 0xBD},
        {"header.Minlat", device.header.Minlat, 0xBE},
        {"header.MaxLat", device.header.MaxLat, 0xBF},
    });
}

TEST(PciDeviceTest, AssignmentCopiesSixtyFourBytesAndKeepsTheLocation) {
    PCIdevice device;
    device.setBusNo(1);
    device.setDevNo(2);
    device.setFuncNo(3);
    device = Image().data();
    ExpectFieldsOfImage(device);
    EXPECT_EQ(device.getBusNo(), 1);
    EXPECT_EQ(device.getDevNo(), 2);
    EXPECT_EQ(device.getFuncNo(), 3);
}

TEST(PciDeviceTest, IsMadeFromAHeader) {
    _HEADER header;
    std::memcpy(&header, Image().data(), sizeof header);
    PCIdevice device(&header);
    ExpectFieldsOfImage(device);
    EXPECT_EQ(device.getBusNo(), 0);
    EXPECT_EQ(device.getDevNo(), 0);
    EXPECT_EQ(device.getFuncNo(), 0);
}

TEST(PciDeviceTest, NewOneIsAllZero) {
    PCIdevice device;
    const PCIdevice zero = {};
    EXPECT_EQ(device.getVendorID(), 0);
    EXPECT_EQ(device.getBusNo(), 0);
    EXPECT_EQ(std::memcmp(&device, &zero, sizeof device), 0);
}

TEST(PciDeviceTest, LocationIsSetAndReadField) {
    PCIdevice device;
    device.setBusNo(10);
    device.setDevNo(31);
    device.setFuncNo(7);
    EXPECT_EQ(device.bus, 10);
    EXPECT_EQ(device.dev, 31);
    EXPECT_EQ(device.func, 7);
}

}  // namespace
