// SPDX-License-Identifier: MIT
//
// The sleep of the processor load while signals come, in virtual time: this program is an agent
// with a timer, whose clock stands still but for the library's sleeps.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/times.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>

#include "Talvane.h"
#include "simulator/SimulatedServer.h"
#include "simulator/machine/Machine.h"

namespace {

using std::chrono::seconds;
using ::testing::ElementsAre;

constexpr long long kSecond = 1'000'000'000;
constexpr long long kMillisecond = 1'000'000;
constexpr long long kTick = 10 * kMillisecond;

// Virtual time in nanoseconds, and when the agent's next signals come.
long long now = 0;
long long nextSignal = 0;  // 0: never
long long period = 0;      // 0: once
int fractionsWaitedFor = 0;
bool canWaitForFractions = true;

// Sleeps until `end` or the next signal. Returns whether a signal came first.
bool InterruptedBefore(long long end) {
    if (nextSignal == 0 || nextSignal >= end) {
        now = std::max(now, end);
        return false;
    }
    now = nextSignal;
    nextSignal = period == 0 ? 0 : nextSignal + period;
    return true;
}

// As the C library's sleep: drops the fraction of what is left, and only errno tells an interrupted
// last second from a whole one.
unsigned VirtualSleep(unsigned length) {
    const long long end = now + length * kSecond;
    if (!InterruptedBefore(end)) return 0;
    errno = EINTR;
    return static_cast<unsigned>((end - now) / kSecond);
}

}  // namespace

clock_t times(tms*) noexcept {
    return static_cast<clock_t>(now / kTick);
}

int nanosleep(const timespec* request, timespec* remaining) {
    ++fractionsWaitedFor;
    if (!canWaitForFractions) {
        errno = ENOSYS;
        return -1;
    }
    const long long end = now + request->tv_sec * kSecond + request->tv_nsec;
    if (!InterruptedBefore(end)) return 0;
    remaining->tv_sec = static_cast<time_t>((end - now) / kSecond);
    remaining->tv_nsec = static_cast<long>((end - now) % kSecond);
    errno = EINTR;
    return -1;
}

namespace {

class CpuSleepTest : public ::testing::Test {
protected:
    CpuSleepTest() {
        now = 17 * kSecond + 345 * kMillisecond;
        nextSignal = 0;
        fractionsWaitedFor = 0;
        canWaitForFractions = true;
        server.GetMachine().SleepBy(VirtualSleep);
    }

    void SignalAfter(long long time, long long every = 0) {
        nextSignal = now + time;
        period = every;
    }

    // Measures, and returns the virtual time that it took.
    long long Measure(int interval) {
        server.GetStat().SetText(server.Clock(), "cpu0 0 0 0 0\n");
        server.GetStat().SetText(server.Clock() + seconds(interval), "cpu0 40 0 0 60\n");
        const long long start = now;
        CpuUsageRageInformation record{};
        EXPECT_EQ(GetCpuUsageRate(interval, &record), 0);
        EXPECT_EQ(record.UsageRate[0], 40);
        return now - start;
    }

    // Whether so much time is the interval, or up to two ticks more for each of its seconds.
    static bool IsWhole(int interval, long long time) {
        return time >= interval * kSecond && time <= interval * (kSecond + 2 * kTick);
    }

    std::vector<std::string> Sleeps() {
        std::vector<std::string> sleeps;
        for (const std::string& line : server.GetLog().Lines())
            if (line.starts_with("sleep")) sleeps.push_back(line);
        return sleeps;
    }

    sim::SimulatedServer server;
};

TEST_F(CpuSleepTest, WithoutASignalOneSleepIsTheInterval) {
    EXPECT_EQ(Measure(5), 5 * kSecond);
    EXPECT_THAT(Sleeps(), ElementsAre("sleep 5 -> 0"));
    EXPECT_EQ(fractionsWaitedFor, 0);
}

TEST_F(CpuSleepTest, AfterASignalTheRestIsSleptToTheFraction) {
    SignalAfter(2400 * kMillisecond);
    EXPECT_TRUE(IsWhole(5, Measure(5)));
    EXPECT_THAT(Sleeps(), ElementsAre("sleep 5 -> 2", "sleep 2 -> 0"));
    EXPECT_EQ(fractionsWaitedFor, 1);
}

TEST_F(CpuSleepTest, AfterASignalAtAWholeSecondThereIsNoFractionToWaitFor) {
    SignalAfter(2 * kSecond);
    EXPECT_EQ(Measure(5), 5 * kSecond);
    EXPECT_THAT(Sleeps(), ElementsAre("sleep 5 -> 3", "sleep 3 -> 0"));
    EXPECT_EQ(fractionsWaitedFor, 0);
}

TEST_F(CpuSleepTest, SignalInTheLastSecondIsNoticedThoughNoWholeSecondIsLeft) {
    SignalAfter(300 * kMillisecond);
    EXPECT_TRUE(IsWhole(1, Measure(1)));
    EXPECT_THAT(Sleeps(), ElementsAre("sleep 1 -> 0"));
    EXPECT_EQ(fractionsWaitedFor, 1);
}

TEST_F(CpuSleepTest, TimerOfThreeMillisecondsDoesNotShortenTheInterval) {
    SignalAfter(3 * kMillisecond, 3 * kMillisecond);
    EXPECT_TRUE(IsWhole(3, Measure(3)));
    EXPECT_THAT(Sleeps(), ElementsAre("sleep 3 -> 2", "sleep 2 -> 1", "sleep 1 -> 0"));
}

TEST_F(CpuSleepTest, WhereFractionsCannotBeWaitedForTheWholeSecondsAreSlept) {
    canWaitForFractions = false;
    SignalAfter(2400 * kMillisecond);
    errno = ENOTTY;
    EXPECT_EQ(Measure(5), 4400 * kMillisecond);
    EXPECT_THAT(Sleeps(), ElementsAre("sleep 5 -> 2", "sleep 2 -> 0"));
    EXPECT_EQ(fractionsWaitedFor, 1);
    EXPECT_EQ(errno, ENOTTY);
}

// The counter has 32 bits: it wraps around after 248 days, and may do so within the sleep.
TEST_F(CpuSleepTest, TickCounterThatWrapsAroundDoesNotChangeTheInterval) {
    now = 0x7FFFFFFFLL * kTick - kSecond;
    SignalAfter(1300 * kMillisecond);
    EXPECT_TRUE(IsWhole(3, Measure(3)));
    now = 0xFFFFFFFFLL * kTick - kSecond;
    SignalAfter(1300 * kMillisecond);
    EXPECT_TRUE(IsWhole(3, Measure(3)));
    EXPECT_EQ(fractionsWaitedFor, 2);
}

TEST_F(CpuSleepTest, ErrnoIsLeftAlone) {
    for (const long long signalAfter : {0LL, 300 * kMillisecond, 1300 * kMillisecond}) {
        if (signalAfter != 0) SignalAfter(signalAfter);
        errno = ENOTTY;
        Measure(2);
        EXPECT_EQ(errno, ENOTTY);
    }
}

}  // namespace
