// SPDX-License-Identifier: MIT
//
// The threshold functions are not guarded against each other: one that is called from within a
// request of another's repository walk walks over the repository itself, within the first walk.

#include "Talvane.h"
#include "support/IpmiTest.h"

namespace {

using ::testing::ElementsAre;

constexpr int kSensors = 60;
constexpr int kInnerRecords = 2;

constexpr std::uint8_t kGetRepositoryInfo = 0x20;
constexpr std::uint8_t kGetRecord = 0x23;
constexpr std::uint8_t kGetThresholds = 0x27;

int innerResult = 77;
SensorThresholdInformation innerList;

class NestedWalkTest : public IpmiTest {
protected:
    NestedWalkTest() {
        for (std::uint8_t i = 0; i < kSensors; ++i) {
            Add(Temperature("T" + std::to_string(i), i).Entity(3), 40);
            bmc.SetThresholds(i, {0x3F, {i, i, i, i, i, i}});
        }
    }

    // Runs `action` within the request that follows the `nth` one of `command`. The repository
    // then states fewer records than it did before.
    void After(std::uint8_t command, int nth, void (*action)()) {
        bmc.Intercept([this, command, nth, action, seen = 0, infos = 0](
                          const sim::BmcRequest& request) mutable -> std::optional<sim::Bytes> {
            if (request.command == command && ++seen == nth) server.During("ioctl", action);
            if (request.command == kGetRepositoryInfo && ++infos == 2)
                return sim::Bytes{0x51, kInnerRecords, 0};
            return std::nullopt;
        });
    }

    static void ExpectSensors(const SensorThresholdInformation& list, int count) {
        ASSERT_EQ(list.quantity, count);
        for (int i = 0; i < count; ++i) {
            EXPECT_EQ(list.SensorThreshold[i].DeviceID, 3) << i;
            EXPECT_EQ(list.SensorThreshold[i].SensorType, kTemperature) << i;
            EXPECT_EQ(list.SensorThreshold[i].LowerCriticalThreshold, i) << i;
        }
    }

    SensorThresholdInformation list;
};

void ListAll() {
    innerResult = GetAllThresholdInfo(&innerList);
}

void ListTemperatures() {
    innerResult = GetThresholdInfo(3, 1, &innerList);
}

TEST_F(NestedWalkTest, WalkWithinAThresholdRequestLeavesTheOuterWalkItsEntries) {
    After(kGetRecord, 40, ListAll);  // the request after the record's is for its thresholds
    EXPECT_EQ(GetAllThresholdInfo(&list), 0);
    EXPECT_EQ(innerResult, 0);
    ExpectSensors(innerList, kInnerRecords);
    ExpectSensors(list, kSensors);
}

TEST_F(NestedWalkTest, WalkWithinARecordRequestLeavesTheOuterWalkItsEntries) {
    After(kGetThresholds, 40, ListTemperatures);
    EXPECT_EQ(GetAllThresholdInfo(&list), 0);
    EXPECT_EQ(innerResult, -1) << "as always";
    ExpectSensors(innerList, kInnerRecords);
    ExpectSensors(list, kSensors);
}

TEST_F(NestedWalkTest, EntriesAreThoseOfTheWalkThatEndsLast) {
    After(kGetThresholds, 1, ListAll);
    EXPECT_EQ(GetThresholdInfo(3, kTemperature, &list), -1);
    ExpectSensors(list, kSensors);
    bmc.Intercept(nullptr);
    EXPECT_EQ(GetAllThresholdInfo(&list), 0);
    ExpectSensors(list, kSensors);
}

TEST_F(NestedWalkTest, WalkWithinTheLastRecordEndsTheOuterWalk) {
    After(kGetThresholds, kSensors - 1, ListAll);
    EXPECT_EQ(GetAllThresholdInfo(&list), 0);
    ExpectSensors(list, kSensors);
}

Sensor* walked = nullptr;

TEST_F(NestedWalkTest, WithinAWalkOfTheSameObjectTheLimitsAreThoseOfTheOuterEntries) {
    walked = &Sensors();
    After(kGetThresholds, 40, [] { innerResult = walked->GetSensorNumbers(kInnerRecords); });
    ASSERT_EQ(Sensors().GetSensorNumbers(kSensors), 0);
    EXPECT_EQ(innerResult, 0);
    for (int k = 0; k < kSensors; ++k)
        EXPECT_STREQ(Sensors().SensorsInformation[k].SensorReadingMax, "FF") << k;
    SensorThresholdInfoRaw raw{};
    SensorThresholdInfoConverted converted{};
    EXPECT_EQ(Sensors().GetThreshold(kSensors - 1, raw, converted), 0);
    EXPECT_EQ(Sensors().GetThreshold(kSensors, raw, converted), -1);
}

unsigned char version[2];

TEST_F(NestedWalkTest, ARequestWithinARequestReleasesItsOwnDataOnly) {
    walked = &Sensors();
    server.During("ioctl", [] {
        (void)walked->ReadSensor(1, version[0]);
        walked->request.data = version;
    });
    unsigned char reading = 0;
    EXPECT_EQ(Sensors().ReadSensor(2, reading), 0);
    EXPECT_EQ(Sensors().request.data, nullptr) << "and what another one left there is not freed";
}

IPMIsupport* entered = nullptr;

TEST_F(NestedWalkTest, ARequestWithinTheReadingOfAnAreaLeavesItsSecondOne) {
    entered = &Support();
    bmc.SetInventory(sim::Bytes(64, 1));
    server.During("ioctl", [] { (void)entered->fru.GetFRU(); });
    EXPECT_EQ(Support().fru.GetBoardInfo(), 0);
    EXPECT_THAT(bmc.RequestTexts(),
                ElementsAre("Get FRU Inventory Area Info 00", "Read FRU Data 00 00 00 02",
                            "Read FRU Data 00 00 00 08"));
}

TEST_F(NestedWalkTest, ARequestWithinTheSettingOfAUserLeavesItsSecondOne) {
    entered = &Support();
    server.During("ioctl", [] { (void)entered->SetWatchDogTimer(1, 10000); });
    EXPECT_EQ(Support().SetUserInfo(2, "abcdefghijklmnop", nullptr), 0);
    EXPECT_THAT(
        bmc.RequestTexts(),
        ElementsAre("Set Watchdog Timer 04 01 00 00 64 00",
                    "Get Channel Info 02 61 62 63 64 65 66 67 68 69 6A 6B 6C 6D 6E 6F 70",
                    "Set User Password 02 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"));
    EXPECT_EQ(Support().request.data, nullptr);
}

}  // namespace
