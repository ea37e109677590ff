// SPDX-License-Identifier: MIT
//
// The tool's text and JSON about a hostile machine. Input: what AddWholeMachine takes.

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <string_view>

#include "fuzz/machine/WholeMachine.h"
#include "fuzz/output/Drives.h"
#include "fuzz/output/Sensors.h"
#include "fuzz/output/Texts.h"
#include "tools/Commands.h"
#include "tools/records/Sensors.h"

namespace {

// Load, drives and partitions take child processes, and the repository is read once in a process:
// its records are decoded here. PCI functions need 32 bits.
constexpr std::array<std::string_view, 5> kLeftOut = {"load", "drives", "partitions", "sensors",
                                                      "pci"};

template <class Record>
void ExpectSafe(const Record& record) {
    fuzz::ExpectPrintable(ToText(record));
    fuzz::ExpectWritable(ToJson(record));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FedMachine machine;
    fuzz::Input input(data, size);
    fuzz::AddWholeMachine(machine, input);
    for (const tool::Command& command : tool::Commands()) {
        if (std::find(kLeftOut.begin(), kLeftOut.end(), command.name) != kLeftOut.end()) continue;
        const std::optional<tool::Answer> answer = command.ask({});
        if (!answer) continue;
        fuzz::ExpectPrintable(answer->text);
        fuzz::ExpectWritable(answer->json);
    }
    ExpectSafe(fuzz::SensorsOf({data, size}));
    fuzz::Input texts(data, size);
    const tool::Drives drives = fuzz::TakeDrives(texts);
    fuzz::ExpectPrintable(tool::ToText(drives));
    fuzz::ExpectWritable(tool::ToJson(drives));
    ExpectSafe(fuzz::TakePartitions(texts));
    return 0;
}
