// SPDX-License-Identifier: MIT
//
// The exported functions on a transport of the agent's own that reports completion codes: which
// requests they send until one is refused, what they answer, and that no flag stays set.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "Talvane.h"
#include "simulator/SimulatedServer.h"
#include "support/OpenIpmi.h"

namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::SizeIs;

constexpr int kResetWatchdog = 0x22;
constexpr int kSetWatchdog = 0x24;
constexpr int kGetWatchdog = 0x25;
constexpr int kSetThresholds = 0x26;
constexpr int kGetDeviceId = 0x01;
constexpr int kRepositoryInfo = 0x20;
constexpr int kGetRecord = 0x23;
constexpr int kInventoryInfo = 0x10;
constexpr int kReadInventory = 0x11;

// Without a network function: none of these commands has a number that another one has.
std::vector<int> sent;
std::vector<int> responders;
std::map<int, int> refusals;     // the command, and which of its requests is refused
std::map<int, int> sentPerCode;  // so far

}  // namespace

int IPMIbase::SendTimedImbpRequest(IMBPREQUESTDATA* imbRequest, int, unsigned char* response, int*,
                                   unsigned char* completionCode) {
    const int code = imbRequest->cmdType;
    sent.push_back(code);
    responders.push_back(imbRequest->rsSa);
    const auto refusal = refusals.find(code);
    if (++sentPerCode[code]; refusal != refusals.end() && sentPerCode[code] == refusal->second)
        *completionCode = 0xCC;
    // Three temperatures of the processor, whose thresholds may all be set.
    if (code == kRepositoryInfo) response[1] = 3;
    if (code == kGetRecord) {
        const int id = imbRequest->data[2];
        response[0] = static_cast<unsigned char>(id == 2 ? 0xFF : id + 1);
        response[1] = id == 2 ? 0xFF : 0;
        unsigned char* const record = response + 2;
        record[3] = 1;
        record[7] = static_cast<unsigned char>(0x10 + id);
        record[8] = 3;
        record[12] = 1;
        record[19] = 0x3F;
        record[24] = 1;
    }
    return 0;
}

namespace {

class RefusalTest : public ::testing::Test {
protected:
    RefusalTest() { server.GetBmc(); }

    // Neither a sensor query nor a watchdog call is busy.
    static void ExpectNoFlagSet() {
        refusals.clear();
        unsigned char byte = 0;
        EXPECT_EQ(GetIpmiInfo(0, nullptr), 0);
        EXPECT_EQ(GetBMCVersion(&byte, &byte), 0);
        EXPECT_EQ(SetWatchDogTimer(1, 20000), 0);
    }

    sim::SimulatedServer server;
};

TEST_F(RefusalTest, RefusedSettingSendsNoReset) {
    refusals = {{kSetWatchdog, 1}};
    EXPECT_EQ(SetWatchDogTimer(1, 20000), -1);
    EXPECT_THAT(sent, ElementsAre(kSetWatchdog));
    ExpectNoFlagSet();
}

TEST_F(RefusalTest, RefusedResetAfterASettingFails) {
    refusals = {{kResetWatchdog, 1}};
    EXPECT_EQ(SetWatchDogTimer(1, 20000), -1);
    EXPECT_THAT(sent, ElementsAre(kSetWatchdog, kResetWatchdog));
    ExpectNoFlagSet();
}

TEST_F(RefusalTest, RefusedReadingLeavesTheAnswers) {
    refusals = {{kGetWatchdog, 1}};
    unsigned char action = 7;
    int timeOut = 8;
    int present = 9;
    EXPECT_EQ(GetWatchDogTimer(&action, &timeOut, &present), -1);
    EXPECT_EQ(action, 7);
    EXPECT_EQ(timeOut, 8);
    EXPECT_EQ(present, 9);
    EXPECT_THAT(sent, ElementsAre(kGetWatchdog));
    ExpectNoFlagSet();
}

TEST_F(RefusalTest, RefusedResetFails) {
    refusals = {{kResetWatchdog, 1}};
    EXPECT_EQ(ResetWatchDogTimer(), -1);
    EXPECT_THAT(sent, ElementsAre(kResetWatchdog));
    ExpectNoFlagSet();
}

TEST_F(RefusalTest, RefusedStopFails) {
    refusals = {{kSetWatchdog, 1}};
    EXPECT_EQ(StopWatchDogTimer(), -1);
    EXPECT_THAT(sent, ElementsAre(kSetWatchdog));
    ExpectNoFlagSet();
}

TEST_F(RefusalTest, RefusedVersionLeavesTheAnswers) {
    refusals = {{kGetDeviceId, 1}};
    unsigned char major = 7;
    unsigned char minor = 8;
    EXPECT_EQ(GetBMCVersion(&major, &minor), -1);
    EXPECT_EQ(major, 7);
    EXPECT_EQ(minor, 8);
    EXPECT_THAT(sent, ElementsAre(kGetDeviceId));
    ExpectNoFlagSet();
}

TEST_F(RefusalTest, RefusedThresholdWritesNoLaterSensor) {
    refusals = {{kSetThresholds, 2}};
    EXPECT_EQ(SetThresholdInfo(3, 1, THRESHOLD_UPPER_CRITICAL, 80.0), -1);
    EXPECT_EQ(sentPerCode[kSetThresholds], 2) << "of three sensors";
    EXPECT_EQ(SetThresholdInfo(3, 1, THRESHOLD_UPPER_CRITICAL, 80.0), 0) << "not busy";
    EXPECT_EQ(sentPerCode[kSetThresholds], 5);
}

TEST_F(RefusalTest, RefusedInventoryReadsNoHeader) {
    IPMIsupport support;
    refusals = {{kInventoryInfo, 1}};
    EXPECT_EQ(support.GetFRUInfo(), -1);
    EXPECT_THAT(sent, ElementsAre(kInventoryInfo));
}

TEST_F(RefusalTest, RefusedInventoryHeaderReadsNoArea) {
    IPMIsupport support;
    refusals = {{kReadInventory, 1}};
    EXPECT_EQ(support.GetFRUInfo(), -1);
    EXPECT_THAT(sent, ElementsAre(kInventoryInfo, kReadInventory));
}

TEST_F(RefusalTest, RefusedAreaIsLeftAndTheOthersAreRead) {
    constexpr int kHead = 2;   // after the header, the board's first request
    constexpr int kWhole = 3;  // and its second
    for (const int request : {kHead, kWhole}) {
        IPMIsupport support;
        support.fru.BoardInfo.version = 7;
        support.fru.BoardInfo.ManufacturerInfo.manufacturer[0] = 'M';
        sent.clear();
        sentPerCode.clear();
        refusals = {{kReadInventory, request}};
        EXPECT_EQ(support.GetFRUInfo(), 0);
        EXPECT_EQ(support.fru.BoardInfo.version, 7);
        EXPECT_EQ(support.fru.BoardInfo.ManufacturerInfo.manufacturer[0], 'M');
        EXPECT_EQ(sentPerCode[kReadInventory], request + 4) << "two for each other area";
    }
}

TEST_F(RefusalTest, InventoryRequestsNameAnyResponder) {
    IPMIsupport support;
    EXPECT_EQ(support.GetFRUInfo(), 0);
    EXPECT_THAT(responders, SizeIs(8));
    EXPECT_THAT(responders, Each(0xFF));
}

}  // namespace
