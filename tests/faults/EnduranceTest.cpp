// SPDX-License-Identifier: MIT
//
// Many calls, with release and re-creation: neither memory nor descriptors grow. A call in a child
// process after a call in its parent.
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

#include "Talvane.h"
#include "faults/FaultyController.h"
#include "faults/LibraryCalls.h"
#include "simulator/machine/Machine.h"
#include "simulator/machine/SmbiosTable.h"

namespace faults {
namespace {

int OpenDescriptors() {
    int count = 0;
    for (int descriptor = 0; descriptor < 256; ++descriptor)
        if (fcntl(descriptor, F_GETFD) != -1) ++count;
    return count;
}

// As often as given, or with TALVANE_EXHAUSTIVE a million times.
int Rounds(int rounds) {
    return std::getenv("TALVANE_EXHAUSTIVE") == nullptr ? rounds : 1000000;
}

class EnduranceTest : public FaultyController {
protected:
    EnduranceTest() {
        sim::SmbiosTable table;
        table.Add(0, 0, 20);
        table.Add(1, 1, 8).String(4, "Maker").String(5, "Product");
        table.Add(39, 2, 22).String(6, "Supply");
        sim::SmbiosPlacement low;
        low.table = 0x8000;
        server.GetMemory().PlaceSmbios(table.Image(), low);
        server.GetStat().SetRates(0, {.user = 20, .idle = 80});
    }

    std::size_t LiveBlocks() { return server.Allocations() - LibraryDeletes(); }

    // Calls `call` often. The blocks and descriptors of the library are the same afterwards.
    template <class Call>
    void ExpectNoGrowth(int rounds, Call call) {
        call();
        const std::size_t blocks = LiveBlocks();
        const int descriptors = OpenDescriptors();
        for (int i = 0; i < rounds; ++i) {
            call();
            server.GetLog().Clear();
            bmc.ForgetRequests();
        }
        EXPECT_EQ(LiveBlocks(), blocks);
        EXPECT_EQ(OpenDescriptors(), descriptors);
    }
};

TEST_F(EnduranceTest, ReleaseAndReCreationOfTheReaderGrowNothing) {
    ExpectNoGrowth(Rounds(500), [] {
        SysInformation system{};
        ASSERT_EQ(GetInfo(TALVANE_SYSTEM, &system), 0);
        ASSERT_STREQ(system.manufacturer, "Maker");
        ASSERT_EQ(release(), 0);
    });
}

TEST_F(EnduranceTest, CallsOfTheTableGrowNothing) {
    ExpectNoGrowth(Rounds(20000), [] {
        SysInformation system{};
        ASSERT_EQ(GetInfo(TALVANE_SYSTEM, &system), 0);
    });
}

TEST_F(EnduranceTest, SensorQueriesAndSettingsGrowNothing) {
    ExpectNoGrowth(Rounds(1000), [] {
        TemperatureInformation temperatures{};
        ASSERT_EQ(GetIpmiInfo(TALVANE_TEMPERATURES, &temperatures), 0);
        ASSERT_EQ(SetWatchDogTimer(0, 20000), 0);
        ASSERT_EQ(SetThresholdInfo(3, 1, THRESHOLD_UPPER_CRITICAL, 85.0), 0);
    });
}

TEST_F(EnduranceTest, ReleaseAndReCreationOfTheIpmiObjectGrowNothing) {
    ExpectNoGrowth(Rounds(1000), [] {
        (void)IsIpmiSupport();
        ASSERT_EQ(release(), 0);
    });
}

TEST_F(EnduranceTest, LoadQueriesGrowNothing) {
    ExpectNoGrowth(Rounds(2000), [] {
        CpuUsageRageInformation usage{};
        ASSERT_EQ(GetCpuUsageRate(1, &usage), 0);
        ASSERT_EQ(usage.UsageRate[0], 20);
    });
}

// The child has the parent's tables, and shares its descriptor of the controller.
TEST_F(EnduranceTest, ChildProcessGoesOnWithWhatItsParentHasRead) {
    TemperatureInformation temperatures{};
    SysInformation system{};
    ASSERT_EQ(GetIpmiInfo(TALVANE_TEMPERATURES, &temperatures), 0);
    ASSERT_EQ(GetInfo(TALVANE_SYSTEM, &system), 0);
    const pid_t child = fork();
    ASSERT_NE(child, -1);
    if (child == 0) {
        TemperatureInformation again{};
        SysInformation systemAgain{};
        const bool same = GetIpmiInfo(TALVANE_TEMPERATURES, &again) == 0 &&
                          GetInfo(TALVANE_SYSTEM, &systemAgain) == 0 &&
                          std::memcmp(&again, &temperatures, sizeof again) == 0 &&
                          std::memcmp(&systemAgain, &system, sizeof system) == 0 && release() == 0;
        _exit(same ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(GetIpmiInfo(TALVANE_TEMPERATURES, &temperatures), 0);
    EXPECT_EQ(temperatures.quantity, 1);
}

}  // namespace
}  // namespace faults
