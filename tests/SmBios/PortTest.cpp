// SPDX-License-Identifier: MIT
//
// Port connectors: count, type names and shortened designators.
#include "support/CodeTexts.h"
#include "support/SmBiosTest.h"

namespace {

class PortTest : public SmBiosTest {
protected:
    sim::SmbiosStructure& AddPort(int type = 0) {
        return table.Add(8, handle++, 9).Byte(8, static_cast<std::uint8_t>(type));
    }

    Answer Description(const std::string& designator, unsigned size) {
        NewTable();
        AddPort().String("internal").String(6, designator);
        Open();
        return Ask(&SmBios::GetPortDecription, 1, size, Buffer::kZeroed);
    }

    std::uint16_t handle = 0x800;
};

const CodeTexts kPortTypes{{{0, "None"},
                            {1, "Parallel Port XT/AT Compatible"},
                            {2, "Parallel Port PS/2"},
                            {3, "Parallel Port ECP"},
                            {4, "Parallel Port EPP"},
                            {5, "Parallel Port ECP/EPP"},
                            {6, "Serial Port XT/AT Compatible"},
                            {7, "Serial Port 16450 Compatible"},
                            {8, "Serial Port 16550 Compatible"},
                            {9, "Serial Port 16550A Compatible"},
                            {10, "SCSI Port"},
                            {11, "MIDI Port"},
                            {12, "Joy Stick Port"},
                            {13, "Keyboard Port"},
                            {14, "Mouse Port"},
                            {15, "SSA SCSI"},
                            {16, "USB"},
                            {17, "FireWire (IEEE P1394)"},
                            {18, "PCMCIA Type II"},
                            {19, "PCMCIA Type II"},
                            {20, "PCMCIA Type III"},
                            {21, "Cardbus"},
                            {22, "Access Bus Port"},
                            {23, "SCSI II"},
                            {24, "SCSI Wide"},
                            {25, "PC-98"},
                            {26, "PC-98-Hireso"},
                            {27, "PC-H98"},
                            {28, "Video Port"},
                            {29, "Audio Port"},
                            {30, "Modem Port"},
                            {31, "Network Port"},
                            {160, "8251 Compatible"},
                            {161, "8251 FIFO Compatible"},
                            {255, "Other"}},
                           "Unknown"};

TEST_F(PortTest, EveryTypeCodeHasItsName) {
    for (int code = 0; code < 256; ++code) {
        NewTable();
        AddPort(code);
        Open();
        EXPECT_EQ(Ask(&SmBios::GetPortType, 1), Terminated(kPortTypes.Of(code))) << code;
    }
}

TEST_F(PortTest, PortTypes18And19GivePcmciaTypeIiAnd254GivesUnknown) {
    AddPort(18);
    AddPort(19);
    AddPort(254);
    Open();
    EXPECT_EQ(Ask(&SmBios::GetPortType, 1), Terminated("PCMCIA Type II"));
    EXPECT_EQ(Ask(&SmBios::GetPortType, 2), Terminated("PCMCIA Type II"));
    EXPECT_EQ(Ask(&SmBios::GetPortType, 3), Terminated("Unknown"));
}

TEST_F(PortTest, QuantityCountsThePorts) {
    Open();
    EXPECT_EQ(reader->GetPortQuantity(), 0);
    AddPort();
    table.Add(9, 1, 12);
    AddPort();
    Open();
    EXPECT_EQ(reader->GetPortQuantity(), 2);
}

TEST_F(PortTest, QuantityStopsAt128) {
    for (int i = 0; i < 127; ++i) AddPort();
    Open();
    EXPECT_EQ(reader->GetPortQuantity(), 127);
    AddPort();
    Open();
    EXPECT_EQ(reader->GetPortQuantity(), 128);
    for (int i = 0; i < 200; ++i) AddPort(16);
    Open();
    EXPECT_EQ(reader->GetPortQuantity(), 128);
    EXPECT_EQ(Ask(&SmBios::GetPortType, 129), Terminated("USB"));
}

TEST_F(PortTest, DesignatorOf20CharactersWithSize16GivesItsFirst12AndThreeDots) {
    EXPECT_EQ(Description("abcdefghijklmnopqrst", 16), Copied("abcdefghijkl..."));
}

TEST_F(PortTest, DesignatorShorterThanTheSizeIsCopiedWhole) {
    EXPECT_EQ(Description("COM1", 32), Copied("COM1"));
    EXPECT_EQ(Description("COM1", 5), Copied("COM1"));
    EXPECT_EQ(Description("0123456789abcde", 16), Copied("0123456789abcde"));
}

TEST_F(PortTest, DesignatorAsLongAsTheSizeIsShortened) {
    EXPECT_EQ(Description("COM1", 4), Copied("..."));
    EXPECT_EQ(Description("COM12", 5), Copied("C..."));
    EXPECT_EQ(Description("0123456789abcdef", 16), Copied("0123456789ab..."));
}

TEST_F(PortTest, SizeBelowFourAnswersZeroAndWritesNothing) {
    AddPort().String(6, "COM12345");
    AddPort().String(6, "C");  // shorter than the size, too
    Open();
    for (unsigned size = 0; size < 4; ++size) {
        EXPECT_EQ(Ask(&SmBios::GetPortDecription, 1, size), NothingWritten()) << size;
        EXPECT_EQ(Ask(&SmBios::GetPortDecription, 2, size), NothingWritten()) << size;
    }
}

TEST_F(PortTest, WholeDesignatorHasNoTerminator) {
    AddPort().String(6, "COM1");
    Open();
    EXPECT_EQ(Ask(&SmBios::GetPortDecription, 1, 32), Copied("COM1"));
}

TEST_F(PortTest, DesignatorIsTheExternalOne) {
    table.Add(8, 1, 9).String(4, "J1").Byte(5, 1).String(6, "External").Byte(7, 2).Byte(8, 10);
    Open();
    EXPECT_EQ(Ask(&SmBios::GetPortDecription, 1, 32), Copied("External"));
    EXPECT_EQ(Ask(&SmBios::GetPortType, 1), Terminated("SCSI Port"));
}

TEST_F(PortTest, MissingPortsAndStringsAnswerMinusOne) {
    AddPort();
    Open();
    EXPECT_EQ(Ask(&SmBios::GetPortDecription, 1, 32), Missing());
    EXPECT_EQ(Ask(&SmBios::GetPortDecription, 2, 32), Missing());
    EXPECT_EQ(Ask(&SmBios::GetPortType, 2), Missing());
    EXPECT_EQ(Ask(&SmBios::GetPortType, 0), Missing());
}

TEST_F(PortTest, ShortStructureHasNoType) {
    table.Add(8, 1, 8).String("\x10");
    Open();
    EXPECT_EQ(Ask(&SmBios::GetPortType, 1), Terminated("None"));
}

}  // namespace
