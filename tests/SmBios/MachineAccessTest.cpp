// SPDX-License-Identifier: MIT
//
// What a reader asks of the machine: five calls and a close while it is made, none afterwards.
#include "support/EntryPointImage.h"
#include "support/SmBiosTest.h"

namespace {

using ::testing::ElementsAre;

class MachineAccess : public SmBiosTest {
protected:
    MachineAccess() {
        table.add(0, 0, 9).string(4, "Vendor");
        table.add(4, 1, 35).word(26, 2);
        table.add(7, 2, 19);
    }

    std::vector<std::string> AccessesOfANewReader() {
        server.log().clear();
        Read();
        return server.log().lines();
    }

    std::vector<std::string> AccessesWithTableAt(std::uint32_t address) {
        const sim::Bytes bytes = table.bytes();
        server.memory().resize(0x8000000);
        server.memory().write(address, bytes);
        server.memory().write(
            0xF0000, SmbiosEntryImage({address, static_cast<std::uint16_t>(bytes.size()), 3}));
        return AccessesOfANewReader();
    }
};

TEST_F(MachineAccess, MemoryIsReadTwiceAndTheDeviceIsClosed) {
    server.memory().placeSmbios(table.bytes());
    EXPECT_THAT(
        AccessesOfANewReader(),
        ElementsAre("open /dev/mem O_RDONLY -> ok", "lseek /dev/mem 0xF0000 -> 0xF0000",
                    "read /dev/mem 0xF0000 65520 -> 65520", "lseek /dev/mem 0xF0000 -> 0xF0000",
                    "read /dev/mem 0xF0000 1048576 -> 1048576", "close /dev/mem -> 0"));
}

TEST_F(MachineAccess, SecondReadStartsAtThe64KibBoundaryAndIsAsLongAsItsAddressAnd64Kib) {
    EXPECT_THAT(
        AccessesWithTableAt(0xE1234),
        ElementsAre("open /dev/mem O_RDONLY -> ok", "lseek /dev/mem 0xF0000 -> 0xF0000",
                    "read /dev/mem 0xF0000 65520 -> 65520", "lseek /dev/mem 0xE0000 -> 0xE0000",
                    "read /dev/mem 0xE0000 983040 -> 983040", "close /dev/mem -> 0"));
    EXPECT_THAT(
        AccessesWithTableAt(0x3FF0010),
        ElementsAre("open /dev/mem O_RDONLY -> ok", "lseek /dev/mem 0xF0000 -> 0xF0000",
                    "read /dev/mem 0xF0000 65520 -> 65520", "lseek /dev/mem 0x3FF0000 -> 0x3FF0000",
                    "read /dev/mem 0x3FF0000 67108864 -> 67108864", "close /dev/mem -> 0"));
    EXPECT_THAT(AccessesWithTableAt(0x0400),
                ElementsAre("open /dev/mem O_RDONLY -> ok", "lseek /dev/mem 0xF0000 -> 0xF0000",
                            "read /dev/mem 0xF0000 65520 -> 65520", "lseek /dev/mem 0x0 -> 0x0",
                            "read /dev/mem 0x0 65536 -> 65536", "close /dev/mem -> 0"));
}

TEST_F(MachineAccess, WithoutAnAnchorMemoryIsReadOnce) {
    EXPECT_THAT(AccessesOfANewReader(),
                ElementsAre("open /dev/mem O_RDONLY -> ok", "lseek /dev/mem 0xF0000 -> 0xF0000",
                            "read /dev/mem 0xF0000 65520 -> 65520", "close /dev/mem -> 0"));
}

TEST_F(MachineAccess, RefusedDeviceIsNotTouchedAgain) {
    server.refuse("/dev/mem", EPERM);
    testing::internal::CaptureStderr();
    EXPECT_THAT(AccessesOfANewReader(), ElementsAre("open /dev/mem O_RDONLY -> -1 EPERM"));
    testing::internal::GetCapturedStderr();
}

TEST_F(MachineAccess, DeviceIsClosedAfterEveryFailure) {
    server.memory().placeSmbios(table.bytes());
    for (const char* call : {"lseek", "read"}) {
        for (int nth = 1; nth <= 2; ++nth) {
            server.fail(call, nth, EIO);
            testing::internal::CaptureStderr();
            const std::vector<std::string> accesses = AccessesOfANewReader();
            testing::internal::GetCapturedStderr();
            EXPECT_EQ(reader->InitOK, 0) << call << nth;
            EXPECT_EQ(accesses.back(), "close /dev/mem -> 0") << call << nth;
            EXPECT_EQ(server.log().count("open"), 1u);
            EXPECT_EQ(server.log().count("close"), 1u);
        }
    }
}

TEST_F(MachineAccess, DeviceIsClosedAfterEveryFailedAllocation) {
    server.memory().placeSmbios(table.bytes());
    std::size_t before = server.allocations();
    Read();
    const int needed = static_cast<int>(server.allocations() - before);
    EXPECT_GE(needed, 3);
    for (int nth = 1; nth <= needed; ++nth) {
        server.failAllocation(nth);
        server.log().clear();
        Read();
        EXPECT_EQ(reader->InitOK, 0) << nth;
        EXPECT_EQ(server.log().count("open"), server.log().count("close")) << nth;
    }
}

TEST_F(MachineAccess, GettersAskNothingOfTheMachine) {
    server.memory().placeSmbios(table.bytes());
    Read();
    server.log().clear();
    EXPECT_EQ(Ask(&SmBios::GetBiosVendor, 32), Copied("Vendor"));
    EXPECT_EQ(reader->GetProcessorQuantity(), 0);
    EXPECT_EQ(AskNth(&SmBios::GetCacheMaxSize, 1, 0), Terminated("0 KB"));
    LocalMemInfo info;
    EXPECT_EQ(reader->GetMemoryInformation(&info), -1);
    EXPECT_EQ(reader->GetPortQuantity(), 0);
    EXPECT_EQ(Item(4, 2), nullptr);
    reader.reset();
    EXPECT_TRUE(server.log().accesses().empty());
}

TEST_F(MachineAccess, TableIsNotReadAgainWhenMemoryChanges) {
    server.memory().placeSmbios(table.bytes());
    Read();
    NewTable().add(0, 0, 9).string(4, "Other");
    server.memory().placeSmbios(table.bytes());
    EXPECT_EQ(Ask(&SmBios::GetBiosVendor, 32), Copied("Vendor"));
}

}  // namespace
