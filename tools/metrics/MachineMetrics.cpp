// SPDX-License-Identifier: MIT
//
// Puts the page together, with what is said about the collection itself.

#include "tools/metrics/MachineMetrics.h"

#include "tools/metrics/InventoryMetrics.h"
#include "tools/metrics/MetricPage.h"
#include "tools/metrics/SensorMetrics.h"

namespace tool {
namespace {

constexpr MetricFamily kUp = {
    "ipmi_up",
    "Whether the BMC answered: collector ipmi, its sensors; bmc, its firmware. 1 yes, 0 no."};
constexpr MetricFamily kBmcDuration = {"ipmi_scrape_duration_seconds",
                                       "How long it took to ask the BMC."};
constexpr MetricFamily kBuildInfo = {"talvane_build_info", "The version that wrote this."};
constexpr MetricFamily kTime = {"talvane_collection_timestamp_seconds",
                                "When this was read, in seconds since 1970 UTC."};
constexpr MetricFamily kDuration = {"talvane_collection_duration_seconds",
                                    "How long it took to read everything."};
constexpr MetricFamily kSourceUp = {"talvane_source_up",
                                    "Whether the source could be read: 1 yes, 0 no."};
constexpr MetricFamily kSourceProblem = {"talvane_source_problem_info",
                                         "Why the source could not be read."};
constexpr MetricFamily kProcessorBusy = {
    "talvane_processor_busy_ratio", "Share of the last second that the processor was not idle."};
constexpr MetricFamily kMemoryUsed = {"talvane_memory_used_ratio",
                                      "Share of the memory in use, as the command free counts it."};

constexpr double kPercent = 100;

// A repository that ends before its first sensor says nothing about the machine.
bool HasSensors(const MachineState& machine) {
    return machine.health && (machine.health->isComplete || !machine.health->sensors.empty());
}

void AddCollection(MetricPage& page, const MachineState& machine) {
    page.Add(kUp, {{"collector", "ipmi"}}, HasSensors(machine) ? 1 : 0);
    page.Add(kUp, {{"collector", "bmc"}}, machine.bmc ? 1 : 0);
    page.Add(kBmcDuration, {}, machine.bmcSeconds);
    page.AddInfo(kBuildInfo, {{"version", machine.version}});
    page.Add(kTime, {}, static_cast<double>(machine.collectedAt));
    page.Add(kDuration, {}, machine.seconds);
    for (const SourceState& source : machine.sources) {
        page.Add(kSourceUp, {{"source", source.name}}, source.problem.empty() ? 1 : 0);
        if (!source.problem.empty())
            page.AddInfo(kSourceProblem, {{"source", source.name}, {"reason", source.problem}});
    }
}

void AddLoad(MetricPage& page, const Load& load) {
    int number = 0;
    for (const int percent : load.processors.value_or(std::vector<int>{}))
        page.Add(kProcessorBusy, {{"processor", std::to_string(++number)}}, percent / kPercent);
    if (load.memory) page.Add(kMemoryUsed, {}, *load.memory / kPercent);
}

template <class Record>
void AddPart(MetricPage& page, const std::optional<Record>& record) {
    if (record) AddInventory(page, *record);
}

}  // namespace

std::string ToMetrics(const MachineState& machine) {
    MetricPage page;
    AddCollection(page, machine);
    if (machine.health) AddHealth(page, *machine.health);
    AddPart(page, machine.system);
    AddPart(page, machine.board);
    AddPart(page, machine.processors);
    AddPart(page, machine.memory);
    AddPart(page, machine.power);
    AddPart(page, machine.bmc);
    AddPart(page, machine.pci);
    AddPart(page, machine.drives);
    AddPart(page, machine.partitions);
    AddLoad(page, machine.load);
    return page.Text();
}

}  // namespace tool
