// SPDX-License-Identifier: MIT
//
// An agent may put its own transport in front of the library's, and unlike that one it may tell the
// completion code. This program's transport refuses the requests from a given one on,
// and its sensor lookup fails.

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

#include "Talvane.h"
#include "simulator/SimulatedServer.h"
#include "support/OpenIpmi.h"

namespace {

int sent = 0;
int refuseFrom = 1;

}  // namespace

int IPMIbase::SendTimedImbpRequest(IMBPREQUESTDATA*, int, unsigned char* response, int*,
                                   unsigned char* completionCode) {
    ++sent;
    if (sent >= refuseFrom) *completionCode = 0xC1;
    std::memset(response, 0x11, 16);
    return 0;
}

// Nor does the library's own lookup ever fail.
int IPMIsupport::GetSensorNumberInfo(unsigned char, unsigned char, int, SensorNumberInfo&) {
    return -1;
}

namespace {

class CompletionTest : public ::testing::Test {
protected:
    CompletionTest() {
        server.GetBmc();
        support = std::make_unique<IPMIsupport>();
    }
    sim::SimulatedServer server;
    std::unique_ptr<IPMIsupport> support;
};

TEST_F(CompletionTest, ARefusedQueryFailsAndLeavesItsAnswers) {
    int count = 7;
    int version = 7;
    unsigned short reservation = 7;
    unsigned char byte = 7;
    unsigned char record[4] = {7};
    Sensor& sensor = support->sensor;
    EXPECT_EQ(sensor.GetSDRRepositoryInfo(count, version), -1);
    EXPECT_EQ(sensor.ReserveSDRRepository(reservation), -1);
    EXPECT_EQ(sensor.GetSDR(0, 0, record, 4), -1);
    EXPECT_EQ(sensor.ReadSensor(1, byte), -1);
    EXPECT_EQ(sensor.GetSensorStatus(1, 10, byte), -1);
    EXPECT_EQ(sensor.GetDeviceID(&byte, &byte), -1);
    EXPECT_EQ(support->GetWatchDogTimer(count, count, version), -1);
    EXPECT_EQ(support->ResetWatchDogTimer(), -1);
    EXPECT_EQ(count, 7);
    EXPECT_EQ(version, 7);
    EXPECT_EQ(reservation, 7);
    EXPECT_EQ(byte, 7);
    EXPECT_EQ(record[0], 7);
    EXPECT_EQ(sent, 8);
    EXPECT_EQ(sensor.request.data, nullptr);
}

TEST_F(CompletionTest, RefusedThresholdsAreCleared) {
    SensorThresholdInfoRaw raw{};
    SensorThresholdInfoConverted converted{};
    raw.deviceID = 7;
    EXPECT_EQ(support->sensor.GetSensorThreshold(1, {}, raw, converted), -1);
    EXPECT_EQ(raw.deviceID, 0);
    EXPECT_EQ(support->SetSensorThreshold(1, raw), -1);
}

TEST_F(CompletionTest, ARefusedChannelReleasesItsRequest) {
    ChannelInfo channel{7, 7, 7};
    EXPECT_EQ(support->GetChannelInfo(3, &channel), -1);
    EXPECT_EQ(channel.channelNumber, 7);
    EXPECT_EQ(support->request.data, nullptr);
    EXPECT_EQ(support->GetLANChannelInfo(&channel), -1);
    EXPECT_EQ(channel.channelNumber, 7);
    EXPECT_EQ(sent, 2) << "the search ends with the first failure";
}

TEST_F(CompletionTest, TheRecordOfARefusedSettingGoesOnPointingAtItsData) {
    EXPECT_EQ(support->SetWatchDogTimer(1, 10000), -1);
    ASSERT_NE(support->request.data, nullptr);
    EXPECT_EQ(support->request.data[4], 100);
    EXPECT_EQ(support->SetWatchDogTimer(1, 20000), -1);
    ASSERT_NE(support->request.data, nullptr);
    EXPECT_EQ(support->request.data[4], 200);
    EXPECT_EQ(support->ResetWatchDogTimer(), -1);
    EXPECT_EQ(support->request.data, nullptr) << "until the next request";
}

TEST_F(CompletionTest, ALanSettingRefusedAtTheSubnetMaskHasSentFiveRequests) {
    refuseFrom = 5;
    const LANParameter lan{1, {192, 168, 0, 7}, {0, 1, 2, 3, 4, 5}, {255, 255, 255, 0}};
    EXPECT_EQ(support->SetLANParameter(lan), -1);
    EXPECT_EQ(sent, 5);
    ASSERT_NE(support->request.data, nullptr);
    EXPECT_EQ(support->request.data[1], 6) << "the mask's selector";
}

TEST_F(CompletionTest, ARefusedUserNameSendsNoPassword) {
    EXPECT_EQ(support->SetUserInfo(2, "admin", nullptr), -1);
    EXPECT_EQ(sent, 1);
    ASSERT_NE(support->request.data, nullptr);
    EXPECT_EQ(support->request.data[1], 'a');
}

TEST_F(CompletionTest, ARefusedPasswordFails) {
    refuseFrom = 2;
    EXPECT_EQ(support->SetUserInfo(2, "admin", nullptr), -1);
    EXPECT_EQ(sent, 2);
    ASSERT_NE(support->request.data, nullptr);
    EXPECT_EQ(support->request.data[0], 2);
    EXPECT_EQ(support->request.data[1], 0);
}

TEST_F(CompletionTest, ARefusedInventoryClearsItsRequest) {
    EXPECT_EQ(support->fru.GetFRU(), -1);
    EXPECT_EQ(support->fru.GetCommonHeaderInfo(), -1);
    EXPECT_EQ(support->fru.GetBoardInfo(), -1);
    EXPECT_EQ(sent, 3);
    refuseFrom = 5;
    EXPECT_EQ(support->fru.GetProductInfo(), -1);
    EXPECT_EQ(sent, 5);
    EXPECT_EQ(support->fru.request.data, nullptr);
    EXPECT_EQ(support->fru.request.dataLength, 0);
    EXPECT_EQ(support->GetFRUInfo(), -1);
}

TEST_F(CompletionTest, AFailedLookupLeavesTheSettingOfThresholdsBusy) {
    refuseFrom = 100000;
    SensorThresholdInformation list{};
    EXPECT_EQ(GetThresholdInfo(3, 1, &list), -1);
    EXPECT_EQ(list.quantity, 0);
    EXPECT_EQ(SetThresholdInfo(3, 1, 0, 1.0), -1);
    EXPECT_EQ(SetThresholdInfo(3, 1, 0, 1.0), 1);
    EXPECT_EQ(GetThresholdInfo(3, 1, &list), -1) << "not busy";
}

}  // namespace
