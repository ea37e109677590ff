// SPDX-License-Identifier: MIT
//
// What the sampler keeps between samples: one "first sample" flag for all processors, the ticks of
// samples that a later one cannot replace, and the number of processors.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "LoadMonitor.h"
#include "Talvane.h"
#include "simulator/SimulatedServer.h"

namespace {

using std::chrono::seconds;
using ::testing::ElementsAre;

class CpuSampleTest : public ::testing::Test {
protected:
    std::vector<int> Measure() {
        CpuUsageRageInformation record{};
        EXPECT_EQ(GetCpuUsageRate(5, &record), 0);
        return std::vector<int>(record.UsageRate, record.UsageRate + record.quantity);
    }

    // Measures where the file cannot be opened for the nth and the other nth time.
    std::vector<int> MeasureWithoutSamples(int nth, int other) {
        server.Fail("open", nth);
        server.Fail("open", other);
        testing::internal::CaptureStdout();
        const std::vector<int> shares = Measure();
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "File open failed!\nFile open failed!\n");
        return shares;
    }

    sim::SimulatedServer server;
};

// The file is opened for processors 0, 1 and the missing 2 when they are counted, then for 0 and 1
// before and after the sleep.
TEST_F(CpuSampleTest, FirstSampleOfASecondProcessorIsComparedWithZero) {
    server.GetStat().SetText(seconds(0), "cpu0 1 1 1 1\ncpu1 30 0 0 70\n");
    server.GetStat().SetText(seconds(5), "cpu0 2 2 2 2\ncpu1 31 0 0 70\n");
    EXPECT_THAT(MeasureWithoutSamples(5, 7), ElementsAre(75, 30));
}

TEST_F(CpuSampleTest, FirstSampleOfTheFirstProcessorIsComparedWithNothing) {
    server.GetStat().SetText(seconds(0), "cpu0 30 0 0 70\n");
    server.GetStat().SetText(seconds(5), "cpu0 31 0 0 70\n");
    ExecuteFirstTime = 1;  // as if another processor had been sampled before
    EXPECT_THAT(MeasureWithoutSamples(3, 4), ElementsAre(30));
}

TEST_F(CpuSampleTest, NoProcessorInTheFirstCallMeansNoneInAnyLaterOne) {
    server.GetStat().SetText(seconds(0), "cpu  1 2 3 4\n");
    EXPECT_THAT(Measure(), ElementsAre());
    server.GetStat().SetText(seconds(5), "cpu0 1 2 3 4\n");
    server.GetStat().SetText(seconds(10), "cpu0 2 3 4 5\n");
    server.GetLog().Clear();
    EXPECT_THAT(Measure(), ElementsAre());
    EXPECT_EQ(server.GetLog().Count("open"), 0u);
    EXPECT_EQ(server.GetLog().Count("sleep"), 1u);
}

}  // namespace
