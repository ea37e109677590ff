// SPDX-License-Identifier: MIT
//
// How many requests and allocations the calls of an agent cost, for repositories from one sensor to
// more than the tables and records hold.

#include <algorithm>
#include <ostream>
#include <string>

#include "Talvane.h"
#include "support/IpmiTest.h"

namespace {

// A repository and the requests of reading it, of each record's elements and of listing thresholds.
struct Cost {
    int sensors;  // fan, voltage and temperature in turn
    std::size_t walk;
    std::size_t fans;      // three for each of up to 16
    std::size_t voltages;  // two for each of up to 32
    std::size_t temperatures;
    int thresholds;  // elements of the list
};

void PrintTo(const Cost& cost, std::ostream* out) {
    *out << cost.sensors << " sensors";
}

class RequestCountTest : public IpmiTest, public ::testing::WithParamInterface<Cost> {
protected:
    RequestCountTest() {
        for (int i = 0; i < GetParam().sensors; ++i) {
            const auto number = static_cast<std::uint8_t>(i);
            switch (i % 3) {
                case 0:
                    Add(Fan("F", number), 70);
                    break;
                case 1:
                    Add(Voltage("V", number), 165);
                    break;
                default:
                    Add(Temperature("T", number), 40);
            }
        }
        allocationsBefore = server.Allocations();
    }

    // Requests since the last look.
    std::size_t Requests() {
        const std::size_t count = bmc.Requests().size();
        const auto& requests = bmc.Requests();
        withData = static_cast<std::size_t>(
            std::count_if(requests.begin(), requests.end(),
                          [](const sim::BmcRequest& request) { return !request.data.empty(); }));
        bmc.ForgetRequests();
        return count;
    }
    // The library's allocations since the last look, those of the requests' own data left out.
    std::size_t OtherAllocations() {
        const std::size_t all = server.Allocations() - allocationsBefore;
        allocationsBefore += all;
        return all - withData;
    }

    const Cost& cost = GetParam();
    std::size_t withData = 0;
    std::size_t allocationsBefore = 0;
    FanInformation fans{};
    VoltageInformation voltages{};
    TemperatureInformation temperatures{};
    SensorThresholdInformation list{};
};

TEST_P(RequestCountTest, WalkCostsOneRequestAndTwoForEachSensor) {
    (void)Loaded();
    EXPECT_EQ(bmc.Count("Get SDR Repository Info"), 1u);
    EXPECT_EQ(bmc.Count("Get SDR"), static_cast<std::size_t>(cost.sensors));
    EXPECT_EQ(bmc.Count("Get Sensor Thresholds"), static_cast<std::size_t>(cost.sensors));
    EXPECT_EQ(Requests(), cost.walk);
}

TEST_P(RequestCountTest, FirstQueryCostsTheWalkToo) {
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 0);
    EXPECT_EQ(Requests(), cost.walk + cost.fans);
}

TEST_P(RequestCountTest, FurtherQueriesCostTheRequestsOfTheirElements) {
    (void)GetIpmiInfo(TALVANE_TEMPERATURES, &temperatures);  // -1 where there are none
    (void)Requests();
    for (int round = 0; round < 2; ++round) {
        (void)GetIpmiInfo(TALVANE_FANS, &fans);
        EXPECT_EQ(Requests(), cost.fans);
        (void)GetIpmiInfo(TALVANE_VOLTAGES, &voltages);
        EXPECT_EQ(Requests(), cost.voltages);
        (void)GetIpmiInfo(TALVANE_TEMPERATURES, &temperatures);
        EXPECT_EQ(Requests(), cost.temperatures);
    }
}

TEST_P(RequestCountTest, ListOfThresholdsCostsOneRequestOnceTheRepositoryIsRead) {
    EXPECT_EQ(GetAllThresholdInfo(&list), 0);
    EXPECT_EQ(Requests(), cost.walk);
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(GetAllThresholdInfo(&list), 0);
        EXPECT_EQ(Requests(), 1u) << "the number of records";
    }
    EXPECT_EQ(list.quantity, cost.thresholds);
}

TEST_P(RequestCountTest, ListOfThresholdsAfterAQueryCostsOneRequest) {
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 0);
    (void)Requests();
    EXPECT_EQ(GetAllThresholdInfo(&list), 0);
    EXPECT_EQ(Requests(), 1u);
}

TEST_P(RequestCountTest, AWalkAllocatesItsEntriesBesidesTheRequestsData) {
    ASSERT_EQ(Support().IsInitOK(), 1);
    (void)OtherAllocations();
    (void)Loaded();
    EXPECT_EQ(Requests(), cost.walk);
    EXPECT_EQ(OtherAllocations(), 1u);
}

TEST_P(RequestCountTest, AReadingAllocatesNothingButTheRequestsData) {
    EXPECT_EQ(GetIpmiInfo(TALVANE_FANS, &fans), 0);
    (void)Requests();
    (void)OtherAllocations();
    (void)GetIpmiInfo(TALVANE_FANS, &fans);
    (void)GetIpmiInfo(TALVANE_VOLTAGES, &voltages);
    (void)GetIpmiInfo(TALVANE_TEMPERATURES, &temperatures);
    EXPECT_EQ(Requests(), cost.fans + cost.voltages + cost.temperatures);
    EXPECT_EQ(withData, cost.fans / 3 * 2 + cost.voltages + cost.temperatures);
    EXPECT_EQ(OtherAllocations(), 0u);
}

std::string Sensors(const ::testing::TestParamInfo<Cost>& info) {
    return "Of" + std::to_string(info.param.sensors);
}

INSTANTIATE_TEST_SUITE_P(Repositories, RequestCountTest,
                         ::testing::Values(Cost{1, 3, 3, 0, 0, 1}, Cost{18, 37, 18, 12, 12, 18},
                                           Cost{64, 129, 48, 42, 42, 64},
                                           Cost{255, 511, 48, 64, 64, 64}),
                         Sensors);

}  // namespace
