// SPDX-License-Identifier: MIT
//
// What a reader asks of the machine: five calls and a close while it is made, none afterwards.
#include "support/EntryPointImage.h"
#include "support/SmBiosTest.h"

namespace {

using ::testing::ElementsAre;

class MachineAccessTest : public SmBiosTest {
protected:
    MachineAccessTest() {
        table.Add(0, 0, 9).String(4, "Vendor");
        table.Add(4, 1, 35).Word(26, 2);
        table.Add(7, 2, 19);
    }

    std::vector<std::string> AccessesOfANewReader() {
        server.GetLog().Clear();
        Read();
        return server.GetLog().Lines();
    }

    std::vector<std::string> AccessesWithTableAt(std::uint32_t address) {
        const sim::Bytes bytes = table.Image();
        server.GetMemory().Resize(0x8000000);
        server.GetMemory().Write(address, bytes);
        server.GetMemory().Write(
            0xF0000, SmbiosEntryImage({address, static_cast<std::uint16_t>(bytes.size()), 3}));
        return AccessesOfANewReader();
    }
};

TEST_F(MachineAccessTest, MemoryIsReadTwiceAndTheDeviceIsClosed) {
    server.GetMemory().PlaceSmbios(table.Image());
    EXPECT_THAT(
        AccessesOfANewReader(),
        ElementsAre("open /dev/mem O_RDONLY -> ok", "lseek /dev/mem 0xF0000 -> 0xF0000",
                    "read /dev/mem 0xF0000 65520 -> 65520", "lseek /dev/mem 0xF0000 -> 0xF0000",
                    "read /dev/mem 0xF0000 1048576 -> 1048576", "close /dev/mem -> 0"));
}

TEST_F(MachineAccessTest, SecondReadStartsAtThe64KibBoundaryAndIsAsLongAsItsAddressAnd64Kib) {
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

TEST_F(MachineAccessTest, WithoutAnAnchorMemoryIsReadOnce) {
    EXPECT_THAT(AccessesOfANewReader(),
                ElementsAre("open /dev/mem O_RDONLY -> ok", "lseek /dev/mem 0xF0000 -> 0xF0000",
                            "read /dev/mem 0xF0000 65520 -> 65520", "close /dev/mem -> 0"));
}

TEST_F(MachineAccessTest, RefusedDeviceIsNotTouchedAgain) {
    server.Refuse("/dev/mem", EPERM);
    testing::internal::CaptureStderr();
    EXPECT_THAT(AccessesOfANewReader(), ElementsAre("open /dev/mem O_RDONLY -> -1 EPERM"));
    testing::internal::GetCapturedStderr();
}

TEST_F(MachineAccessTest, DeviceIsClosedAfterEveryFailure) {
    server.GetMemory().PlaceSmbios(table.Image());
    for (const char* call : {"lseek", "read"}) {
        for (int nth = 1; nth <= 2; ++nth) {
            server.Fail(call, nth, EIO);
            testing::internal::CaptureStderr();
            const std::vector<std::string> accesses = AccessesOfANewReader();
            testing::internal::GetCapturedStderr();
            EXPECT_EQ(reader->InitOK, 0) << call << nth;
            EXPECT_EQ(accesses.back(), "close /dev/mem -> 0") << call << nth;
            EXPECT_EQ(server.GetLog().Count("open"), 1u);
            EXPECT_EQ(server.GetLog().Count("close"), 1u);
        }
    }
}

TEST_F(MachineAccessTest, DeviceIsClosedAfterEveryFailedAllocation) {
    server.GetMemory().PlaceSmbios(table.Image());
    std::size_t before = server.Allocations();
    Read();
    const int needed = static_cast<int>(server.Allocations() - before);
    EXPECT_GE(needed, 3);
    for (int nth = 1; nth <= needed; ++nth) {
        server.FailAllocation(nth);
        server.GetLog().Clear();
        Read();
        EXPECT_EQ(reader->InitOK, 0) << nth;
        EXPECT_EQ(server.GetLog().Count("open"), server.GetLog().Count("close")) << nth;
    }
}

TEST_F(MachineAccessTest, GettersAskNothingOfTheMachine) {
    server.GetMemory().PlaceSmbios(table.Image());
    Read();
    server.GetLog().Clear();
    EXPECT_EQ(Ask(&SmBios::GetBiosVendor, 32), Copied("Vendor"));
    EXPECT_EQ(reader->GetProcessorQuantity(), 0);
    EXPECT_EQ(AskNth(&SmBios::GetCacheMaxSize, 1, 0), Terminated("0 KB"));
    LocalMemInfo info;
    EXPECT_EQ(reader->GetMemoryInformation(&info), -1);
    EXPECT_EQ(reader->GetPortQuantity(), 0);
    EXPECT_EQ(Item(4, 2), nullptr);
    reader.reset();
    EXPECT_TRUE(server.GetLog().Accesses().empty());
}

TEST_F(MachineAccessTest, TableIsNotReadAgainWhenMemoryChanges) {
    server.GetMemory().PlaceSmbios(table.Image());
    Read();
    NewTable().Add(0, 0, 9).String(4, "Other");
    server.GetMemory().PlaceSmbios(table.Image());
    EXPECT_EQ(Ask(&SmBios::GetBiosVendor, 32), Copied("Vendor"));
}

}  // namespace
