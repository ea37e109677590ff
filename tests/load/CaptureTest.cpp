// SPDX-License-Identifier: MIT
//
// Captured texts of /proc/stat and of `free`: which processors and which memory they make. One test
// a capture, each in a process of its own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <cstdio>
#include <filesystem>
#include <sstream>

#include "Talvane.h"
#include "simulator/SimulatedServer.h"
#include "support/SharedData.h"

namespace {

using std::chrono::seconds;

std::string TestName(std::string name) {
    for (char& c : name)
        if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = '_';
    return name.empty() ? "None" : name;
}

// The text some time later: the processor of number n has done n + 1 busy ticks of each kind and 7
// idle ones. Numbers keep their width where they can, so that lines keep their places.
std::string Later(const std::string& text) {
    std::istringstream lines(text);
    std::ostringstream result;
    for (std::string line; std::getline(lines, line);) {
        unsigned cpu = 0;
        unsigned long user = 0, nice = 0, system = 0, idle = 0;
        int end = 0;
        if (line.size() > 3 && line[3] != ' ' &&
            std::sscanf(line.c_str(), "cpu%u %lu %lu %lu %lu%n", &cpu, &user, &nice, &system, &idle,
                        &end) == 5)
            result << "cpu" << cpu << ' ' << user + cpu + 1 << ' ' << nice + cpu + 1 << ' '
                   << system + cpu + 1 << ' ' << idle + 7 << line.substr(static_cast<size_t>(end))
                   << '\n';
        else
            result << line << '\n';
    }
    return result.str();
}

// Processors whose lines begin, with two numbers at least, in the first 1024 bytes; at most 8.
int ProcessorsOf(const std::string& text) {
    const std::string head = text.substr(0, 1024);
    int count = 0;
    for (; count < 8; ++count) {
        const std::size_t at = head.find("\ncpu" + std::to_string(count) + " ");
        unsigned long user = 0, nice = 0;
        if (at == std::string::npos ||
            std::sscanf(head.c_str() + at, " cpu%*u %lu %lu", &user, &nice) != 2)
            break;
    }
    return count;
}

class StatCaptureTest : public ::testing::Test,
                        public ::testing::WithParamInterface<std::string> {};

TEST_P(StatCaptureTest, HasItsProcessorsAndTheirShares) {
    if (GetParam().empty()) GTEST_SKIP() << kNoCaptures;
    const std::string before = ContentOf(SharedData("proc/stat") / (GetParam() + ".txt"));
    const int processors = ProcessorsOf(before);
    ASSERT_EQ(processors, ProcessorsOf(Later(before))) << "the later text hides a processor";
    EXPECT_GE(processors, 1);

    sim::SimulatedServer server;
    server.GetStat().SetText(seconds(0), before);
    server.GetStat().SetText(seconds(5), Later(before));
    CpuUsageRageInformation record{};
    ASSERT_EQ(GetCpuUsageRate(5, &record), 0);
    EXPECT_EQ(record.quantity, processors);
    for (int cpu = 0; cpu < processors; ++cpu)
        EXPECT_EQ(record.UsageRate[cpu], 100 - 700 / (3 * (cpu + 1) + 7)) << cpu;
}

INSTANTIATE_TEST_SUITE_P(Machines, StatCaptureTest,
                         ::testing::ValuesIn(CapturesOrNone("proc/stat", ".txt")),
                         [](const auto& machine) { return TestName(machine.param); });

class FreeCaptureTest : public ::testing::Test,
                        public ::testing::WithParamInterface<std::string> {};

TEST_P(FreeCaptureTest, GivesTheUsedShareOfItsMemoryLine) {
    if (GetParam().empty()) GTEST_SKIP() << kNoCaptures;
    const std::string text = ContentOf(SharedData("proc/free") / (GetParam() + ".txt"));
    unsigned long total = 0, used = 0;
    const std::size_t line = text.find("Mem:");
    ASSERT_EQ(std::sscanf(text.c_str() + line, "Mem: %lu %lu", &total, &used), 2);

    sim::SimulatedServer server;
    server.GetFreeProgram().SetText(text);
    const std::filesystem::path before = std::filesystem::current_path();
    const std::filesystem::path folder =
        std::filesystem::path(testing::TempDir()) / ("free-" + GetParam());
    std::filesystem::create_directories(folder);  // one each: tests run side by side
    std::filesystem::current_path(folder);
    EXPECT_EQ(GetMemUsageRate(), static_cast<int>(100ull * used / total));
    std::filesystem::current_path(before);
    std::filesystem::remove_all(folder);
}

INSTANTIATE_TEST_SUITE_P(Machines, FreeCaptureTest,
                         ::testing::ValuesIn(CapturesOrNone("proc/free", ".txt")),
                         [](const auto& machine) { return TestName(machine.param); });

}  // namespace
