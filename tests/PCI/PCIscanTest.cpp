// SPDX-License-Identifier: MIT
//
// The configuration scan: which addresses it writes, which functions it finds, and where it ends.
#include <sys/io.h>

#include <cstring>

#include "PCI/PCIscan.h"
#include "PCI/PciTest.h"

namespace {

using ::testing::ElementsAre;

class PCIscanTest : public PciTest {
protected:
    PCIscanTest() {
        EXPECT_EQ(iopl(3), 0);
        scan.m_InitOK = 1;
        server.GetLog().Clear();
    }

    std::vector<std::string> Locations() {
        std::vector<std::string> texts;
        for (PCIdevice& function : functions)
            texts.push_back(sim::PciLocation{static_cast<unsigned>(function.getBusNo()),
                                             static_cast<unsigned>(function.getDevNo()),
                                             static_cast<unsigned>(function.getFuncNo())}
                                .Text());
        return texts;
    }

    PCIscan scan;
    std::list<PCIdevice> functions;
};

TEST_F(PCIscanTest, NewScanHasNoPortAccessAndTouchesNothing) {
    const PCIscan fresh;
    EXPECT_EQ(fresh.m_InitOK, 0);
    EXPECT_EQ(fresh.m_RetrieveFunction, 0);
    EXPECT_EQ(fresh.m_ConfigAddress, 0xCF8u);
    EXPECT_EQ(fresh.m_DataAddress, 0xCFCu);
    EXPECT_THAT(server.GetLog().Lines(), ElementsAre());
}

TEST_F(PCIscanTest, IsInitOkIsTheField) {
    EXPECT_EQ(scan.isInitOK(), 1);
    scan.m_InitOK = 0;
    EXPECT_EQ(scan.isInitOK(), 0);
}

TEST_F(PCIscanTest, AddressWordHoldsEnableBusDeviceFunctionAndRegister) {
    EXPECT_EQ(scan.makeAddress(0, 0, 0, 0), 0x80000000u);
    EXPECT_EQ(scan.makeAddress(1, 0, 0, 0), 0x80010000u);
    EXPECT_EQ(scan.makeAddress(0, 1, 0, 0), 0x80000800u);
    EXPECT_EQ(scan.makeAddress(0, 0, 1, 0), 0x80000100u);
    EXPECT_EQ(scan.makeAddress(0, 0, 0, 0x3C), 0x8000003Cu);
    EXPECT_EQ(scan.makeAddress(255, 31, 7, 0xFC), 0x80FFFFFCu);
}

TEST_F(PCIscanTest, HeaderIsReadInSixteenDoubleWordsInOrder) {
    Put({3, 5, 1});
    EXPECT_EQ(scan.readPCIheader(3, 5, 1), 0);

    const std::vector<std::string> lines = server.GetLog().Lines();
    ASSERT_EQ(lines.size(), 32u);
    EXPECT_EQ(lines[0], "out 0xCF8 4 0x80032900 -> ok");
    EXPECT_EQ(lines[1], "in 0xCFC 4 -> 0x100E8086");
    EXPECT_EQ(lines[2], "out 0xCF8 4 0x80032904 -> ok");
    EXPECT_EQ(lines[30], "out 0xCF8 4 0x8003293C -> ok");
    EXPECT_EQ(lines[31], "in 0xCFC 4 -> 0x0");
}

TEST_F(PCIscanTest, HeaderHoldsEveryByteOfTheFunction) {
    PciHeader header;
    for (std::size_t i = 0; i < 64; ++i) header.Byte(i, static_cast<std::uint8_t>(0x40 + i));
    Put({2, 3, 4}, header);
    ASSERT_EQ(scan.readPCIheader(2, 3, 4), 0);
    EXPECT_EQ(std::memcmp(&scan.m_dev.header, header.Image().data(), 64), 0);
    EXPECT_EQ(scan.m_dev.getBusNo(), 2);
    EXPECT_EQ(scan.m_dev.getDevNo(), 3);
    EXPECT_EQ(scan.m_dev.getFuncNo(), 4);
}

TEST_F(PCIscanTest, AbsentFunctionKeepsTheLocationAndOverwritesTheHeader) {
    Put({2, 3, 4});
    ASSERT_EQ(scan.readPCIheader(2, 3, 4), 0);
    EXPECT_EQ(scan.readPCIheader(0, 0, 0), -1);
    EXPECT_EQ(scan.m_dev.getVendorID(), 0xFFFF);
    EXPECT_EQ(scan.m_dev.header.MaxLat, 0xFF);
    EXPECT_EQ(scan.m_dev.getBusNo(), 2);
    EXPECT_EQ(scan.m_dev.getDevNo(), 3);
    EXPECT_EQ(scan.m_dev.getFuncNo(), 4);
}

TEST_F(PCIscanTest, AbsentFunctionIsReadInSixteenDoubleWordsToo) {
    EXPECT_EQ(scan.readPCIheader(0, 0, 0), -1);
    EXPECT_EQ(server.GetLog().Count("out"), 16u);
    EXPECT_EQ(server.GetLog().Count("in"), 16u);
}

TEST_F(PCIscanTest, VendorOfAllZerosIsAnAbsentFunction) {
    Put({0, 0, 0}, PciHeader().Id(0x0000, 0x1234));
    EXPECT_EQ(scan.readPCIheader(0, 0, 0), -1);
    EXPECT_EQ(scan.m_dev.header.DeviceID, 0x1234);
    EXPECT_EQ(scan.getAllDevice(functions), 0);
    EXPECT_THAT(Locations(), ElementsAre());
}

TEST_F(PCIscanTest, VendorsNextToTheAbsentOnesAnswer) {
    Put({0, 0, 0}, PciHeader().Id(0x0001, 0));
    Put({0, 0, 1}, PciHeader().Id(0xFFFE, 0));
    EXPECT_EQ(scan.readPCIheader(0, 0, 0), 0);
    EXPECT_EQ(scan.readPCIheader(0, 0, 1), 0);
}

TEST_F(PCIscanTest, WithoutPortAccessEverythingReadsAllOnesAndNoPortIsTouched) {
    Put({0, 0, 0});
    scan.m_InitOK = 0;
    EXPECT_EQ(scan.readPCIDeviceRegister(0, 0, 0, 0), 0xFFFFFFFFu);
    EXPECT_EQ(scan.readPCIheader(0, 0, 0), -1);
    EXPECT_EQ(scan.getAllDevice(functions), 0);
    EXPECT_THAT(functions, ElementsAre());
    EXPECT_THAT(server.GetLog().Lines(), ElementsAre());
}

TEST_F(PCIscanTest, PortsAreTheFieldsOfTheScan) {
    scan.m_ConfigAddress = scan.m_DataAddress = 0xCFC;
    (void)scan.readPCIDeviceRegister(0, 0, 0, 0);
    EXPECT_THAT(server.GetLog().Lines(),
                ElementsAre("out 0xCFC 4 0x80000000 -> ok", "in 0xCFC 4 -> 0xFFFFFFFF"));
}

TEST_F(PCIscanTest, FunctionsAreListedByBusThenDeviceThenFunction) {
    for (const sim::PciLocation& at :
         {sim::PciLocation{1, 0, 0}, {0, 31, 7}, {0, 2, 0}, {0, 0, 5}, {10, 0, 0}, {0, 0, 2}})
        Put(at);
    EXPECT_EQ(scan.getAllDevice(functions), 0);
    EXPECT_THAT(Locations(),
                ElementsAre("00:00.2", "00:00.5", "00:02.0", "00:1f.7", "01:00.0", "0a:00.0"));
}

TEST_F(PCIscanTest, FunctionsOfASingleFunctionDeviceAreProbedAllTheSame) {
    Put({0, 4, 0}, PciHeader().Byte(14, 0x00));  // the multi-function bit is clear
    Put({0, 4, 6});
    Put({0, 5, 3});  // without a function 0
    EXPECT_EQ(scan.getAllDevice(functions), 0);
    EXPECT_THAT(Locations(), ElementsAre("00:04.0", "00:04.6", "00:05.3"));
}

TEST_F(PCIscanTest, DeviceOnBusElevenIsNeverListed) {
    Put({11, 0, 0});
    Put({255, 0, 0});
    Put({10, 31, 7});
    EXPECT_EQ(scan.getAllDevice(functions), 0);
    EXPECT_THAT(Locations(), ElementsAre("0a:1f.7"));
}

TEST_F(PCIscanTest, FullScanReadsEveryFunctionOnce) {
    Put({0, 0, 0});
    EXPECT_EQ(scan.getAllDevice(functions), 0);
    EXPECT_EQ(server.GetLog().Count("out"), 11u * 32 * 8 * 16);
    EXPECT_EQ(server.GetLog().Count("in"), 11u * 32 * 8 * 16);
    EXPECT_EQ(server.GetLog().Accesses().front().what, "0xCF8 4 0x80000000");
}

TEST_F(PCIscanTest, ListIsEmptiedFirst) {
    functions.resize(3);
    EXPECT_EQ(scan.getAllDevice(functions), 0);
    EXPECT_THAT(functions, ElementsAre());
}

TEST_F(PCIscanTest, SixtyFourFunctionsFit) {
    PutMany(64);
    EXPECT_EQ(scan.getAllDevice(functions), 0);
    EXPECT_EQ(functions.size(), 64u);
}

TEST_F(PCIscanTest, SixtyFifthFunctionEndsTheScanAtOnceAndLeavesTheFirstSixtyFour) {
    PutMany(66);
    EXPECT_EQ(scan.getAllDevice(functions), -1);
    EXPECT_EQ(functions.size(), 64u);
    EXPECT_EQ(Locations().back(), "00:07.7");
    EXPECT_EQ(scan.m_dev.getDevNo(), 8);
    EXPECT_EQ(scan.m_dev.getFuncNo(), 0);
    EXPECT_EQ(server.GetLog().Count("in"), 65u * 16);
}

TEST_F(PCIscanTest, SearchFindsAFunctionByClassAndSubClass) {
    Put({0, 3, 0}, PciHeader().Code(0x0C, 0x03, 0x20));
    server.GetLog().Clear();
    EXPECT_EQ(scan.searchDevice(0x0C, 0x03), 1);
    EXPECT_EQ(scan.m_dev.getDevNo(), 3);
    EXPECT_EQ(server.GetLog().Count("in"), (3u * 8 + 1) * 16);  // and ends there
}

TEST_F(PCIscanTest, SearchNeedsBothCodes) {
    Put({0, 3, 0}, PciHeader().Code(0x0C, 0x03, 0x20));
    EXPECT_EQ(scan.searchDevice(0x0C, 0x05), 0);
    EXPECT_EQ(scan.searchDevice(0x03, 0x03), 0);
}

TEST_F(PCIscanTest, SearchLooksAtEveryFunctionOfElevenBuses) {
    Put({10, 31, 7}, PciHeader().Code(0x01, 0x04, 0x00));
    Put({11, 0, 0}, PciHeader().Code(0x01, 0x07, 0x00));
    EXPECT_EQ(scan.searchDevice(0x01, 0x04), 1);
    EXPECT_EQ(scan.searchDevice(0x01, 0x07), 0);
}

TEST_F(PCIscanTest, SearchForAllOnesMatchesAtTheFirstAbsentFunction) {
    Put({0, 0, 0});
    server.GetLog().Clear();
    EXPECT_EQ(scan.searchDevice(0xFF, 0xFF), 1);
    EXPECT_EQ(server.GetLog().Count("in"), 2u * 16);
}

TEST_F(PCIscanTest, SearchComparesSignedWordsWithBytes) {
    Put({0, 0, 0}, PciHeader().Code(0xFE, 0x80, 0x00));
    EXPECT_EQ(scan.searchDevice(0xFE, 0x80), 1);
    EXPECT_EQ(scan.searchDevice(-2, -128), 0);
    EXPECT_EQ(scan.searchDevice(-1, -1), 0);
    EXPECT_EQ(scan.searchDevice(0x1FE, 0x80), 0);
}

TEST_F(PCIscanTest, SearchFindsTheCodesOfAFunctionWithoutAVendor) {
    Put({0, 1, 0}, PciHeader().Id(0x0000, 0).Code(0x09, 0x02, 0x00));
    EXPECT_EQ(scan.searchDevice(0x09, 0x02), 1);
}

}  // namespace
