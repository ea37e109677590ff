// SPDX-License-Identifier: MIT
//
// The PCI report: what it writes into the record, what it leaves alone, and how it fails.
#include <algorithm>
#include <cstring>

#include "PCI/PciTest.h"
#include "Talvane.h"
#include "support/RecordImage.h"

namespace {

using ::testing::ElementsAre;

// Where an entry's fields lie, from the binary interface.
constexpr std::size_t kEntrySize = 444;
constexpr std::size_t EntryAt(std::size_t index) {
    return 4 + index * kEntrySize;
}
constexpr std::size_t kModel = 4, kType = 68, kDesc = 132, kIrq = 164, kIoBase = 172;
constexpr std::size_t kRevision = 184, kStatus = 188;

// A text field that was cleared before.
void Field(RecordImage& image, std::size_t offset, std::size_t size, std::string text) {
    text.resize(size, '\0');
    image.Copied(offset, text);
}

// The calls but for port instructions.
std::vector<std::string> CallsOf(sim::SimulatedServer& server) {
    std::vector<std::string> calls;
    for (const sim::Access& call : server.GetLog().Calls()) calls.push_back(call.Text());
    return calls;
}

class PciReportTest : public PciTest {};

TEST_F(PciReportTest, WritesTheFieldsOfOneFunctionAndNothingElse) {
    Put({2, 10, 1}, PciHeader()
                        .Code(0x02, 0x00, 0x00)
                        .Status(0x0290)
                        .Revision(0x42)
                        .BaseAddress(0xFEBC0001)
                        .InterruptLine(11));
    RecordImage expected(sizeof(DeviceInformation));
    expected.Number(0, 1);
    Field(expected, EntryAt(0) + kModel, 64, "Network controller");
    Field(expected, EntryAt(0) + kType, 64, "Ethernet controller");
    expected.Text(EntryAt(0) + kDesc, "bus:2, dev:10, func:1");
    expected.Number(EntryAt(0) + kIrq, 11);
    expected.Number(EntryAt(0) + kIoBase, static_cast<std::int32_t>(0xFEBC0001));
    expected.Number(EntryAt(0) + kRevision, 0x42);
    Field(expected, EntryAt(0) + kStatus, 256,
          "Capabilities List;Fast Back-to-Back Capable;Speed=Medium;");

    RecordImage actual(sizeof(DeviceInformation));
    EXPECT_EQ(GetPciInfo(static_cast<DeviceInformation*>(actual.Data())), 0);
    EXPECT_TRUE(SameBytes(expected, actual));
}

TEST_F(PciReportTest, EntriesFollowTheScanAndLaterOnesStay) {
    Put({1, 0, 0}, PciHeader().Revision(3));
    Put({0, 0, 1}, PciHeader().Revision(2));
    Put({0, 0, 0}, PciHeader().Revision(1));
    std::memset(&record, 0x5A, sizeof record);
    EXPECT_EQ(GetPciInfo(&record), 0);
    EXPECT_EQ(record.quantity, 3);
    EXPECT_STREQ(record.dev[0].desc, "bus:0, dev:0, func:0");
    EXPECT_STREQ(record.dev[1].desc, "bus:0, dev:0, func:1");
    EXPECT_STREQ(record.dev[2].desc, "bus:1, dev:0, func:0");
    EXPECT_EQ(record.dev[1].revision, 2);
    EXPECT_EQ(record.dev[2].revision, 3);
    DEV untouched;
    std::memset(&untouched, 0x5A, sizeof untouched);
    for (int i = 3; i < 64; ++i)
        EXPECT_EQ(std::memcmp(&record.dev[i], &untouched, sizeof untouched), 0) << i;
}

TEST_F(PciReportTest, DescriptionHasRoomForTheLastFunction) {
    Put({10, 31, 7});
    EXPECT_STREQ(Report().dev[0].desc, "bus:10, dev:31, func:7");
}

TEST_F(PciReportTest, ServerWithoutFunctionsHasAQuantityOfZero) {
    record.quantity = 7;
    EXPECT_EQ(GetPciInfo(&record), 0);
    EXPECT_EQ(record.quantity, 0);
}

TEST_F(PciReportTest, InterruptLineOfAllOnesIsReportedAsZero) {
    EXPECT_EQ(ReportOf(PciHeader().InterruptLine(0xFF)).IRQ, 0);
}

TEST_F(PciReportTest, OtherInterruptLinesAreReportedAsTheyAre) {
    EXPECT_EQ(ReportOf(PciHeader().InterruptLine(0x0B)).IRQ, 11);
    EXPECT_EQ(ReportOf(PciHeader().InterruptLine(0x00)).IRQ, 0);
    EXPECT_EQ(ReportOf(PciHeader().InterruptLine(0xFE)).IRQ, 254);
}

TEST_F(PciReportTest, FirstBaseAddressKeepsItsFlagBits) {
    EXPECT_EQ(ReportOf(PciHeader().BaseAddress(0x0000FFA1)).IOBase, 0xFFA1);
    EXPECT_EQ(ReportOf(PciHeader().BaseAddress(0xFFFFFFF8)).IOBase, -8);
}

TEST_F(PciReportTest, StatusRegisterHasOneTextForEachBit) {
    constexpr std::pair<std::uint16_t, const char*> cases[] = {
        {0x0000, "Speed=Fast;"},
        {0x0200, "Speed=Medium;"},
        {0x0400, "Speed=Slow;"},
        {0x0600, ""},
        {0x0608, "Interrupt Status;"},
        {0x0610, "Capabilities List;"},
        {0x0620, "66 MHz Capable;"},
        {0x0680, "Fast Back-to-Back Capable;"},
        {0x0700, "Master Data Parity Error;"},
        {0x0E00, "Signaled Target Abort;"},
        {0x1600, "Received Target Abort;"},
        {0x2600, "Received Master Abort;"},
        {0x4600, "Signaled system Error;"},
        {0x8600, "Detected Parity Error;"},
        // Bits 0 to 2 and 6 have no text.
        {0x0047, "Speed=Fast;"},
        {0x0247, "Speed=Medium;"},
        {0x0447, "Speed=Slow;"},
        {0x0647, ""},
    };
    unsigned device = 0;
    for (const auto& [status, text] : cases) Put({0, device++, 0}, PciHeader().Status(status));
    ASSERT_EQ(Report().quantity, static_cast<int>(std::size(cases)));
    const DEV* entry = record.dev;
    for (const auto& [status, text] : cases) EXPECT_STREQ((entry++)->status, text) << status;
}

TEST_F(PciReportTest, Status0290HasExactlyItsThreeTexts) {
    EXPECT_STREQ(ReportOf(PciHeader().Status(0x0290)).status,
                 "Capabilities List;Fast Back-to-Back Capable;Speed=Medium;");
}

TEST_F(PciReportTest, AllStatusTextsAtOnceStandInTheOrderOfTheirBits) {
    EXPECT_STREQ(ReportOf(PciHeader().Status(0xFBFF)).status,
                 "Interrupt Status;Capabilities List;66 MHz Capable;Fast Back-to-Back Capable;"
                 "Master Data Parity Error;Speed=Medium;Signaled Target Abort;"
                 "Received Target Abort;Received Master Abort;Signaled system Error;"
                 "Detected Parity Error;");
}

TEST_F(PciReportTest, StatusIsClearedBeforeItsTextsAreAppended) {
    Put({0, 0, 0}, PciHeader().Status(0x0610));
    std::strcpy(record.dev[0].status, "of the report before;");
    EXPECT_EQ(GetPciInfo(&record), 0);
    EXPECT_STREQ(record.dev[0].status, "Capabilities List;");
}

TEST_F(PciReportTest, TellsTheKernelThatItUsesPortsAndThatItIsDone) {
    EXPECT_EQ(Report().quantity, 0);
    EXPECT_THAT(CallsOf(server), ElementsAre("iopl 3 -> 0", "iopl 0 -> 0"));
    EXPECT_EQ(server.GetLog().Count("in"), 45056u);
    EXPECT_EQ(server.GetLog().Count("out"), 45056u);
}

TEST_F(PciReportTest, WithoutPrivilegeNoPortIsTouchedAndNothingIsFound) {
    Put({0, 0, 0});
    server.Fail("iopl", 1, EPERM);
    record.quantity = 7;
    EXPECT_EQ(GetPciInfo(&record), 0);
    EXPECT_EQ(record.quantity, 0);
    EXPECT_THAT(server.GetLog().Lines(), ElementsAre("iopl 3 -> -1 EPERM", "iopl 0 -> 0"));
}

TEST_F(PciReportTest, SixtyFourFunctionsAreReported) {
    PutMany(64);
    EXPECT_EQ(Report().quantity, 64);
    EXPECT_STREQ(record.dev[63].desc, "bus:0, dev:7, func:7");
}

TEST_F(PciReportTest, SixtyFiveFunctionsAreTriedThreeTimesWithALongPauseAfterEach) {
    PutMany(65);
    RecordImage expected(sizeof(DeviceInformation));
    RecordImage actual(sizeof(DeviceInformation));
    EXPECT_EQ(GetPciInfo(static_cast<DeviceInformation*>(actual.Data())), -1);
    EXPECT_TRUE(SameBytes(expected, actual));
    EXPECT_THAT(CallsOf(server), ElementsAre("iopl 3 -> 0", "sleep 5000 -> 0", "sleep 5000 -> 0",
                                             "sleep 5000 -> 0", "iopl 0 -> 0"));
    EXPECT_EQ(server.Clock(), std::chrono::seconds(15000));
    EXPECT_EQ(server.GetLog().Count("in"), 3u * 65 * 16);
}

sim::SimulatedServer* serverOfTheAction = nullptr;

TEST_F(PciReportTest, AttemptAfterAFailedOneCanSucceed) {
    PutMany(65);
    serverOfTheAction = &server;
    server.During("sleep", [] {
        serverOfTheAction->GetPci().Set({0, 8, 0}, PciHeader().Id(0, 0).Image());
    });
    EXPECT_EQ(Report().quantity, 64);
    EXPECT_EQ(server.Clock(), std::chrono::seconds(5000));
}

TEST_F(PciReportTest, PrivilegeIsLoweredWhenTheListFindsNoMemory) {
    Put({0, 0, 0});
    server.FailAllocation(1);
    EXPECT_THROW((void)GetPciInfo(&record), std::bad_alloc);
    EXPECT_THAT(CallsOf(server), ElementsAre("iopl 3 -> 0", "iopl 0 -> 0"));
}

TEST_F(PciReportTest, CommandOfGetInfoNeedsNoSmbiosTable) {
    Put({0, 3, 0});
    EXPECT_EQ(GetInfo(TALVANE_PCI, &record), 0);
    EXPECT_EQ(record.quantity, 1);
    EXPECT_STREQ(record.dev[0].desc, "bus:0, dev:3, func:0");
    EXPECT_EQ(server.GetLog().Count("open"), 0u);
}

TEST_F(PciReportTest, CommandOfGetInfoIgnoresAFailedScan) {
    PutMany(65);
    record.quantity = 7;
    EXPECT_EQ(GetInfo(0x100000, &record), 0);
    EXPECT_EQ(record.quantity, 7);
}

int nestedAnswer = 0;

TEST_F(PciReportTest, CommandInsideTheCommandIsRefusedAsBusy) {
    server.During("in", [] { nestedAnswer = GetInfo(TALVANE_PCI, nullptr); });
    EXPECT_EQ(GetInfo(TALVANE_PCI, &record), 0);
    EXPECT_EQ(nestedAnswer, 1);
    EXPECT_EQ(GetInfo(TALVANE_PCI, &record), 0);
}

TEST(CopyStringTest, CopiesAllButOneOfTheRoomAndNoTerminator) {
    for (const auto& [room, expected] : {std::pair<unsigned, const char*>{8, "abcde..."},
                                         {6, "abcde..."},
                                         {5, "abcd...."},
                                         {2, "a......."},
                                         {1, "........"},
                                         {0, "........"}}) {
        char target[] = "........";
        CopyString(target, "abcde", room);
        EXPECT_STREQ(target, expected) << room;
    }
}

}  // namespace
