// SPDX-License-Identifier: MIT
//
// From what a description says of PCI functions, drives and load to the machine's.

#include "simulator/description/InventoryDraft.h"

#include <exception>

#include "simulator/description/MachineDraft.h"
#include "simulator/machine/Machine.h"

namespace sim {
namespace {

std::shared_ptr<DiskImage> makeImage(const DriveDraft& drive) {
    if (!drive.image.empty()) return std::make_shared<DiskImage>(drive.image);
    if (!drive.size) return nullptr;
    auto image = std::make_shared<DiskImage>(*drive.size);
    for (const auto& [sector, bytes] : drive.sectors) image->write(sector, bytes);
    return image;
}

void buildDrives(const MachineDraft& draft, Machine& machine) {
    std::map<char, std::shared_ptr<DiskImage>> images;
    for (const auto& [letter, drive] : draft.drives) {
        IdeDrive built = drive.drive;
        try {
            images[letter] = built.image = makeImage(drive);
        } catch (const std::exception& error) {
            drive.line.fail(error.what());
        }
        if (built.image != nullptr)
            built.files.try_emplace("capacity", std::to_string(built.image->sectors()) + "\n");
        installDrive(machine, letter, built);
    }
    for (const EntryDraft& entry : draft.entries) {
        const auto image = images.find(entry.drive);
        if (image == images.end() || image->second == nullptr)
            entry.line.fail(std::string("the machine has no disk hd") + entry.drive);
        try {
            image->second->setEntry(entry.sector, entry.number, entry.entry);
        } catch (const std::exception& error) {
            entry.line.fail(error.what());
        }
    }
}

// A machine that says nothing has one idle processor and all its memory free.
void buildLoad(const LoadDraft& load, Machine& machine) {
    ProcStat& stat = machine.stat();
    for (const auto& [cpu, rates] : load.cpus) stat.setRates(cpu, rates);
    for (const auto& [from, text] : load.stat) stat.setText(from, text);
    if (load.cpus.empty() && load.stat.empty()) stat.setRates(0, {});
    if (load.free)
        machine.freeProgram() = *load.free;
    else
        machine.freeProgram().setMemory(machine.memory().size() / 1024, 0);
}

}  // namespace

void buildInventory(const MachineDraft& draft, Machine& machine) {
    for (const auto& [location, function] : draft.pci)
        machine.pci().set(location, function.configuration);
    buildDrives(draft, machine);
    buildLoad(draft.load, machine);
}

}  // namespace sim
