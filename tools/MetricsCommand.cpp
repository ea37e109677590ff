// SPDX-License-Identifier: MIT
//
// Reads every record once, takes the time, and notes which sources failed.

#include "tools/MetricsCommand.h"

#include <chrono>
#include <ctime>

#include "tools/AtomicFile.h"
#include "tools/RulesFile.h"
#include "tools/base/SourceProblem.h"
#include "tools/metrics/MachineMetrics.h"
#include "tools/records/Sensors.h"

namespace tool {
namespace {

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// The name stays the same however the source is read: alerts look for it.
SourceState StateOf(const Source& source, bool isRead, const Settings& settings) {
    return {source.name, isRead ? "" : ProblemOf(source, settings.ways).message};
}

void ReadBmcParts(MachineState& machine, const Rules& rules, const Settings& settings) {
    const Clock::time_point start = Clock::now();
    if (const auto sensors = ReadSensors()) {
        machine.health = Judge(*sensors, rules);
        machine.bmc = ReadBmc();
    }
    machine.bmcSeconds = SecondsSince(start);
    machine.sources.push_back(StateOf(kBmc, machine.health.has_value(), settings));
}

void ReadDisks(MachineState& machine, const Settings& settings) {
    machine.drives = ReadDrives();
    machine.partitions = ReadPartitions();
    machine.sources.push_back(StateOf(kIdeDrives, machine.drives.has_value(), settings));
    // Without the list of drives nobody has asked for their sectors.
    if (machine.partitions)
        machine.sources.push_back(StateOf(kDisks, machine.partitions->notRead.empty(), settings));
}

void ReadPciFunctions(MachineState& machine, const Settings& settings) {
    machine.pci = ReadPci();
    machine.sources.push_back(StateOf(kPciPorts, machine.pci.has_value(), settings));
}

MachineState ReadMachine(const Rules& rules, bool isWithoutPci, const Settings& settings) {
    const Clock::time_point start = Clock::now();
    MachineState machine;
    machine.version = TALVANE_VERSION;
    machine.collectedAt = std::time(nullptr);
    machine.system = ReadSystem();
    machine.board = ReadBoard();
    machine.processors = ReadProcessors();
    machine.memory = ReadMemory();
    machine.power = ReadPower();
    machine.sources.push_back(StateOf(kPhysicalMemory, machine.board.has_value(), settings));
    ReadBmcParts(machine, rules, settings);
    if (!isWithoutPci) ReadPciFunctions(machine, settings);
    ReadDisks(machine, settings);
    machine.load = ReadLoad(settings);
    machine.sources.push_back(
        StateOf(kProcessorTimes, machine.load.processors.has_value(), settings));
    machine.sources.push_back(StateOf(kMemoryUse, machine.load.memory.has_value(), settings));
    machine.seconds = SecondsSince(start);
    return machine;
}

}  // namespace

void WriteMetrics(const MetricsOrder& order, const Settings& settings, std::ostream& out) {
    const Rules rules = RulesIn(order.rules);
    const std::string text = ToMetrics(ReadMachine(rules, order.isWithoutPci, settings));
    if (order.output.empty())
        out << text;
    else
        WriteAtomically(order.output, text);
}

}  // namespace tool
