// SPDX-License-Identifier: MIT
//
// The tool's page about a hostile machine. Input: what AddWholeMachine takes.

#include "fuzz/machine/WholeMachine.h"
#include "fuzz/output/Drives.h"
#include "fuzz/output/Sensors.h"
#include "fuzz/output/Texts.h"
#include "tools/html/Page.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FedMachine machine;
    fuzz::Input input(data, size);
    fuzz::AddWholeMachine(machine, input);
    tool::MachineReport report;
    report.time = "2026-11-22T10:35:00Z";
    report.version = "1";
    report.system = tool::ReadSystem();
    report.board = tool::ReadBoard();
    report.processors = tool::ReadProcessors();
    report.memory = tool::ReadMemory();
    report.ports = tool::ReadPorts();
    report.power = tool::ReadPower();
    report.fans = tool::ReadFans();
    report.health = tool::Judge(fuzz::SensorsOf({data, size}), {});
    report.watchdog = tool::ReadWatchdog();
    report.bmc = tool::ReadBmc();
    fuzz::Input texts(data, size);
    report.drives = fuzz::TakeDrives(texts);
    report.partitions = fuzz::TakePartitions(texts);
    report.notRead = {{texts.TakeText(), texts.TakeText()}};
    fuzz::ExpectWellFormed(tool::HtmlPage(report));
    return 0;
}
