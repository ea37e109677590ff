// SPDX-License-Identifier: MIT
//
// The one IPMI object of the process: made on first use, freed by release.

#include <new>

#include "Talvane.h"
#include "support/IpmiTest.h"

namespace {

using ::testing::Each;
using ::testing::SizeIs;

int answersWhileOpening[7];

class IpmiObjectTest : public IpmiTest {
protected:
    FanInformation fans{};
};

TEST_F(IpmiObjectTest, ObjectIsMadeOnceAlsoWhenAskedForWithinItsCreation) {
    server.During("open", [] { answersWhileOpening[0] = IsIpmiSupport(); });
    EXPECT_EQ(IsIpmiSupport(), 1);
    EXPECT_EQ(answersWhileOpening[0], 0) << "not ready yet";
    EXPECT_EQ(IsIpmiSupport(), 1);
    EXPECT_EQ(server.GetLog().Count("open"), 1u);
    EXPECT_EQ(release(), 0);
    EXPECT_EQ(server.GetLog().Count("close"), 3u) << "of one object";
}

TEST_F(IpmiObjectTest, NoFunctionIsServedWithinTheCreation) {
    Add(Fan("F", 0x30), 70);
    server.During("open", [] {
        unsigned char byte = 0;
        int number = 0;
        SensorThresholdInformation list;
        answersWhileOpening[0] = SetWatchDogTimer(1, 10000);
        answersWhileOpening[1] = ResetWatchDogTimer();
        answersWhileOpening[2] = StopWatchDogTimer();
        answersWhileOpening[3] = GetWatchDogTimer(&byte, &number, &number);
        answersWhileOpening[4] = GetBMCVersion(&byte, &byte);
        answersWhileOpening[5] = GetAllThresholdInfo(&list);
        answersWhileOpening[6] = SetThresholdInfo(3, 1, 0, 1.0);
    });
    EXPECT_EQ(IsIpmiSupport(), 1);
    EXPECT_THAT(answersWhileOpening, Each(-1));
    EXPECT_THAT(bmc.Requests(), SizeIs(0));
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 0) << "no flag was left set";
}

TEST_F(IpmiObjectTest, ObjectIsMadeByALaterCallWhenMemoryRanOut) {
    constexpr int kAllocations = 4;  // its own and those of its response buffers
    for (int nth = 1; nth <= kAllocations; ++nth) {
        server.FailAllocation(nth);
        EXPECT_THROW(IsIpmiSupport(), std::bad_alloc) << nth;
    }
    EXPECT_EQ(IsIpmiSupport(), 1);
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), -1)
        << "what was built before closed the device, and nobody opens it again";
}

TEST_F(IpmiObjectTest, NoQueryStaysBusyWhenMemoryRanOut) {
    Add(Fan("F", 0x30), 70);
    server.FailAllocation(1);
    EXPECT_THROW(GetIpmiInfo(TALVANE_FANS, &fans), std::bad_alloc);
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 0);
    EXPECT_EQ(fans.quantity, 1);
}

TEST_F(IpmiObjectTest, AfterAReleaseNoSensorIsKnown) {
    Add(Fan("F", 0x30), 70);
    ASSERT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 0);
    const std::size_t opened = server.GetLog().Count("open");
    EXPECT_EQ(release(), 0);
    EXPECT_EQ(server.GetLog().Count("close"), 3u);
    EXPECT_EQ(IsIpmiSupport(), 1) << "the interface was found before";
    EXPECT_EQ(server.GetLog().Count("open"), opened);
    bmc.ForgetRequests();
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), -1);
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), -1) << "not busy";
    EXPECT_THAT(bmc.Requests(), SizeIs(0)) << "the repository is not read again";
}

TEST_F(IpmiObjectTest, ReleasingTwiceIsHarmless) {
    EXPECT_EQ(IsIpmiSupport(), 1);
    EXPECT_EQ(release(), 0);
    EXPECT_EQ(release(), 0);
    EXPECT_EQ(server.GetLog().Count("close"), 3u);
}

}  // namespace
