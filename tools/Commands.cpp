// SPDX-License-Identifier: MIT
//
// The rows of all commands, in the order of the report.

#include "tools/Commands.h"

#include "tools/records/Bmc.h"
#include "tools/records/Board.h"
#include "tools/records/Drives.h"
#include "tools/records/Fans.h"
#include "tools/records/LibrarySensors.h"
#include "tools/records/Load.h"
#include "tools/records/Memory.h"
#include "tools/records/Partitions.h"
#include "tools/records/Pci.h"
#include "tools/records/Ports.h"
#include "tools/records/Power.h"
#include "tools/records/Probes.h"
#include "tools/records/Processors.h"
#include "tools/records/Sensors.h"
#include "tools/records/System.h"
#include "tools/records/Thresholds.h"
#include "tools/records/Watchdog.h"

namespace tool {
namespace {

template <class Record>
Answer AnswerOf(const Record& record) {
    Answer answer{ToText(record), ToJson(record)};
    if constexpr (requires { record.notRead; }) answer.notRead = record.notRead;
    return answer;
}

template <auto read>
std::optional<Answer> Ask(const Settings&) {
    const auto record = read();
    if (!record) return std::nullopt;
    return AnswerOf(*record);
}

std::optional<Answer> AskLoad(const Settings& settings) {
    return AnswerOf(ReadLoad(settings));
}

constexpr Command kCommands[] = {
    {"system", "The system: maker, product, version", &kPhysicalMemory, Ask<ReadSystem>},
    {"board", "The main board and its BIOS", &kPhysicalMemory, Ask<ReadBoard>},
    {"cpu", "Processors and their caches", &kPhysicalMemory, Ask<ReadProcessors>},
    {"memory", "Installed memory, bank by bank", &kPhysicalMemory, Ask<ReadMemory>},
    {"ports", "Port connectors", &kPhysicalMemory, Ask<ReadPorts>},
    {"power", "Power supplies, UPS among them", &kPhysicalMemory, Ask<ReadPower>},
    {"fans", "Cooling devices and their nominal speed", &kPhysicalMemory, Ask<ReadFans>},
    {"voltages", "Voltage probes", &kPhysicalMemory, Ask<ReadVoltages>},
    {"temperatures", "Temperature probes", &kPhysicalMemory, Ask<ReadTemperatures>},
    {"sensors", "All sensors of the BMC: readings, states, thresholds", &kBmc, Ask<ReadSensors>},
    {"thresholds", "Thresholds as GetAllThresholdInfo lists them for agents", &kBmc,
     Ask<ReadThresholds>},
    {"watchdog", "The BMC's watchdog timer", &kBmc, Ask<ReadWatchdog>},
    {"bmc", "The BMC's firmware and inventory", &kBmc, Ask<ReadBmc>},
    {"pci", "PCI functions", &kPciPorts, Ask<ReadPci>},
    {"drives", "IDE disks", &kIdeDrives, Ask<ReadDrives>},
    {"partitions", "Partitions of the IDE disks", &kIdeDrives, Ask<ReadPartitions>},
    {"load", "How busy processors and memory are", &kProcessorTimes, AskLoad},
};

constexpr Command kLibrarySensors[] = {
    {"librarySensors", "Sensors as agents see them", &kBmc, Ask<ReadLibrarySensors>},
};

}  // namespace

std::span<const Command> LibrarySensorsCommand() {
    return kLibrarySensors;
}

std::span<const Command> Commands() {
    return kCommands;
}

}  // namespace tool
