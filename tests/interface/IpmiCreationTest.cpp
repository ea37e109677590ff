// SPDX-License-Identifier: MIT
//
// Calls from within the creation and the destruction of the IPMI object, and the calls that create
// it.

#include <unistd.h>

#include "Talvane.h"
#include "support/IpmiTest.h"

namespace {

using ::testing::Each;
using ::testing::SizeIs;

int answers[3];
FanInformation innerFans;

void AskForFans() {
    answers[0] = GetIpmiInfo(TALVANE_FANS, &innerFans);
    answers[1] = GetIpmiInfo(TALVANE_FANS, &innerFans);
    answers[2] = GetIpmiInfo(0, nullptr);
}

class IpmiCreationTest : public IpmiTest {
protected:
    IpmiCreationTest() { Add(Fan("F", 0x30), 70); }

    // `create` makes the object. A sensor query from within the creation answers busy and does
    // nothing; afterwards nothing is busy.
    void ExpectQueryWithinIsBusy(void (*create)()) {
        server.During("open", AskForFans);
        create();
        EXPECT_THAT(answers, Each(1));
        EXPECT_EQ(innerFans.quantity, 0);
        EXPECT_EQ(server.GetLog().Count("open"), 1u) << "one object";
        EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 0) << "no flag was left set";
        EXPECT_EQ(fans.quantity, 1);
    }

    FanInformation fans{};
};

TEST_F(IpmiCreationTest, AQueryWithinTheCreationByIsIpmiSupportIsBusyAndLeavesNoFlag) {
    ExpectQueryWithinIsBusy([] { EXPECT_EQ(IsIpmiSupport(), 1); });
}

TEST_F(IpmiCreationTest, AQueryWithinTheCreationByAWatchdogCallIsBusyAndLeavesNoFlag) {
    ExpectQueryWithinIsBusy([] { EXPECT_EQ(SetWatchDogTimer(1, 10000), 0); });
}

TEST_F(IpmiCreationTest, AQueryWithinTheCreationByAThresholdListIsBusyAndLeavesNoFlag) {
    ExpectQueryWithinIsBusy([] { EXPECT_EQ(GetAllThresholdInfo(nullptr), -1); });
}

TEST_F(IpmiCreationTest, AQueryWithinTheCreationByAQueryIsBusyAndTheOuterOneIsServed) {
    server.During("open", AskForFans);
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 0);
    EXPECT_EQ(fans.quantity, 1);
    EXPECT_THAT(answers, Each(1));
}

TEST_F(IpmiCreationTest, ASettingWithinTheCreationByASettingIsBusy) {
    server.During("open", [] { answers[0] = SetThresholdInfo(29, 4, 0, 1.0); });
    EXPECT_EQ(SetThresholdInfo(29, kFan, 0, 1.0), 0);
    EXPECT_EQ(answers[0], 1);
    EXPECT_EQ(SetThresholdInfo(29, kFan, 0, 1.0), 0);
}

TEST_F(IpmiCreationTest, ReleaseWithinTheCreationFreesNothing) {
    server.During("open", [] { answers[0] = release(); });
    EXPECT_EQ(IsIpmiSupport(), 1);
    EXPECT_EQ(answers[0], 0);
    EXPECT_EQ(server.GetLog().Count("close"), 0u);
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 0);
}

TEST_F(IpmiCreationTest, ACallWithinTheReleaseCreatesAnotherObject) {
    EXPECT_EQ(IsIpmiSupport(), 1);
    server.During("close", [] { answers[0] = IsIpmiSupport(); });
    EXPECT_EQ(release(), 0);
    EXPECT_EQ(answers[0], 1);
    EXPECT_EQ(server.GetLog().Count("close"), 3u);
    EXPECT_EQ(release(), 0);
    EXPECT_EQ(server.GetLog().Count("close"), 6u) << "the other object is freed in its turn";
}

TEST_F(IpmiCreationTest, AThresholdListWithoutARecordCreatesTheObjectFirst) {
    EXPECT_EQ(GetAllThresholdInfo(nullptr), -1);
    EXPECT_EQ(server.GetLog().Count("open"), 1u);
    EXPECT_THAT(bmc.Requests(), SizeIs(0));
    EXPECT_EQ(release(), 0);
    EXPECT_EQ(server.GetLog().Count("close"), 3u);
}

TEST_F(IpmiCreationTest, DescriptorZeroCountsAsOpenAndIsClosed) {
    ASSERT_EQ(::close(STDIN_FILENO), 0);
    EXPECT_EQ(IsIpmiSupport(), 1);
    ASSERT_EQ(hDevice, STDIN_FILENO) << "the lowest free one";
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 0);
    EXPECT_EQ(release(), 0);
    EXPECT_EQ(server.GetLog().Count("close"), 3u);
}

}  // namespace
