// SPDX-License-Identifier: MIT
//
// The load functions while each call of the machine fails in turn.
#include <sys/wait.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "Talvane.h"
#include "faults/SweepTest.h"

namespace faults {
namespace {

class LoadFaultsTest : public testing::Test {
protected:
    LoadFaultsTest() : before_(std::filesystem::current_path()) {
        std::string name = testing::TempDir() + "faults-XXXXXX";
        if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder " + name);
        folder_ = name;
        std::filesystem::current_path(folder_);
        server.GetStat().SetRates(0, {.user = 20, .idle = 80});
        server.GetStat().SetRates(1, {.user = 40, .idle = 60});
        server.GetFreeProgram().SetMemory(1000, 250);
    }
    ~LoadFaultsTest() override {
        std::filesystem::current_path(before_);
        std::filesystem::remove_all(folder_);
    }

    sim::SimulatedServer server;

private:
    std::filesystem::path before_;
    std::filesystem::path folder_;
};

// The processors are counted once in a process. While they are counted, a file that cannot be read
// counts as one more processor; then no later call finds the line of that one. Ticks that cannot be
// read at the second sample stand still, and the division ends the process.
TEST_F(LoadFaultsTest, ProcessorLoadFailsOrEndsTheProcessByItsDivision) {
    Operation operation;
    operation.name = "GetCpuUsageRate";
    operation.recordSize = sizeof(CpuUsageRageInformation);
    operation.run = [](void* record) {
        return GetCpuUsageRate(1, static_cast<CpuUsageRageInformation*>(record));
    };
    operation.failureLeavesRecord = false;
    operation.mayAnswer = [](const Fault& fault, int result) {
        return result == -1 && (fault.Is("open") || fault.Is("read") || fault.Is(kShortRead));
    };
    operation.mayAnswerNext = operation.mayAnswer;
    operation.ownProcess = true;
    operation.slow = true;
    operation.mayEnd = [](const Fault& fault, int status) {
#ifdef __SANITIZE_ADDRESS__
        if (!WIFEXITED(status)) return false;  // the sanitizer reports the division
#else
        if (!WIFSIGNALED(status) || WTERMSIG(status) != SIGFPE) return false;
#endif
        return fault.Is("open") || fault.Is("read") || fault.Is(kShortRead);
    };
    ExpectAllHolds(server, {operation}, 20);
}

// Without the scratch file, or without its first line, the share is 0 divided by 0, which no
// percentage is; without its second line it is 0.
TEST_F(LoadFaultsTest, MemoryLoadIsNoShareWithoutItsFile) {
    Operation operation;
    operation.name = "GetMemUsageRate";
    operation.run = [](void*) { return GetMemUsageRate(); };
    operation.mayAnswer = [](const Fault& fault, int result) {
        if (fault.Is("fgets")) return result <= 0 || result > 100;
        return (fault.Is("fopen") || fault.Is("system")) && result == 0;
    };
    operation.restart = [] { std::filesystem::remove("Memusage_dat"); };
    ExpectAllHolds(server, {operation}, 20);
}

}  // namespace
}  // namespace faults
