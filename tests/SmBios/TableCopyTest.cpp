// SPDX-License-Identifier: MIT
//
// Copying the structure table out of physical memory: where it lies, how it is read, and every way
// in which that can fail.
#include <cstring>

#include "support/EntryPointImage.h"
#include "support/SmBiosTest.h"

namespace {

class TableCopyTest : public SmBiosTest {
protected:
    TableCopyTest() {
        table.Add(0, 0x0000, 9).String(4, "Vendor");
        table.Add(1, 0x0001, 8).String(4, "Maker");
    }

    // The table at an address, its entry point written by hand.
    SmBios& OpenAt(std::uint32_t address) {
        const sim::Bytes bytes = table.Image();
        server.GetMemory().Write(address, bytes);
        return OpenEntry({address, static_cast<std::uint16_t>(bytes.size()), 2});
    }
    SmBios& OpenEntry(const TableLocation& location) {
        server.GetMemory().Write(0xF0000, SmbiosEntryImage(location));
        return Read();
    }

    void ExpectWhole() {
        EXPECT_EQ(reader->InitOK, 1);
        EXPECT_EQ(Ask(&SmBios::GetBiosVendor, 32), Copied("Vendor"));
        EXPECT_EQ(Ask(&SmBios::GetSysManufacturer, 32), Copied("Maker"));
    }

    void ExpectNoTable(int matchSmbios) {
        EXPECT_EQ(reader->InitOK, 0);
        EXPECT_EQ(reader->IsInitOK(), 0);
        EXPECT_EQ(reader->MatchSMBIOS, matchSmbios);
        EXPECT_EQ(reader->BiosData, nullptr);
        for (const int type : {0, 1, 4, 17, 127, 255}) EXPECT_EQ(Item(type, 1), nullptr) << type;
        EXPECT_EQ(Ask(&SmBios::GetBiosVendor, 32), Missing());
        EXPECT_EQ(Ask(&SmBios::GetSysManufacturer, 32), Missing());
    }

    // Standard error while a reader is made.
    std::string Diagnostics() {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        Read();
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
        return testing::internal::GetCapturedStderr();
    }
};

TEST_F(TableCopyTest, TableInTheSegmentOfTheEntryPointIsRead) {
    OpenAt(0xF1234);
    ExpectWhole();
}

TEST_F(TableCopyTest, TableBelowTheSegmentIsRead) {
    OpenAt(0xE0010);
    ExpectWhole();
}

TEST_F(TableCopyTest, TableAboveOneMebibyteIsRead) {
    OpenAt(0x1234560);
    ExpectWhole();
}

TEST_F(TableCopyTest, TableInTheFirstSegmentIsRead) {
    OpenAt(0x0400);
    ExpectWhole();
}

TEST_F(TableCopyTest, TableThatCrossesASixtyFourKibibyteBoundaryIsRead) {
    OpenAt(0xDFFF0);
    ExpectWhole();
    OpenAt(0x11FFF0);
    ExpectWhole();
}

TEST_F(TableCopyTest, TableAtAnOddAddressIsReadFromTheStartOfItsSixtyFourKibibytes) {
    sim::SmbiosPlacement placement;
    placement.table = 0x28001;
    Open(placement);
    ExpectWhole();
    EXPECT_EQ(server.GetLog().Lines().at(3), "lseek /dev/mem 0x20000 -> 0x20000");
    EXPECT_EQ(server.GetLog().Lines().at(4), "read /dev/mem 0x20000 196608 -> 196608");
}

TEST_F(TableCopyTest, TableThatRunsPastTheReadIsZeroThere) {
    // The first segment is read alone, 64 KiB: what lies after it is not in the buffer.
    const sim::Bytes bytes = table.Image();
    server.GetMemory().Write(0xFFE0, bytes);
    OpenEntry({0xFFE0, static_cast<std::uint16_t>(bytes.size()), 2});
    EXPECT_EQ(reader->InitOK, 1);
    EXPECT_EQ(reader->BiosDataLength, bytes.size());
    EXPECT_EQ(std::memcmp(reader->BiosData, bytes.data(), 0x20), 0);
    for (std::size_t i = 0x20; i < bytes.size() + 2; ++i) EXPECT_EQ(reader->BiosData[i], 0) << i;
}

TEST_F(TableCopyTest, CopyHoldsTheTableAndTwoZeroBytesAfterIt) {
    const sim::Bytes bytes = table.Image();
    server.GetMemory().Write(0xF8000, std::vector<std::uint8_t>(0x400, 0xEE));
    OpenAt(0xF8000);
    EXPECT_EQ(reader->BiosDataLength, bytes.size());
    EXPECT_EQ(std::memcmp(reader->BiosData, bytes.data(), bytes.size()), 0);
    EXPECT_EQ(reader->BiosData[bytes.size()], 0);
    EXPECT_EQ(reader->BiosData[bytes.size() + 1], 0);
}

TEST_F(TableCopyTest, LongestTableIsCopiedWhole) {
    sim::Bytes bytes(0xFFFF, 0x41);
    server.GetMemory().Write(0x200000, bytes);
    OpenEntry({0x200000, 0xFFFF, 1});
    EXPECT_EQ(reader->BiosDataLength, 0xFFFF);
    EXPECT_EQ(std::memcmp(reader->BiosData, bytes.data(), bytes.size()), 0);
}

TEST_F(TableCopyTest, RefusedDeviceIsReportedOnStandardError) {
    server.Refuse("/dev/mem", EACCES);
    EXPECT_EQ(Diagnostics(), "open /dev/mem\n: Permission denied\n");
    ExpectNoTable(0);
}

TEST_F(TableCopyTest, AbsentDeviceIsReportedOnStandardError) {
    server.Refuse("/dev/mem", ENOENT);
    EXPECT_EQ(Diagnostics(), "open /dev/mem\n: No such file or directory\n");
    ExpectNoTable(0);
}

TEST_F(TableCopyTest, FailedFirstSeekIsReportedOnStandardError) {
    server.GetMemory().PlaceSmbios(table.Image());
    server.Fail("lseek", 1, EINVAL);
    EXPECT_EQ(Diagnostics(), "lseek /dev/mem\n: Invalid argument\n");
    ExpectNoTable(0);
}

TEST_F(TableCopyTest, FailedFirstReadFindsNoAnchorInSilence) {
    server.GetMemory().PlaceSmbios(table.Image());
    server.Fail("read", 1, EPERM);
    EXPECT_EQ(Diagnostics(), "");
    ExpectNoTable(0);
}

TEST_F(TableCopyTest, EntryPointThatAnEarlierReaderLeftInFreedMemoryIsNotFound) {
    mallopt(M_PERTURB, 0);
    sim::SmbiosPlacement placement;
    placement.entry = 0xF8000;
    Open(placement);
    reader.reset();
    server.Fail("read", 1, EPERM);
    Read();
    ExpectNoTable(0);
}

TEST_F(TableCopyTest, ShortFirstReadThatHoldsTheEntryPointCounts) {
    server.GetMemory().PlaceSmbios(table.Image());  // entry point at 0xF0010
    server.ShortRead(1, 0x10 + 31);
    EXPECT_EQ(Diagnostics(), "");
    ExpectWhole();
}

TEST_F(TableCopyTest, ShortFirstReadThatEndsBeforeTheAnchorFindsNothing) {
    server.GetMemory().PlaceSmbios(table.Image());
    server.ShortRead(1, 0x10);
    EXPECT_EQ(Diagnostics(), "");
    ExpectNoTable(0);
}

TEST_F(TableCopyTest, FailedSecondSeekLeavesTheReaderUninitialisedInSilence) {
    server.GetMemory().PlaceSmbios(table.Image());
    server.Fail("lseek", 2, EINVAL);
    EXPECT_EQ(Diagnostics(), "");
    ExpectNoTable(1);
}

TEST_F(TableCopyTest, FailedSecondReadLeavesTheReaderUninitialisedInSilence) {
    server.GetMemory().PlaceSmbios(table.Image());
    server.Fail("read", 2, EPERM);
    EXPECT_EQ(Diagnostics(), "");
    ExpectNoTable(1);
}

TEST_F(TableCopyTest, EmptySecondReadLeavesTheReaderUninitialised) {
    server.GetMemory().PlaceSmbios(table.Image());
    server.ShortRead(2, 0);
    EXPECT_EQ(Diagnostics(), "");
    ExpectNoTable(1);
}

TEST_F(TableCopyTest, ReadPastTheEndOfMemoryLeavesTheReaderUninitialised) {
    server.GetMemory().Resize(0x180000);  // the read at 0xF0000 is one mebibyte long
    server.GetMemory().PlaceSmbios(table.Image());
    EXPECT_EQ(Diagnostics(), "");
    ExpectNoTable(1);
}

TEST_F(TableCopyTest, FailureKeepsTheDmiMatchToo) {
    sim::SmbiosPlacement placement;
    placement.anchor = sim::SmbiosPlacement::Anchor::kDmi;
    server.GetMemory().PlaceSmbios(table.Image(), placement);
    server.Fail("read", 2, EPERM);
    Read();
    EXPECT_EQ(reader->InitOK, 0);
    EXPECT_EQ(reader->IsMatchDMI(), 1);
    EXPECT_EQ(Item(0, 1), nullptr);
    EXPECT_EQ(Item(1, 1), nullptr);
}

TEST_F(TableCopyTest, ShortSecondReadCountsAndTheRestIsZero) {
    const sim::Bytes bytes = table.Image();
    server.GetMemory().Write(0xF8000, bytes);
    server.ShortRead(2, 0x8000 + 9 + 8);  // ends after the first structure's string set
    OpenEntry({0xF8000, static_cast<std::uint16_t>(bytes.size()), 2});
    EXPECT_EQ(reader->InitOK, 1);
    EXPECT_EQ(std::memcmp(reader->BiosData, bytes.data(), 17), 0);
    for (std::size_t i = 17; i < bytes.size() + 2; ++i) EXPECT_EQ(reader->BiosData[i], 0) << i;
    EXPECT_EQ(Ask(&SmBios::GetBiosVendor, 32), Copied("Vendor"));
    EXPECT_EQ(Ask(&SmBios::GetSysManufacturer, 32), Missing());
}

TEST_F(TableCopyTest, ShortSecondReadBeforeTheTableGivesATableOfZeroes) {
    const sim::Bytes bytes = table.Image();
    server.GetMemory().Write(0xF8000, bytes);
    server.ShortRead(2, 1);
    OpenEntry({0xF8000, static_cast<std::uint16_t>(bytes.size()), 2});
    EXPECT_EQ(reader->InitOK, 1);
    for (std::size_t i = 0; i < bytes.size() + 2; ++i) EXPECT_EQ(reader->BiosData[i], 0) << i;
}

TEST_F(TableCopyTest, AddressRangePastFourGibibytesLeavesTheReaderUninitialised) {
    for (const std::uint32_t address :
         {0x80000000u, 0xC0000000u, 0xFFFEFFFFu, 0xFFFF0000u, 0xFFFFFFF0u}) {
        testing::internal::CaptureStderr();
        server.GetLog().Clear();
        OpenEntry({address, 64, 2});
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << address;
        EXPECT_EQ(server.GetLog().Count("read"), 1u) << address;  // there is nothing to read there
        ExpectNoTable(1);
    }
}

TEST_F(TableCopyTest, ReadOfTwoGibibytesLeavesTheReaderUninitialised) {
    OpenEntry({0x7FFF0000, 64, 2});
    ExpectNoTable(1);
}

TEST_F(TableCopyTest, EveryFailedAllocationLeavesTheReaderUninitialised) {
    server.GetMemory().PlaceSmbios(table.Image());
    int failures = 0;
    for (int nth = 1; nth <= 8; ++nth) {
        server.FailAllocation(nth);
        reader.reset();
        ASSERT_NO_THROW(reader = std::make_unique<SmBios>()) << nth;
        if (reader->InitOK != 0) break;
        ++failures;
        EXPECT_EQ(reader->BiosData, nullptr) << nth;
        EXPECT_EQ(Item(1, 1), nullptr) << nth;
    }
    EXPECT_GE(failures, 3);  // scan buffer, table copy, read buffer
    EXPECT_LT(failures, 8);
}

TEST_F(TableCopyTest, ReaderMadeWithATextClaimsToBeInitialisedAndHasNoTable) {
    server.GetMemory().PlaceSmbios(table.Image());
    char text[] = "ignored";
    for (char* argument : {text, static_cast<char*>(nullptr)}) {
        server.GetLog().Clear();
        reader = std::make_unique<SmBios>(argument);
        EXPECT_TRUE(server.GetLog().Accesses().empty());
        EXPECT_EQ(reader->IsInitOK(), 1);
        EXPECT_EQ(reader->IsMatchSmBios(), 0);
        EXPECT_EQ(reader->IsMatchDMI(), 0);
        EXPECT_EQ(reader->BiosData, nullptr);
        EXPECT_EQ(reader->BiosDataLength, 0u);
        for (int type = 0; type < 256; ++type) EXPECT_EQ(Item(type, 1), nullptr) << type;
        EXPECT_EQ(Ask(&SmBios::GetSysManufacturer, 32), Missing());
        EXPECT_EQ(reader->GetFanQuantity(), 0);
    }
    EXPECT_STREQ(text, "ignored");
}

TEST_F(TableCopyTest, ItemsOutliveTheReader) {
    Open();
    const std::unique_ptr<BiosDataItem> item = Item(1, 1);
    reader.reset();
    EXPECT_STREQ(item->GetString(1), "Maker");
}

TEST_F(TableCopyTest, ReadersAreIndependent) {
    Open();
    const std::unique_ptr<SmBios> first = std::move(reader);
    NewTable().Add(0, 0, 9).String(4, "Other");
    Open();
    EXPECT_EQ(Ask(&SmBios::GetBiosVendor, 32), Copied("Other"));
    reader = std::make_unique<SmBios>();
    std::unique_ptr<BiosDataItem> item(first->GetItem(0, 1));
    EXPECT_STREQ(item->GetString(1), "Vendor");
}

}  // namespace
