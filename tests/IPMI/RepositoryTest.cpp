// SPDX-License-Identifier: MIT
//
// The repository commands and the reading of a sensor.

#include <array>
#include <cstring>
#include <vector>

#include "support/IpmiTest.h"

namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::SizeIs;

class RepositoryTest : public IpmiTest {
protected:
    static std::array<unsigned char, 256> Empty() { return {}; }
};

TEST_F(RepositoryTest, ItsInfoIsRecordCountAndVersion) {
    bmc.Intercept([](const sim::BmcRequest&) { return sim::Bytes{0x51, 0x34, 0x12, 9}; });
    int count = 0;
    int version = 0;
    EXPECT_EQ(Support().GetSDRRepositoryInfo(count, version), 0);
    EXPECT_EQ(count, 0x1234);
    EXPECT_EQ(version, 0x51);
    EXPECT_THAT(bmc.RequestTexts(), ElementsAre("Get SDR Repository Info"));
    EXPECT_EQ(bmc.Requests()[0].timeout, 3000u);
    EXPECT_EQ(bmc.Requests()[0].responder, 0xFF);
    EXPECT_EQ(bmc.Requests()[0].bus, 0);
    EXPECT_EQ(bmc.Requests()[0].lun, 0);
}

TEST_F(RepositoryTest, AReservationHasSixteenBits) {
    bmc.Intercept([](const sim::BmcRequest&) { return sim::Bytes{0x34, 0x12}; });
    unsigned short reservation = 0;
    EXPECT_EQ(Sensors().ReserveSDRRepository(reservation), 0);
    EXPECT_EQ(reservation, 0x1234);
    EXPECT_THAT(bmc.RequestTexts(), ElementsAre("Reserve SDR Repository"));
}

TEST_F(RepositoryTest, ARecordIsAskedForFromItsStart) {
    bmc.Intercept([](const sim::BmcRequest&) { return sim::Bytes{0x78, 0x56, 1, 2, 3}; });
    auto out = Empty();
    EXPECT_EQ(Sensors().GetSDR(0x1234, 0xABCD, out.data(), 5), 0x5678);
    EXPECT_THAT(bmc.RequestTexts(), ElementsAre("Get SDR 34 12 CD AB 00 05"));
    EXPECT_EQ(out[0], 1);
    EXPECT_EQ(out[2], 3);
    EXPECT_EQ(out[3], 0);
}

TEST_F(RepositoryTest, ARecordHasExactlyTheBytesAskedForAndZerosPastTheResponse) {
    bmc.Intercept([](const sim::BmcRequest&) { return sim::Bytes(256, 0x11); });
    auto out = Empty();
    out.fill(0xEE);
    EXPECT_EQ(Sensors().GetSDR(0, 0, out.data(), 255), 0x1111);
    EXPECT_EQ(out[253], 0x11);
    EXPECT_EQ(out[254], 0) << "past the response buffer";
    EXPECT_EQ(out[255], 0xEE) << "not asked for";
}

TEST_F(RepositoryTest, ANegativeRecordIdIsRefusedWithoutARequest) {
    auto out = Empty();
    EXPECT_EQ(Sensors().GetSDR(0, -1, out.data(), 255), -1);
    EXPECT_THAT(bmc.Requests(), SizeIs(0));
}

TEST_F(RepositoryTest, ARecordWithoutABufferIsRefusedWithoutARequest) {
    EXPECT_EQ(Sensors().GetSDR(0, 0, nullptr, 5), -1);
    EXPECT_THAT(bmc.Requests(), SizeIs(0));
}

// Sensors that say of themselves that they are not ready.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
class UnreadySensor : public Sensor {
public:
    int IsInitOK() override { return 0; }
};
#pragma GCC diagnostic pop

TEST_F(RepositoryTest, ADerivedClassDecidesWhetherItIsReady) {
    Support();
    UnreadySensor sensor;
    unsigned char reading = 77;
    EXPECT_EQ(sensor.ReadSensor(1, reading), -1);
    EXPECT_EQ(reading, 77);
    EXPECT_EQ(sensor.GetSensorNumbers(1), -1);
    EXPECT_THAT(bmc.Requests(), SizeIs(0));
}

TEST_F(RepositoryTest, ARefusedRequestReadsAsZeros) {
    Support();
    server.Fail("ioctl", 1);
    int count = 7;
    int version = 7;
    EXPECT_EQ(Support().GetSDRRepositoryInfo(count, version), 0);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(version, 0);
}

TEST_F(RepositoryTest, AStaleResponseIsNeverSeen) {
    Add(Temperature("T", 0x10), 99);
    unsigned char reading = 0;
    ASSERT_EQ(Sensors().ReadSensor(0x10, reading), 0);
    ASSERT_EQ(reading, 99);
    bmc.Intercept([](const sim::BmcRequest&) { return sim::Bytes{}; });
    EXPECT_EQ(Sensors().ReadSensor(0x10, reading), 0);
    EXPECT_EQ(reading, 0);
}

TEST_F(RepositoryTest, TheWholeResponseIsClearedBeforeARequest) {
    std::memset(Sensors().ResponseBuffer, 0xEE, 256);
    bmc.Intercept([](const sim::BmcRequest&) { return sim::Bytes{}; });
    unsigned char reading = 77;
    EXPECT_EQ(Sensors().ReadSensor(1, reading), 0);
    EXPECT_THAT(std::vector<int>(Sensors().ResponseBuffer, Sensors().ResponseBuffer + 256),
                ElementsAreArray(std::vector<int>(256, 0)));
}

TEST_F(RepositoryTest, AReadingIsTheFirstByte) {
    Add(Temperature("T", 0x10), 42);
    unsigned char reading = 0;
    EXPECT_EQ(Sensors().ReadSensor(0x10, reading), 0);
    EXPECT_EQ(reading, 42);
    EXPECT_THAT(bmc.RequestTexts(), ElementsAre("Get Sensor Reading 10"));
}

TEST_F(RepositoryTest, TheRequestRecordHoldsNoDataAfterwards) {
    unsigned char reading = 0;
    ASSERT_EQ(Sensors().ReadSensor(0x10, reading), 0);
    EXPECT_EQ(Sensors().request.data, nullptr);
    EXPECT_EQ(Sensors().request.rsSa, 0xFF);
    EXPECT_EQ(Sensors().request.dataLength, 1);
}

}  // namespace
