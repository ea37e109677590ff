// SPDX-License-Identifier: MIT
//
// On-board devices: how many there are, and which bytes the n-th is read from.
#include "support/CodeTexts.h"
#include "support/SmBiosTest.h"

namespace {

class OnBoardTest : public SmBiosTest {
protected:
    // A structure with these type bytes; the device's description is its type and its place.
    sim::SmbiosStructure& AddDevices(int handle, const std::vector<int>& types) {
        const std::size_t length = 4 + 2 * types.size();
        sim::SmbiosStructure& devices =
            table.Add(10, static_cast<std::uint16_t>(handle), static_cast<std::uint8_t>(length));
        for (std::size_t i = 0; i < types.size(); ++i)
            devices.Byte(4 + 2 * i, static_cast<std::uint8_t>(types[i]))
                .String(5 + 2 * i, "device " + std::to_string(i));
        return devices;
    }

    void ExpectDevice(int n, const std::string& type, int enabled, const Answer& description) {
        EXPECT_EQ(Ask(&SmBios::GetOnBoardDevType, n), Terminated(type)) << n;
        EXPECT_EQ(Ask(&SmBios::GetOnBoardDevDescription, n), description) << n;
        int state = 77;
        EXPECT_EQ(reader->GetOnBoardDevBiosEnable(n, state), 0) << n;
        EXPECT_EQ(state, enabled) << n;
    }

    void ExpectNone(int n) {
        EXPECT_EQ(Ask(&SmBios::GetOnBoardDevType, n), Missing()) << n;
        EXPECT_EQ(Ask(&SmBios::GetOnBoardDevDescription, n), Missing()) << n;
        int state = 77;
        EXPECT_EQ(reader->GetOnBoardDevBiosEnable(n, state), -1) << n;
        EXPECT_EQ(state, 0) << n;
    }
};

TEST_F(OnBoardTest, EveryTypeByteHasItsNameAndItsState) {
    const CodeTexts types{{{1, "Other"},
                           {3, "Video"},
                           {4, "SCSI Controller"},
                           {5, "EtherNet"},
                           {6, "Token Ring"},
                           {7, "Sound"}},
                          "Unknown"};
    for (int code = 0; code < 256; ++code) {
        NewTable();
        AddDevices(0x0A00, {code});
        Open();
        ExpectDevice(1, types.Of(code & 0x7F), code >= 0x80 ? 1 : 0, Terminated("device 0"));
    }
}

TEST_F(OnBoardTest, QuantityAddsUpTheDevicesOfAllStructures) {
    Open();
    EXPECT_EQ(reader->GetOnBoardDevQuantity(), 0);
    AddDevices(1, {3, 4, 5});
    AddDevices(2, {});
    AddDevices(3, {6});
    Open();
    EXPECT_EQ(reader->GetOnBoardDevQuantity(), 4);
}

TEST_F(OnBoardTest, OddByteAtTheEndIsNoDevice) {
    table.Add(10, 1, 7).Byte(4, 0x83).Byte(6, 0x84);
    Open();
    EXPECT_EQ(reader->GetOnBoardDevQuantity(), 1);
}

TEST_F(OnBoardTest, StructureShorterThanItsHeaderHoldsNoDevices) {
    for (std::uint8_t length = 0; length < 4; ++length) {
        NewTable();
        const std::uint8_t bytes[] = {10, length, 'x', 'y', 0, 0};
        table.Raw(bytes);
        AddDevices(2, {3});
        sim::SmbiosPlacement placement;
        placement.structures = 2;
        Open(placement);
        EXPECT_EQ(reader->GetOnBoardDevQuantity(), 1) << int{length};
        EXPECT_EQ(Ask(&SmBios::GetOnBoardDevDescription, 1), Terminated("device 0"));
    }
}

TEST_F(OnBoardTest, QuantityLooksAt127Structures) {
    for (int i = 0; i < 130; ++i) AddDevices(i, {3, 4});
    Open();
    EXPECT_EQ(reader->GetOnBoardDevQuantity(), 254);
}

TEST_F(OnBoardTest, OnlyDeviceOfTheFirstStructureIsReadCorrectly) {
    AddDevices(0x0183, {0x85});
    AddDevices(0x0184, {0x06});
    Open();
    ExpectDevice(1, "EtherNet", 1, Terminated("device 0"));
}

TEST_F(OnBoardTest, SecondOfTwoSingleDevicesIsReadAtByteTwoOfItsStructure) {
    AddDevices(0x0183, {0x05});
    AddDevices(0x0184, {0x06});  // byte 2 is 0x84, byte 3 is 0x01
    Open();
    ExpectDevice(2, "SCSI Controller", 1, Terminated("device 0"));
    ExpectNone(3);
}

TEST_F(OnBoardTest, DevicesOfTheFirstStructureAreAllReadAtItsLast) {
    AddDevices(1, {0x03, 0x84, 0x05});
    Open();
    for (int n = 1; n <= 3; ++n) ExpectDevice(n, "EtherNet", 0, Terminated("device 2"));
    ExpectNone(4);
}

TEST_F(OnBoardTest, LaterStructureIsReadAtTheDifferenceOfTheCounts) {
    AddDevices(1, {3});
    AddDevices(2, {0x84, 0x06, 0x87});  // 2 + 2 * (3 - 1): its second device
    Open();
    for (int n = 2; n <= 4; ++n) ExpectDevice(n, "Token Ring", 0, Terminated("device 1"));
    ExpectNone(5);
}

TEST_F(OnBoardTest, StructureWithTwoDevicesFewerThanBeforeIsReadBeforeItsStart) {
    AddDevices(1, {3, 3, 3, 3});
    AddDevices(2, {0x84});  // 2 + 2 * (1 - 4) lies before the structure and reads as zero
    Open();
    ExpectDevice(5, "Unknown", 0, Missing());
}

TEST_F(OnBoardTest, StructureWithOneDeviceFewerThanBeforeIsReadAtItsHeader) {
    AddDevices(1, {3, 3});
    AddDevices(2, {0x84}).String("s2").String("s3").String("s4").String("s5").String("s6");
    Open();
    ExpectDevice(3, "Unknown", 0, Terminated("s6"));  // type 10, "string" 6: its length
}

TEST_F(OnBoardTest, NumbersBelowOneSelectTheFirstStructure) {
    AddDevices(1, {0x03, 0x84});
    Open();
    ExpectDevice(0, "SCSI Controller", 1, Terminated("device 1"));
    ExpectDevice(-5, "SCSI Controller", 1, Terminated("device 1"));
}

TEST_F(OnBoardTest, WithoutStructuresThereIsNoDevice) {
    Open();
    ExpectNone(0);
    ExpectNone(1);
}

TEST_F(OnBoardTest, MissingDescriptionAnswersMinusOne) {
    table.Add(10, 1, 6).Byte(4, 0x83);
    Open();
    ExpectDevice(1, "Video", 1, Missing());
}

TEST_F(OnBoardTest, DescriptionIsWrittenWhole) {
    const std::string text(200, 'd');
    table.Add(10, 1, 6).Byte(4, 0x83).String(5, text);
    Open();
    EXPECT_EQ(Ask(&SmBios::GetOnBoardDevDescription, 1), Terminated(text));
}

}  // namespace
