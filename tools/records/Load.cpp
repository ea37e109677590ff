// SPDX-License-Identifier: MIT
//
// Reads and shows GetCpuUsageRate and GetMemUsageRate.

#include "tools/records/Load.h"

#include <fcntl.h>

#include <nlohmann/json.hpp>

#include "Talvane.h"
#include "tools/base/Descriptor.h"
#include "tools/base/JsonValue.h"
#include "tools/base/Layout.h"
#include "tools/library/ChildProcess.h"

namespace tool {
namespace {

constexpr std::size_t kMaxWatchedProcessors = 8;
constexpr int kMaxPercent = 100;

struct ProcessorLoad {
    int result;
    CpuUsageRageInformation usage;
};

// In a child process: when the ticks stand still, the library divides by zero and the process ends.
std::optional<std::vector<int>> ReadProcessorLoad(int interval) {
    // To the library a file that it cannot open looks like one whose ticks stand still.
    if (!Descriptor("/proc/stat", O_RDONLY).IsOpen()) return std::nullopt;
    const auto answer = FillInChildProcess<ProcessorLoad>(
        [interval](ProcessorLoad& load) { load.result = GetCpuUsageRate(interval, &load.usage); });
    if (!answer || answer->record.result != 0) return std::nullopt;
    const CpuUsageRageInformation& usage = answer->record.usage;
    return std::vector<int>(usage.UsageRate, usage.UsageRate + usage.quantity);
}

// In a child process: the library writes a scratch file into the current folder, and prints a
// message when it cannot.
std::optional<int> ReadMemoryLoad() {
    const auto answer = FillInChildProcess<int>([](int& percent) { percent = GetMemUsageRate(); });
    if (!answer || !answer->output.empty()) return std::nullopt;
    // Without figures the library divides 0 by 0.
    if (answer->record < 0 || answer->record > kMaxPercent) return std::nullopt;
    return answer->record;
}

std::string PercentText(int percent) {
    return std::to_string(percent) + " %";
}

Json ShareJson(int percent) {
    return QuantityJson(percent, "%", PercentText(percent));
}

}  // namespace

Load ReadLoad(const Settings& settings) {
    Load load{
        settings.loadInterval, ReadProcessorLoad(settings.loadInterval), ReadMemoryLoad(), {}};
    if (!load.processors) load.notRead.push_back(&kProcessorTimes);
    if (!load.memory) load.notRead.push_back(&kMemoryUse);
    return load;
}

std::string LoadNote(const Load& load) {
    return "Processors: not idle, within " + std::to_string(load.interval) +
           " s. Memory: as the command free counts it.";
}

std::string ToText(const Load& load) {
    const std::vector<int> processors = load.processors.value_or(std::vector<int>{});
    std::vector<Row> rows;
    for (const int percent : processors)
        rows.push_back({"Processor " + std::to_string(rows.size() + 1), PercentText(percent)});
    if (!load.processors) rows.push_back({"Processors", ""});
    rows.push_back({"Memory", load.memory ? PercentText(*load.memory) : ""});
    std::vector<std::string> blocks{TableBlock({{"Part"}, {"Use", Column::Align::kRight}}, rows)};
    blocks.push_back(NoteBlock(LoadNote(load)));
    if (processors.size() == kMaxWatchedProcessors)
        blocks.push_back(NoteBlock("The library watches the first eight processors."));
    return Section("Load", blocks);
}

Json ToJson(const Load& load) {
    Json processors;
    if (load.processors) {
        processors = Json::array();
        for (const int percent : *load.processors) processors.push_back(ShareJson(percent));
    }
    return {{"interval", QuantityJson(load.interval, "s", std::to_string(load.interval) + " s")},
            {"processors", processors},
            {"memory", load.memory ? ShareJson(*load.memory) : Json()}};
}

}  // namespace tool
