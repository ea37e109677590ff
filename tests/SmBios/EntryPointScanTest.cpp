// SPDX-License-Identifier: MIT
//
// Finding the SMBIOS or DMI entry point in the last segment below 1 MiB.
#include <cstring>
#include <span>

#include "support/EntryPointImage.h"
#include "support/FieldTable.h"
#include "support/SmBiosTest.h"

namespace {

constexpr std::uint32_t kSegment = 0xF0000;
constexpr std::uint32_t kTableAddress = 0xF8000;

// Fields of the packed entry points are compared as copies (unary plus): a reference to one would
// be misaligned.
class EntryPointScanTest : public SmBiosTest {
protected:
    EntryPointScanTest() {
        table.Add(0, 0x0000, 9).String(4, "First Vendor");
        table.Add(1, 0x0001, 8).String(4, "First Maker");
        server.GetMemory().Write(kTableAddress, table.Image());
        NewTable().Add(0, 0x0000, 9).String(4, "Second Vendor");
        server.GetMemory().Write(kTableAddress + 0x1000, table.Image());
    }

    static TableLocation First() { return {kTableAddress, 44, 2}; }
    static TableLocation Second() { return {kTableAddress + 0x1000, 24, 1}; }

    template <class Image>
    void WriteAt(std::uint32_t address, const Image& image) {
        server.GetMemory().Write(address, image);
    }

    Answer Vendor() { return Ask(&SmBios::GetBiosVendor, 32); }

    void ExpectUninitialised() {
        EXPECT_EQ(reader->InitOK, 0);
        EXPECT_EQ(reader->MatchSMBIOS, 0);
        EXPECT_EQ(reader->MatchDMI, 0);
        EXPECT_EQ(reader->BiosData, nullptr);
    }
};

TEST_F(EntryPointScanTest, SmbiosAnchorIsFound) {
    WriteAt(kSegment, SmbiosEntryImage(First()));
    Read();
    EXPECT_EQ(reader->IsInitOK(), 1);
    EXPECT_EQ(reader->IsMatchSmBios(), 1);
    EXPECT_EQ(reader->IsMatchDMI(), 0);
    EXPECT_EQ(Vendor(), Copied("First Vendor"));
}

TEST_F(EntryPointScanTest, DmiAnchorAloneIsFound) {
    WriteAt(kSegment, DmiEntryImage(First()));
    Read();
    EXPECT_EQ(reader->IsInitOK(), 1);
    EXPECT_EQ(reader->IsMatchSmBios(), 0);
    EXPECT_EQ(reader->IsMatchDMI(), 1);
    EXPECT_EQ(Vendor(), Copied("First Vendor"));
    EXPECT_EQ(Ask(&SmBios::GetSysManufacturer, 32), Copied("First Maker"));
}

TEST_F(EntryPointScanTest, BothAnchorsUseTheSmbiosEntryPoint) {
    WriteAt(kSegment + 0x100, DmiEntryImage(Second()));
    WriteAt(kSegment + 0x200, SmbiosEntryImage(First()));
    Read();
    EXPECT_EQ(reader->MatchSMBIOS, 1);
    EXPECT_EQ(reader->MatchDMI, 0);
    EXPECT_EQ(Vendor(), Copied("First Vendor"));
}

TEST_F(EntryPointScanTest, FirstOfTwoSmbiosAnchorsWins) {
    WriteAt(kSegment + 0x100, SmbiosEntryImage(Second()));
    WriteAt(kSegment + 0x200, SmbiosEntryImage(First()));
    Read();
    EXPECT_EQ(Vendor(), Copied("Second Vendor"));
}

TEST_F(EntryPointScanTest, FirstOfTwoDmiAnchorsWins) {
    WriteAt(kSegment + 0x100, DmiEntryImage(Second()));
    WriteAt(kSegment + 0x200, DmiEntryImage(First()));
    Read();
    EXPECT_EQ(Vendor(), Copied("Second Vendor"));
}

TEST_F(EntryPointScanTest, EverySixteenByteBoundaryIsLookedAt) {
    for (const std::uint32_t address : {0xF0000u, 0xF0010u, 0xF7FF0u, 0xFFFC0u}) {
        sim::SmbiosPlacement placement;
        placement.entry = address;
        placement.table = 0xE0000;
        sim::PhysicalMemory fresh;
        server.GetMemory() = fresh;
        Open(placement);
        EXPECT_EQ(reader->InitOK, 1) << address;
        EXPECT_EQ(Vendor(), Copied("Second Vendor")) << address;
    }
}

TEST_F(EntryPointScanTest, UnalignedSmbiosAnchorIsNotFound) {
    for (std::uint32_t offset = 1; offset < 16; ++offset) {
        server.GetMemory().Write(kSegment, std::vector<std::uint8_t>(64));
        WriteAt(kSegment + offset, SmbiosEntryImage(First()));
        Read();
        ExpectUninitialised();
    }
}

TEST_F(EntryPointScanTest, UnalignedDmiAnchorIsNotFound) {
    WriteAt(kSegment + 8, DmiEntryImage(First()));
    Read();
    ExpectUninitialised();
}

TEST_F(EntryPointScanTest, NoAnchorLeavesTheReaderUninitialisedInSilence) {
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    Read();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    ExpectUninitialised();
    for (int type = 0; type < 256; ++type) EXPECT_EQ(Item(type, 1), nullptr) << type;
    EXPECT_EQ(Vendor(), Missing());
    EXPECT_EQ(reader->GetProcessorQuantity(), 0);
}

TEST_F(EntryPointScanTest, AnchorsOutsideTheScannedRangeAreNotFound) {
    WriteAt(kSegment - 16, SmbiosEntryImage(First()));  // its intermediate anchor is in the range
    server.GetMemory().Write(kSegment, std::vector<std::uint8_t>(16));
    WriteAt(0xFFFF0, DmiEntryImage(First()));
    WriteAt(0x100000, SmbiosEntryImage(First()));
    Read();
    ExpectUninitialised();
}

TEST_F(EntryPointScanTest, SmbiosAnchorInTheLastSixteenBytesHasItsRestReadAsZero) {
    WriteAt(0xFFFE0, SmbiosEntryImage(First()));
    Read();
    EXPECT_EQ(reader->MatchSMBIOS, 1);
    EXPECT_EQ(reader->InitOK, 1);
    EXPECT_EQ(+reader->SmBiosEntry.MajorVersion, 2);
    EXPECT_EQ(std::memcmp(&reader->SmBiosEntry, SmbiosEntryImage(First()).data(), 16), 0);
    const unsigned char zeroes[31 - 16] = {};
    EXPECT_EQ(std::memcmp(&reader->SmBiosEntry.IntermediateAnchorString, zeroes, sizeof zeroes), 0);
    EXPECT_EQ(+reader->SmBiosEntry.StructureTableAddress, 0u);
    EXPECT_EQ(reader->BiosDataLength, 0);
    EXPECT_EQ(Item(1, 1), nullptr);
}

TEST_F(EntryPointScanTest, DmiAnchorInTheLastSixteenBytesIsWhole) {
    WriteAt(0xFFFE0, DmiEntryImage(First()));
    Read();
    EXPECT_EQ(reader->MatchDMI, 1);
    EXPECT_EQ(Vendor(), Copied("First Vendor"));
}

TEST_F(EntryPointScanTest, CorruptEntryPointWithAWrongChecksumIsStillUsed) {
    auto image = SmbiosEntryImage(First());
    image[4] = 0x00;
    image[21] = 0x00;
    WriteAt(kSegment, image);
    Read();
    EXPECT_EQ(reader->InitOK, 1);
    image[4] = 0x77;
    image[21] = 0x77;
    WriteAt(kSegment, image);
    Read();
    EXPECT_EQ(reader->InitOK, 1);
    EXPECT_EQ(+reader->SmBiosEntry.checksum, 0x77);
    EXPECT_EQ(+reader->SmBiosEntry.IntermediateCheckSum, 0x77);
    EXPECT_EQ(Vendor(), Copied("First Vendor"));
}

TEST_F(EntryPointScanTest, WrongDmiChecksumIsStillUsed) {
    auto image = DmiEntryImage(First());
    image[5] = 0;
    WriteAt(kSegment, image);
    Read();
    EXPECT_EQ(Vendor(), Copied("First Vendor"));
}

TEST_F(EntryPointScanTest, IntermediateAnchorIsNotCompared) {
    auto image = SmbiosEntryImage(First());
    PutText(&image[16], "xxxxx");
    WriteAt(kSegment, image);
    Read();
    EXPECT_EQ(reader->MatchSMBIOS, 1);
    EXPECT_EQ(Vendor(), Copied("First Vendor"));
}

TEST_F(EntryPointScanTest, EveryByteOfTheSmbiosAnchorCounts) {
    for (std::size_t i = 0; i < 4; ++i) {
        auto image = SmbiosEntryImage(First());
        PutText(&image[16], "xxxxx");
        image[i] ^= 0x20;
        WriteAt(kSegment, image);
        Read();
        ExpectUninitialised();
    }
}

TEST_F(EntryPointScanTest, FourBytesOfTheDmiAnchorCountAndTheFifthDoesNot) {
    for (std::size_t i = 0; i < 5; ++i) {
        auto image = DmiEntryImage(First());
        image[i] ^= 0x20;
        WriteAt(kSegment, image);
        Read();
        EXPECT_EQ(reader->MatchDMI, i == 4 ? 1 : 0) << i;
        EXPECT_EQ(reader->InitOK, i == 4 ? 1 : 0) << i;
    }
}

TEST_F(EntryPointScanTest, IntermediateAnchorOfADamagedSmbiosEntryPointServesAsDmi) {
    auto image = SmbiosEntryImage(First());
    image[0] = 'X';
    WriteAt(kSegment, image);
    Read();
    EXPECT_EQ(reader->MatchSMBIOS, 0);
    EXPECT_EQ(reader->MatchDMI, 1);
    EXPECT_EQ(Vendor(), Copied("First Vendor"));
}

TEST_F(EntryPointScanTest, ThirtyOneBytesOfTheSmbiosEntryPointAreCopied) {
    const auto image = SmbiosEntryImage(First());
    WriteAt(kSegment, image);
    Read();
    EXPECT_EQ(std::memcmp(&reader->SmBiosEntry, image.data(), 31), 0);
    ExpectNumbers({
        {"SmBiosEntry.length", reader->SmBiosEntry.length, 31},
        {"SmBiosEntry.MajorVersion", reader->SmBiosEntry.MajorVersion, 2},
        {"SmBiosEntry.MinorVersion", reader->SmBiosEntry.MinorVersion, 3},
        {"SmBiosEntry.MaxStructureSize", reader->SmBiosEntry.MaxStructureSize, 0xC9C8},
        {"SmBiosEntry.revission", reader->SmBiosEntry.revission, 0xCA},
        {"SmBiosEntry.StructureTableLength", reader->SmBiosEntry.StructureTableLength, 44},
        {"SmBiosEntry.StructureTableAddress", reader->SmBiosEntry.StructureTableAddress,
         kTableAddress},
        {"SmBiosEntry.HowManyStructures", reader->SmBiosEntry.HowManyStructures, 2},
        {"SmBiosEntry.BCD", reader->SmBiosEntry.BCD, 0xC0 + 30},
        {"BiosDataLength", reader->BiosDataLength, 44},
    });
}

TEST_F(EntryPointScanTest, FifteenBytesOfTheDmiEntryPointAreCopied) {
    const auto image = DmiEntryImage(First());
    WriteAt(kSegment, image);
    Read();
    EXPECT_EQ(std::memcmp(&reader->DmiEntry, image.data(), 15), 0);
    ExpectNumbers({
        {"DmiEntry.checksum", reader->DmiEntry.checksum, 0xD5},
        {"DmiEntry.StructureTableLength", reader->DmiEntry.StructureTableLength, 44},
        {"DmiEntry.biosStructureTableAddress", reader->DmiEntry.biosStructureTableAddress,
         kTableAddress},
        {"DmiEntry.HowManyStructures", reader->DmiEntry.HowManyStructures, 2},
        {"DmiEntry.dmiBiosRevision", reader->DmiEntry.dmiBiosRevision, 0x20},
        {"BiosDataLength", reader->BiosDataLength, 44},
    });
}

}  // namespace
