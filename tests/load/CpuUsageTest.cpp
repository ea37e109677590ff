// SPDX-License-Identifier: MIT
//
// The processor load over a simulated server's virtual time. Each test has a process of its own:
// the sampler keeps its state, and counts the processors, once in a process.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>

#include "LoadMonitor.h"
#include "Talvane.h"
#include "simulator/SimulatedServer.h"
#include "support/RecordImage.h"

namespace {

using std::chrono::seconds;
using ::testing::ElementsAre;
using ::testing::Not;

// The processor's own exception ends the process, or the sanitizer that comes before it.
#ifdef __SANITIZE_ADDRESS__
#define EXPECT_DIVISION_BY_ZERO(statement) EXPECT_DEATH(statement, "division by zero")
#else
#define EXPECT_DIVISION_BY_ZERO(statement) \
    EXPECT_EXIT(statement, ::testing::KilledBySignal(SIGFPE), "")
#endif

class CpuUsageTest : public ::testing::Test {
protected:
    // The answer for an interval, as the busy shares of the processors.
    std::vector<int> Measure(int interval = 5) {
        record.quantity = 99;
        for (int& rate : record.UsageRate) rate = 99;
        EXPECT_EQ(GetCpuUsageRate(interval, &record), 0);
        for (int i = record.quantity; i < 8; ++i) EXPECT_EQ(record.UsageRate[i], 0) << i;
        return std::vector<int>(record.UsageRate, record.UsageRate + record.quantity);
    }

    // The text from the start on and the one after the first sleep of `interval` seconds.
    void Course(const std::string& before, const std::string& after, int interval = 5) {
        server.GetStat().SetText(seconds(0), before);
        server.GetStat().SetText(seconds(interval), after);
    }

    // One processor with this number of ticks of each kind between the samples.
    int ShareOf(long user, long nice, long system, long idle) {
        Course("cpu0 1000 2000 3000 4000\n",
               "cpu0 " + std::to_string(1000 + user) + " " + std::to_string(2000 + nice) + " " +
                   std::to_string(3000 + system) + " " + std::to_string(4000 + idle) + "\n");
        return Measure().at(0);
    }

    sim::SimulatedServer server;
    CpuUsageRageInformation record{};
};

TEST_F(CpuUsageTest, OneProcessorHasOneShareAndTheOthersAreZero) {
    server.GetStat().SetRates(0, {.user = 20, .nice = 5, .system = 10, .idle = 65});
    EXPECT_THAT(Measure(), ElementsAre(35));
    EXPECT_EQ(server.Clock(), seconds(5));
}

TEST_F(CpuUsageTest, EachProcessorHasItsOwnShare) {
    server.GetStat().SetRates(0, {.user = 100, .nice = 0, .system = 0, .idle = 0});
    server.GetStat().SetRates(1, {.user = 0, .nice = 0, .system = 0, .idle = 100});
    server.GetStat().SetRates(2, {.user = 0, .nice = 50, .system = 0, .idle = 50});
    server.GetStat().SetRates(3, {.user = 0, .nice = 0, .system = 1, .idle = 3});
    EXPECT_THAT(Measure(), ElementsAre(100, 0, 50, 25));
}

TEST_F(CpuUsageTest, OnlyIdleTicksAreNotBusy) {
    EXPECT_EQ(ShareOf(0, 0, 0, 500), 0);
}

TEST_F(CpuUsageTest, NoIdleTicksAreAHundredPercent) {
    EXPECT_EQ(ShareOf(1, 1, 1, 0), 100);
}

TEST_F(CpuUsageTest, ShareIsRoundedUp) {
    EXPECT_EQ(ShareOf(2, 0, 0, 1), 67);
}

TEST_F(CpuUsageTest, SmallestShareIsOnePercent) {
    EXPECT_EQ(ShareOf(0, 0, 1, 9999), 1);
}

TEST_F(CpuUsageTest, NiceAndSystemTicksAreBusy) {
    EXPECT_EQ(ShareOf(0, 10, 20, 70), 30);
}

TEST_F(CpuUsageTest, CountersAfterTheFourthAreNotRead) {
    Course("cpu0 0 0 0 0 0 0 0\n", "cpu0 10 0 0 90 5000 5000 5000\n");
    EXPECT_THAT(Measure(), ElementsAre(10));
}

TEST_F(CpuUsageTest, CountersThatWrapAroundAreComparedAcross) {
    Course("cpu0 4294967290 0 0 4294967200\n", "cpu0 4 0 0 4294967290\n");
    EXPECT_THAT(Measure(), ElementsAre(10));
}

TEST_F(CpuUsageTest, IdleTicksAHundredTimesOverWrapAround) {
    // 30,000,000 x 100 is -1,294,967,296 in 32 bits.
    EXPECT_EQ(ShareOf(10000000, 0, 0, 30000000), 100 + 1294967296 / 40000000);
}

TEST_F(CpuUsageTest, QuotientBeyondTheNumbersWrapsAround) {
    // 100 x 2^29 is the lowest number in 32 bits; the user's ticks make a total of -1.
    Course("cpu0 0 0 0 0\n", "cpu0 3758096383 0 0 536870912\n");
    EXPECT_THAT(Measure(), ElementsAre(-2147483548));
}

TEST_F(CpuUsageTest, ShareBeyondTheNumbersWrapsAround) {
    Course("cpu0 0 0 0 0\n", "cpu0 3758096385 0 0 536870912\n");  // a total of 1
    EXPECT_THAT(Measure(), ElementsAre(-2147483548));
}

TEST_F(CpuUsageTest, NoTicksAtAllDivideByZero) {
    Course("cpu0 1 2 3 4\n", "cpu0 1 2 3 4\n");
    EXPECT_DIVISION_BY_ZERO((void)GetCpuUsageRate(5, &record));
}

TEST_F(CpuUsageTest, OfNineProcessorsEightAreReported) {
    for (unsigned cpu = 0; cpu < 9; ++cpu)
        server.GetStat().SetRates(cpu, {.user = cpu * 10, .idle = 100 - cpu * 10});
    EXPECT_THAT(Measure(), ElementsAre(0, 10, 20, 30, 40, 50, 60, 70));
}

TEST_F(CpuUsageTest, ServerWithoutALineForAProcessorHasNone) {
    server.GetStat().SetText(seconds(0), "cpu  1 2 3 4\nintr 5\n");
    EXPECT_THAT(Measure(), ElementsAre());
    EXPECT_EQ(server.Clock(), seconds(5));
}

TEST_F(CpuUsageTest, ProcessorAfterAMissingOneIsNotFound) {
    server.GetStat().SetText(seconds(0), "cpu0 1 2 3 4\ncpu2 1 2 3 4\n");
    server.GetStat().SetText(seconds(5), "cpu0 2 2 3 4\ncpu2 1 2 3 5\n");
    EXPECT_THAT(Measure(), ElementsAre(100));
}

TEST_F(CpuUsageTest, ProcessorWithOneNumberIsNotThere) {
    server.GetStat().SetText(seconds(0), "cpu0 1\n");
    EXPECT_THAT(Measure(), ElementsAre());
}

TEST_F(CpuUsageTest, LinePastTheFirstKibibyteIsNotThere) {
    const std::string filler(1024 - 13, '.');
    Course(filler + "cpu0 1 2 3 4\ncpu1 1 2 3 4\n", filler + "cpu0 2 2 3 5\ncpu1 9 2 3 4\n");
    EXPECT_THAT(Measure(), ElementsAre(50));
}

TEST_F(CpuUsageTest, LineThatTheFirstKibibyteCutsIsReadAsFarAsItGoes) {
    const std::string filler(1024 - 13, '.');
    Course(filler + "cpu0 1 2 3 4567\n", filler + "cpu0 2 2 3 5678\n");
    EXPECT_THAT(Measure(), ElementsAre(9));  // idle ticks from 45 to 56
}

TEST_F(CpuUsageTest, EachCallMeasuresItsOwnInterval) {
    server.GetStat().SetRates(0, {});
    server.GetStat().SetText(seconds(0), "cpu0 0 0 0 0\n");
    server.GetStat().SetText(seconds(5), "cpu0 90 0 0 10\n");
    server.GetStat().SetText(seconds(7), "cpu0 100 0 0 100\n");
    EXPECT_THAT(Measure(5), ElementsAre(90));
    EXPECT_THAT(Measure(2), ElementsAre(10));
}

TEST_F(CpuUsageTest, TicksBetweenTwoCallsCountInNeither) {
    server.GetStat().SetText(seconds(0), "cpu0 0 0 0 0\n");
    server.GetStat().SetText(seconds(5), "cpu0 5 0 0 5\n");
    EXPECT_THAT(Measure(5), ElementsAre(50));
    server.GetStat().SetText(seconds(5), "cpu0 1000 0 0 1000\n");
    server.GetStat().SetText(seconds(6), "cpu0 1000 0 0 1001\n");
    EXPECT_THAT(Measure(1), ElementsAre(0));
}

TEST_F(CpuUsageTest, ProcessorsAreCountedOnce) {
    server.GetStat().SetRates(0, {.user = 50, .idle = 50});
    EXPECT_THAT(Measure(), ElementsAre(50));
    server.GetStat().SetRates(1, {});
    EXPECT_THAT(Measure(), ElementsAre(50));
}

TEST_F(CpuUsageTest, ReleaseDoesNotCountThemAgain) {
    server.GetStat().SetRates(0, {.user = 50, .idle = 50});
    EXPECT_THAT(Measure(), ElementsAre(50));
    server.GetStat().SetRates(1, {});
    EXPECT_EQ(release(), 0);
    EXPECT_THAT(Measure(), ElementsAre(50));
}

TEST_F(CpuUsageTest, CountedProcessorThatIsGoneBeforeTheSleepIsAFailure) {
    server.GetStat().SetRates(0, {.user = 50, .idle = 50});
    server.GetStat().SetRates(1, {});
    EXPECT_EQ(Measure().size(), 2u);
    server.GetStat().SetText(seconds(5), "cpu0 1 2 3 4\n");
    RecordImage expected(sizeof record, 0);
    RecordImage actual(sizeof record);
    EXPECT_EQ(GetCpuUsageRate(5, static_cast<CpuUsageRageInformation*>(actual.Data())), -1);
    EXPECT_TRUE(SameBytes(expected, actual));
    EXPECT_EQ(server.Clock(), seconds(5));
}

TEST_F(CpuUsageTest, CountedProcessorThatIsGoneAfterTheSleepIsAFailure) {
    Course("cpu0 1 2 3 4\ncpu1 1 2 3 4\n", "cpu0 5 6 7 8\n");
    RecordImage expected(sizeof record, 0);
    RecordImage actual(sizeof record);
    EXPECT_EQ(GetCpuUsageRate(5, static_cast<CpuUsageRageInformation*>(actual.Data())), -1);
    EXPECT_TRUE(SameBytes(expected, actual));
    EXPECT_EQ(server.Clock(), seconds(5));
}

TEST_F(CpuUsageTest, EveryFileIsReadOnceAndClosed) {
    Course("cpu0 1 2 3 4\n", "cpu0 2 3 4 5\n");
    Measure();
    const char* const opened = "open /proc/stat O_RDONLY -> ok";
    const char* const sought = "lseek /proc/stat 0x0 -> 0x0";
    const char* const readAll = "read /proc/stat 0x0 1024 -> 13";
    const char* const closed = "close /proc/stat -> 0";
    EXPECT_THAT(server.GetLog().Lines(),
                ElementsAre(opened, sought, readAll, closed,  // counting: processor 0
                            opened, sought, readAll, closed,  // and no processor 1
                            opened, sought, readAll, closed, "sleep 5 -> 0", opened, sought,
                            readAll, closed));
}

TEST_F(CpuUsageTest, SleepThatASignalEndsIsResumedForTheRest) {
    Course("cpu0 1 2 3 4\n", "cpu0 2 2 3 7\n");
    server.Fail("sleep", 1, EINTR);
    EXPECT_THAT(Measure(), ElementsAre(25));
    EXPECT_EQ(server.GetLog().Count("sleep"), 2u);
    EXPECT_EQ(server.Clock(), seconds(5));
}

TEST_F(CpuUsageTest, FirstSampleOfTheProcessSetsTheFlagAndItStays) {
    EXPECT_EQ(ExecuteFirstTime, 0);
    server.GetStat().SetRates(0, {});
    Measure();
    EXPECT_EQ(ExecuteFirstTime, 1);
    EXPECT_EQ(release(), 0);
    EXPECT_EQ(ExecuteFirstTime, 1);
}

TEST_F(CpuUsageTest, FileThatCannotBeOpenedIsSaidAndCountsForEveryProcessor) {
    Course("cpu0 1 2 3 4\n", "cpu0 2 3 4 5\n");
    testing::internal::CaptureStdout();
    server.Fail("open", 2);  // counting: processor 1 stands for a second one
    EXPECT_EQ(GetCpuUsageRate(5, &record), -1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "File open failed!\n");
}

TEST_F(CpuUsageTest, FileThatCannotBeOpenedWhileCountingIsSaidForEachOfEightProcessors) {
    for (unsigned cpu = 0; cpu < 8; ++cpu)
        server.GetStat().SetRates(cpu, {.user = cpu * 10, .idle = 100 - cpu * 10});
    for (unsigned i = 1; i <= 8; ++i) server.Fail("open", i);
    testing::internal::CaptureStdout();
    EXPECT_THAT(Measure(), ElementsAre(0, 10, 20, 30, 40, 50, 60, 70));
    std::string said;
    for (int i = 0; i < 8; ++i) said += "File open failed!\n";
    EXPECT_EQ(testing::internal::GetCapturedStdout(), said);
}

TEST_F(CpuUsageTest, FileThatCannotBeReadIsSaidAndLeavesTheDifferences) {
    server.GetStat().SetText(seconds(0), "cpu0 0 0 0 0\n");
    server.GetStat().SetText(seconds(5), "cpu0 90 0 0 10\n");
    EXPECT_THAT(Measure(5), ElementsAre(90));
    testing::internal::CaptureStderr();
    server.Fail("read", 1);  // before the sleep
    server.Fail("read", 2);  // after it
    EXPECT_THAT(Measure(5), ElementsAre(90));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "/proc/stat: Input/output error\n/proc/stat: Input/output error\n");
    std::size_t opened = server.GetLog().Count("open");
    EXPECT_EQ(server.GetLog().Count("close"), opened);
}

TEST_F(CpuUsageTest, ServerWithoutTheFileCountsEightProcessorsAndDividesByZero) {
    EXPECT_DIVISION_BY_ZERO((void)GetCpuUsageRate(5, &record));
}

}  // namespace
