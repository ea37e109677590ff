// SPDX-License-Identifier: MIT

#include "tools/Commands.h"

#include "tools/records/Board.h"
#include "tools/records/Fans.h"
#include "tools/records/Memory.h"
#include "tools/records/Ports.h"
#include "tools/records/Power.h"
#include "tools/records/Probes.h"
#include "tools/records/Processors.h"
#include "tools/records/System.h"

namespace tool {
namespace {

template <auto read>
std::optional<Answer> Ask() {
    const auto record = read();
    if (!record) return std::nullopt;
    return Answer{ToText(*record), ToJson(*record)};
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
};

}  // namespace

std::span<const Command> Commands() {
    return kCommands;
}

}  // namespace tool
