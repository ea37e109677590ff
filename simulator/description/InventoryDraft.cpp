// SPDX-License-Identifier: MIT
//
// Gives a machine the PCI functions, drives and load that a description asks for.

#include "simulator/description/InventoryDraft.h"

#include <exception>

#include "simulator/description/MachineDraft.h"
#include "simulator/machine/Machine.h"

namespace sim {
namespace {

std::shared_ptr<DiskImage> ImageOf(std::span<const std::uint8_t> bytes) {
    constexpr std::size_t kSector = DiskImage::kSectorSize;
    const std::uint64_t sectors = bytes.size() / kSector;
    auto image = std::make_shared<DiskImage>(sectors);
    for (std::uint64_t i = 0; i < sectors; ++i)
        image->Write(i, bytes.subspan(static_cast<std::size_t>(i) * kSector, kSector));
    return image;
}

std::shared_ptr<DiskImage> MakeImage(const DriveDraft& drive) {
    if (drive.archivedImage) return ImageOf(*drive.archivedImage);
    if (!drive.image.empty()) return std::make_shared<DiskImage>(drive.image);
    if (!drive.size) return nullptr;
    auto image = std::make_shared<DiskImage>(*drive.size);
    for (const auto& [sector, bytes] : drive.sectors) image->Write(sector, bytes);
    return image;
}

void BuildDrives(const MachineDraft& draft, Machine& machine) {
    std::map<char, std::shared_ptr<DiskImage>> images;
    if (draft.isWithoutDrives) machine.InstallDirectory("/proc/ide");
    for (const auto& [letter, drive] : draft.drives) {
        IdeDrive built = drive.drive;
        try {
            images[letter] = built.image = MakeImage(drive);
        } catch (const std::exception& error) {
            drive.line.Fail(error.what());
        }
        if (built.image != nullptr && !drive.hasOwnFiles)
            built.files.try_emplace("capacity", std::to_string(built.image->Sectors()) + "\n");
        InstallDrive(machine, letter, built);
    }
    for (const EntryDraft& entry : draft.entries) {
        const auto image = images.find(entry.drive);
        if (image == images.end() || image->second == nullptr)
            entry.line.Fail(std::string("the machine has no disk hd") + entry.drive);
        try {
            image->second->SetEntry(entry.sector, entry.number, entry.entry);
        } catch (const std::exception& error) {
            entry.line.Fail(error.what());
        }
    }
}

// Without any statement about load a machine has one idle processor, and all its memory is free.
void BuildLoad(const LoadDraft& load, Machine& machine) {
    ProcStat& stat = machine.GetStat();
    for (const auto& [cpu, rates] : load.cpus) stat.SetRates(cpu, rates);
    for (const auto& [from, text] : load.stat) stat.SetText(from, text);
    if (load.statContinues) stat.Continue();
    if (load.cpus.empty() && load.stat.empty()) stat.SetRates(0, {});
    if (load.free)
        machine.GetFreeProgram() = *load.free;
    else
        machine.GetFreeProgram().SetMemory(machine.GetMemory().Size() / 1024, 0);
}

}  // namespace

void BuildInventory(const MachineDraft& draft, Machine& machine) {
    for (const auto& [location, function] : draft.pci)
        machine.GetPci().Set(location, function.configuration);
    BuildDrives(draft, machine);
    BuildLoad(draft.load, machine);
}

}  // namespace sim
