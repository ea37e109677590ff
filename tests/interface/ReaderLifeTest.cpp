// SPDX-License-Identifier: MIT
//
// The process's one reader: made on first use, kept, and freed by release.
#include "support/InterfaceTest.h"

namespace {

class ReaderLifeTest : public InterfaceTest {
protected:
    void PlaceMaker(const std::string& maker) {
        table = sim::SmbiosTable();
        table.Add(0, 0, 20);
        table.Add(1, 1, 8).String(4, maker);
        Place();
    }

    void ExpectMaker(const std::string& maker) {
        ExpectRecord(kSystem, RecordImage(80), RecordImage(80).Copied(32, maker));
    }
};

TEST_F(ReaderLifeTest, NothingIsReadBeforeTheFirstCall) {
    PlaceMaker("first");
    EXPECT_TRUE(server.GetLog().Accesses().empty());
}

TEST_F(ReaderLifeTest, FirstCallReadsTheMachineInSixCalls) {
    PlaceMaker("first");
    ExpectMaker("first");
    EXPECT_THAT(server.GetLog().Lines(),
                testing::ElementsAre(
                    "open /dev/mem O_RDONLY -> ok", "lseek /dev/mem 0xF0000 -> 0xF0000",
                    "read /dev/mem 0xF0000 65520 -> 65520", "lseek /dev/mem 0xF0000 -> 0xF0000",
                    "read /dev/mem 0xF0000 1048576 -> 1048576", "close /dev/mem -> 0"));
}

TEST_F(ReaderLifeTest, FurtherCallsOfEveryTableCommandReadNothing) {
    PlaceMaker("first");
    ExpectMaker("first");
    server.GetLog().Clear();
    for (const unsigned long command :
         {0x10000UL, 0x20000UL, 0x40000UL, 0x80000UL, 0x800000UL, 0x1000000UL, 0x2000000UL,
          0x4000000UL, 0x8000000UL, 0x10000000UL}) {
        RecordImage record(8192);
        EXPECT_EQ(Get(command, record), 0) << command;
        EXPECT_EQ(server.GetLog().Lines(), std::vector<std::string>()) << command;
    }
    EXPECT_EQ(IsSmBiosSupport(), 1);
    EXPECT_EQ(server.GetLog().Lines(), std::vector<std::string>());
}

TEST_F(ReaderLifeTest, ChangedMemoryIsSeenAfterReleaseOnly) {
    PlaceMaker("first");
    ExpectMaker("first");
    PlaceMaker("second");
    ExpectMaker("first");
    EXPECT_EQ(release(), 0);
    ExpectMaker("second");
}

TEST_F(ReaderLifeTest, ReleaseTwiceInARowIsHarmless) {
    EXPECT_EQ(release(), 0);
    EXPECT_EQ(release(), 0);
    PlaceMaker("first");
    ExpectMaker("first");
    EXPECT_EQ(release(), 0);
    EXPECT_EQ(release(), 0);
    ExpectMaker("first");
    EXPECT_EQ(server.GetLog().Count("open"), 2u);
}

TEST_F(ReaderLifeTest, ReleaseTouchesNothing) {
    PlaceMaker("first");
    ExpectMaker("first");
    server.GetLog().Clear();
    EXPECT_EQ(release(), 0);
    EXPECT_TRUE(server.GetLog().Accesses().empty());
}

TEST_F(ReaderLifeTest, ReaderThatFailedStaysInPlaceAndFailsFast) {
    PlaceMaker("first");
    server.Fail("lseek", 1);
    testing::internal::CaptureStderr();
    RecordImage record(80);
    EXPECT_EQ(Get(kSystem, record), -1);
    EXPECT_EQ(Get(kSystem, record), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "lseek /dev/mem\n: Input/output error\n");
    EXPECT_EQ(server.GetLog().Count("open"), 1u);
    EXPECT_TRUE(SameBytes(RecordImage(80), record));
    EXPECT_EQ(release(), 0);
    ExpectMaker("first");
}

TEST_F(ReaderLifeTest, SupportQueryMakesTheReaderAndGetInfoUsesIt) {
    PlaceMaker("first");
    EXPECT_EQ(IsSmBiosSupport(), 1);
    EXPECT_EQ(server.GetLog().Count("open"), 1u);
    ExpectMaker("first");
    EXPECT_EQ(server.GetLog().Count("open"), 1u);
    EXPECT_EQ(IsSmBiosSupport(), 1);
}

TEST_F(ReaderLifeTest, SupportIsZeroWithoutAnEntryPoint) {
    EXPECT_EQ(IsSmBiosSupport(), 0);
    EXPECT_EQ(IsSmBiosSupport(), 0);
    EXPECT_EQ(server.GetLog().Count("open"), 1u);
}

TEST_F(ReaderLifeTest, SupportIsZeroWithALegacyDmiEntryPointAlone) {
    table.Add(1, 1, 8).String(4, "Maker");
    sim::SmbiosPlacement placement;
    placement.anchor = sim::SmbiosPlacement::Anchor::kDmi;
    Place(placement);
    EXPECT_EQ(IsSmBiosSupport(), 0);
    ExpectMaker("Maker");
}

TEST_F(ReaderLifeTest, SupportIsOneWhenTheTableCouldNotBeReadAndGetInfoFails) {
    PlaceMaker("first");
    server.Fail("read", 2);
    EXPECT_EQ(IsSmBiosSupport(), 1);
    RecordImage record(80);
    EXPECT_EQ(Get(kSystem, record), -1);
    EXPECT_TRUE(SameBytes(RecordImage(80), record));
}

TEST_F(ReaderLifeTest, SupportIsZeroWhenTheDeviceIsRefused) {
    PlaceMaker("first");
    server.Refuse("/dev/mem");
    testing::internal::CaptureStderr();
    EXPECT_EQ(IsSmBiosSupport(), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "open /dev/mem\n: Permission denied\n");
}

TEST_F(ReaderLifeTest, SupportQueryPassesAnExceptionOn) {
    PlaceMaker("first");
    server.FailAllocation(1);
    EXPECT_THROW(IsSmBiosSupport(), std::bad_alloc);
    EXPECT_EQ(IsSmBiosSupport(), 1);
}

}  // namespace
