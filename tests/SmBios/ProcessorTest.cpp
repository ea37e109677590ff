// SPDX-License-Identifier: MIT
//
// Processors: counts, family names, texts, clocks and status.
#include "support/CodeTexts.h"
#include "support/SmBiosTest.h"

namespace {

class ProcessorTest : public SmBiosTest {
protected:
    sim::SmbiosStructure& AddProcessor(int status = 0x41) {
        return table.Add(4, handle++, 35).Byte(24, static_cast<std::uint8_t>(status));
    }

    // The answer of a getter for each value of one byte of the structure.
    template <class Expected>
    void ForEveryByte(std::size_t offset, int (SmBios::*getter)(int, char*), Expected expected) {
        for (int code = 0; code < 256; ++code) {
            NewTable();
            AddProcessor().Byte(offset, static_cast<std::uint8_t>(code));
            Open();
            EXPECT_EQ(Ask(getter, 1), Terminated(expected(code))) << "code " << code;
        }
    }

    std::uint16_t handle = 0x400;
};

const CodeTexts kFamilies{{{1, "Other"},
                           {3, "8086"},
                           {4, "80286"},
                           {5, "Intel386 processor"},
                           {6, "Intel486 processor"},
                           {7, "8087"},
                           {8, "80287"},
                           {9, "80387"},
                           {10, "80487"},
                           {11, "Pentium processor Family"},
                           {12, "Pentium Pro processor"},
                           {13, "Pentium II processor"},
                           {14, "Pentium processor with MMX technology"},
                           {15, "Celeron processor"},
                           {16, "Pentium II Xeon processor"},
                           {17, "Pentium III processor"},
                           {18, "M1 Family"},
                           {19, "M2 Family"},
                           {24, "AMD Duron Processor Family"},
                           {25, "K5 Family"},
                           {26, "K6 Family"},
                           {27, "K6-2"},
                           {28, "K6-3"},
                           {29, "AMD Athlon Processor Family"},
                           {30, "AMD2900 Family"},
                           {31, "K6-2+"},
                           {32, "Power PC Family"},
                           {33, "Power PC 601"},
                           {34, "Power PC 603"},
                           {35, "Power PC 603+"},
                           {36, "Power PC 604"},
                           {37, "Power PC 620"},
                           {38, "Power PC x704"},
                           {39, "Power PC 750"},
                           {48, "Alpha Family3"},
                           {49, "Alpha 21064"},
                           {50, "Alpha 21066"},
                           {51, "Alpha 21164"},
                           {52, "Alpha 21164PC"},
                           {53, "Alpha 21164a"},
                           {54, "Alpha 21264"},
                           {55, "Alpha 21364"},
                           {176, "Pentium III Xeoprocessor"},
                           {177, "Pentium III Processor with Intel SpeedStep Technology"},
                           {178, "Pentium 4 Processor"},
                           {179, "Intel Xeon"},
                           {180, "AS400 Family"},
                           {181, "Intel Xeon processor MP"},
                           {182, "AMD AthlonXP Processor Family"},
                           {183, "AMD AthlonMP Processor Family"},
                           {200, "IBM390 Family"},
                           {201, "G4"},
                           {202, "G5"}},
                          "Unknown"};

TEST_F(ProcessorTest, EveryFamilyCodeHasItsName) {
    ASSERT_EQ(kFamilies.known.size(), 53u);
    ForEveryByte(6, &SmBios::GetProcessorFamily, [](int code) { return kFamilies.Of(code); });
}

TEST_F(ProcessorTest, FamilyCodes2And56And203GiveUnknown) {
    for (const int code : {2, 56, 203}) {
        NewTable();
        AddProcessor().Byte(6, static_cast<std::uint8_t>(code));
        Open();
        EXPECT_EQ(Ask(&SmBios::GetProcessorFamily, 1), Terminated("Unknown")) << code;
    }
}

TEST_F(ProcessorTest, LongestFamilyNameHasFiftyThreeCharacters) {
    AddProcessor().Byte(6, 177);
    Open();
    EXPECT_EQ(Ask(&SmBios::GetProcessorFamily, 1).written.size(), 53u + 1);
}

TEST_F(ProcessorTest, EveryVoltageByteHasItsText) {
    const CodeTexts voltages{
        {{1, "5V"}, {2, "3.3V"}, {3, "5V or 3.3V"}, {4, "2.9V"}, {6, "2.9V or 3.3V"}}, "Unknown"};
    ForEveryByte(17, &SmBios::GetProcessorVoltage,
                 [&](int code) { return voltages.Of(code & 0x0F); });
}

TEST_F(ProcessorTest, VoltageFlags05GiveUnknownAnd86GiveTwoVoltages) {
    AddProcessor().Byte(17, 0x05);
    AddProcessor().Byte(17, 0x86);
    Open();
    EXPECT_EQ(Ask(&SmBios::GetProcessorVoltage, 1), Terminated("Unknown"));
    EXPECT_EQ(Ask(&SmBios::GetProcessorVoltage, 2), Terminated("2.9V or 3.3V"));
}

TEST_F(ProcessorTest, ExternalClockIsWrittenEvenWhenItIsZero) {
    AddProcessor().Word(18, 133);
    AddProcessor().Word(18, 0);
    AddProcessor().Word(18, 0xFFFF);
    AddProcessor().Word(18, 0x8000);
    Open();
    EXPECT_EQ(Ask(&SmBios::GetProcessorExternalClock, 1), Terminated("133 MHZ"));
    EXPECT_EQ(Ask(&SmBios::GetProcessorExternalClock, 2), Terminated("0 MHZ"));
    EXPECT_EQ(Ask(&SmBios::GetProcessorExternalClock, 3), Terminated("65535 MHZ"));
    EXPECT_EQ(Ask(&SmBios::GetProcessorExternalClock, 4), Terminated("32768 MHZ"));
}

TEST_F(ProcessorTest, SpeedsAreWrittenAndZeroIsUnknown) {
    AddProcessor().Word(20, 3600).Word(22, 2800);
    AddProcessor().Word(20, 0).Word(22, 1);
    AddProcessor().Word(20, 0xFFFF).Word(22, 0);
    Open();
    EXPECT_EQ(Ask(&SmBios::GetProcessorMaxSpeed, 1), Terminated("3600 MHZ"));
    EXPECT_EQ(Ask(&SmBios::GetProcessorCurrentSpeed, 1), Terminated("2800 MHZ"));
    EXPECT_EQ(Ask(&SmBios::GetProcessorMaxSpeed, 2), Refused("Unknown"));
    EXPECT_EQ(Ask(&SmBios::GetProcessorCurrentSpeed, 2), Terminated("1 MHZ"));
    EXPECT_EQ(Ask(&SmBios::GetProcessorMaxSpeed, 3), Terminated("65535 MHZ"));
    EXPECT_EQ(Ask(&SmBios::GetProcessorCurrentSpeed, 3), Refused("Unknown"));
}

TEST_F(ProcessorTest, TextsAreBoundedCopies) {
    AddProcessor().String(7, "Maker").String(16, "Version").String(32, "Serial");
    Open();
    EXPECT_EQ(Ask(&SmBios::GetProcessorManufacturer, 1, 48), Copied("Maker"));
    EXPECT_EQ(Ask(&SmBios::GetProcessorVersion, 1, 48), Copied("Version"));
    EXPECT_EQ(Ask(&SmBios::GetProcessorSerialNo, 1, 48), Copied("Serial"));
    EXPECT_EQ(Ask(&SmBios::GetProcessorManufacturer, 1, 4), Copied("Mak"));
    EXPECT_EQ(Ask(&SmBios::GetProcessorVersion, 1, 4), Copied("Ver"));
    EXPECT_EQ(Ask(&SmBios::GetProcessorSerialNo, 1, 4), Copied("Ser"));
}

TEST_F(ProcessorTest, MissingTextsAnswerMinusOne) {
    AddProcessor();
    Open();
    EXPECT_EQ(Ask(&SmBios::GetProcessorManufacturer, 1, 48), Missing());
    EXPECT_EQ(Ask(&SmBios::GetProcessorVersion, 1, 48), Missing());
    EXPECT_EQ(Ask(&SmBios::GetProcessorSerialNo, 1, 48), Missing());
}

TEST_F(ProcessorTest, MissingProcessorAnswersMinusOneAndWritesNothing) {
    AddProcessor();
    Open();
    EXPECT_EQ(Ask(&SmBios::GetProcessorFamily, 2), Missing());
    EXPECT_EQ(Ask(&SmBios::GetProcessorVoltage, 2), Missing());
    EXPECT_EQ(Ask(&SmBios::GetProcessorExternalClock, 2), Missing());
    EXPECT_EQ(Ask(&SmBios::GetProcessorMaxSpeed, 2), Missing());
    EXPECT_EQ(Ask(&SmBios::GetProcessorCurrentSpeed, 2), Missing());
    EXPECT_EQ(Ask(&SmBios::GetProcessorManufacturer, 2, 48), Missing());
    EXPECT_EQ(Ask(&SmBios::GetProcessorVersion, 2, 48), Missing());
    EXPECT_EQ(Ask(&SmBios::GetProcessorSerialNo, 2, 48), Missing());
    unsigned char status = 0xA5;
    EXPECT_EQ(reader->GetProcessorStatus(2, &status), -1);
    EXPECT_EQ(status, 0xA5);
}

TEST_F(ProcessorTest, StatusIsTheRawByte) {
    for (int code = 0; code < 256; ++code) {
        NewTable();
        AddProcessor(code);
        Open();
        unsigned char status = static_cast<unsigned char>(~code);
        EXPECT_EQ(reader->GetProcessorStatus(1, &status), 0);
        EXPECT_EQ(status, code);
    }
}

TEST_F(ProcessorTest, ShortStructureReadsAsZeroPastItsEnd) {
    table.Add(4, 1, 20).Byte(6, 178).Word(18, 100);
    Open();
    EXPECT_EQ(Ask(&SmBios::GetProcessorFamily, 1), Terminated("Pentium 4 Processor"));
    EXPECT_EQ(Ask(&SmBios::GetProcessorExternalClock, 1), Terminated("100 MHZ"));
    EXPECT_EQ(Ask(&SmBios::GetProcessorMaxSpeed, 1), Refused("Unknown"));
    EXPECT_EQ(Ask(&SmBios::GetProcessorSerialNo, 1, 16), Missing());
    unsigned char status = 0xA5;
    EXPECT_EQ(reader->GetProcessorStatus(1, &status), 0);
    EXPECT_EQ(status, 0);
}

TEST_F(ProcessorTest, WordCutByTheEndOfTheStructureKeepsItsLowByte) {
    table.Add(4, 1, 21).Byte(20, 0x10).String("\x01");  // a string byte where the high byte is
    Open();
    EXPECT_EQ(Ask(&SmBios::GetProcessorMaxSpeed, 1), Terminated("16 MHZ"));
}

TEST_F(ProcessorTest, StatusDecidesWhetherAProcessorCounts) {
    for (int status = 0; status < 256; ++status) {
        NewTable();
        AddProcessor(status);
        Open();
        const bool counts = (status & 0x40) != 0 && (status & 0x07) != 0;
        EXPECT_EQ(reader->GetProcessorQuantity(), counts ? 1 : 0) << status;
        EXPECT_EQ(reader->GetProcessorVirtualQuantity(), 1) << status;
    }
}

TEST_F(ProcessorTest, ProcessorWithStatus41CountsAnd40And01DoNot) {
    AddProcessor(0x41);
    AddProcessor(0x40);
    AddProcessor(0x01);
    Open();
    EXPECT_EQ(reader->GetProcessorQuantity(), 1);
    EXPECT_EQ(reader->GetProcessorVirtualQuantity(), 3);
}

TEST_F(ProcessorTest, WithSeventeenProcessorStructuresBothQuantitiesStopAtSixteen) {
    for (int i = 0; i < 17; ++i) AddProcessor();
    Open();
    EXPECT_EQ(reader->GetProcessorQuantity(), 16);
    EXPECT_EQ(reader->GetProcessorVirtualQuantity(), 16);
}

TEST_F(ProcessorTest, OnlyTheFirstSixteenAreLookedAt) {
    for (int i = 0; i < 15; ++i) AddProcessor(0);
    AddProcessor(0x41);
    AddProcessor(0x41);
    Open();
    EXPECT_EQ(reader->GetProcessorQuantity(), 1);
}

TEST_F(ProcessorTest, WithoutProcessorsBothQuantitiesAreZero) {
    table.Add(0, 0, 20);
    Open();
    EXPECT_EQ(reader->GetProcessorQuantity(), 0);
    EXPECT_EQ(reader->GetProcessorVirtualQuantity(), 0);
}

TEST_F(ProcessorTest, SeventeenthProcessorIsReadAllTheSame) {
    for (int i = 1; i <= 17; ++i) AddProcessor().Word(18, static_cast<std::uint16_t>(i));
    Open();
    EXPECT_EQ(Ask(&SmBios::GetProcessorExternalClock, 17), Terminated("17 MHZ"));
}

}  // namespace
