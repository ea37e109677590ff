// SPDX-License-Identifier: MIT
//
// Reads the machine as a program does, through its devices.

#include "tests/tools/MachineTree.h"

#include <fcntl.h>
#include <linux/hdreg.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <vector>

#include "simulator/description/MachineFile.h"
#include "simulator/machine/Machine.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

std::string AsText(const Bytes& bytes) {
    return {bytes.begin(), bytes.end()};
}

std::string FileOf(sim::Machine& machine, const std::string& path) {
    const auto opened = machine.Open("", path.c_str(), O_RDONLY);
    if (!opened->Ok()) return "";
    std::array<char, 256> bytes;
    const auto file = static_cast<int>(opened->value);
    const auto got = machine.Read("", file, bytes.data(), bytes.size());
    (void)machine.Close("", file);
    return {bytes.data(), static_cast<std::size_t>(got->value)};
}

std::uint32_t Number(const Bytes& bytes, std::size_t at, unsigned size) {
    std::uint32_t value = 0;
    for (unsigned i = 0; i < size; ++i) value |= std::uint32_t{bytes.at(at + i)} << (8 * i);
    return value;
}

void WriteSmbios(sim::Machine& machine, const HostTree& tree) {
    Bytes entryPoint(31);
    for (std::uint32_t at = 0xF0000; at < 0x100000; at += 16) {
        if (!machine.GetMemory().Read(at, entryPoint)) return;
        if (AsText(entryPoint).rfind("_SM_", 0) != 0) continue;
        Bytes table(Number(entryPoint, 0x16, 2));
        if (!machine.GetMemory().Read(Number(entryPoint, 0x18, 4), table)) return;
        tree.Write("sys/firmware/dmi/tables/smbios_entry_point", AsText(entryPoint));
        tree.Write("sys/firmware/dmi/tables/DMI", AsText(table));
        return;
    }
}

void WritePci(sim::Machine& machine, const HostTree& tree) {
    std::filesystem::create_directories(tree.root / "sys/bus/pci/devices");
    (void)machine.SetPrivilege(3);
    for (unsigned place = 0; place < 11 * 32 * 8; ++place) {
        const std::uint32_t address = 0x80000000 | place << 8;
        machine.PortOut(0xCF8, 4, address);
        if (machine.PortIn(0xCFC, 4) == 0xFFFFFFFF) continue;
        std::string configuration;
        for (unsigned at = 0; at < 64; at += 4) {
            machine.PortOut(0xCF8, 4, address | at);
            const std::uint32_t value = machine.PortIn(0xCFC, 4);
            for (unsigned i = 0; i < 4; ++i)
                configuration += static_cast<char>(value >> (8 * i) & 0xFF);
        }
        char name[64];
        std::snprintf(name, sizeof name, "sys/bus/pci/devices/0000:%02x:%02x.%x/config", place >> 8,
                      place >> 3 & 31, place & 7);
        tree.Write(name, configuration);
    }
}

// Only what is not zero, so that a disk of any size is a small file.
void CopySectors(int disk, std::uint64_t size, const std::filesystem::path& file) {
    std::ofstream(file).close();
    std::filesystem::resize_file(file, size);
    const int copy = open64(file.c_str(), O_WRONLY);
    std::vector<char> part(65536);
    for (off64_t at = 0; (at = lseek64(disk, at, SEEK_DATA)) >= 0;) {
        const ssize_t got = pread64(disk, part.data(), part.size(), at);
        if (got <= 0 || pwrite64(copy, part.data(), static_cast<std::size_t>(got), at) != got)
            break;
        at += got;
    }
    (void)close(copy);
}

void WriteDisk(sim::Machine& machine, char letter, const HostTree& tree) {
    const std::string name = std::string("hd") + letter;
    const std::string folder = "/proc/ide/ide" + std::to_string((letter - 'a') / 2) + "/" + name;
    if (FileOf(machine, folder + "/media") != "disk\n") return;
    const std::string sysfs = "sys/block/" + name + "/";
    const std::string capacity = FileOf(machine, folder + "/capacity");
    tree.Write(sysfs + "size", capacity);
    tree.Write(sysfs + "device/model", FileOf(machine, folder + "/model"));
    const auto opened = machine.Open("", ("/dev/" + name).c_str(), O_RDONLY);
    const auto disk = static_cast<int>(opened->value);
    Bytes identity(512);
    (void)machine.Ioctl("", disk, HDIO_GET_IDENTITY, identity.data());
    tree.Write(sysfs + "device/serial", AsText({identity.begin() + 20, identity.begin() + 40}));
    tree.Write(sysfs + "device/firmware", AsText({identity.begin() + 46, identity.begin() + 54}));
    std::filesystem::create_directories(tree.root / "dev");
    CopySectors(disk, std::stoull(capacity) * 512, tree.root / "dev" / name);
    (void)machine.Close("", disk);
}

}  // namespace

void WriteTree(const std::filesystem::path& folder, const HostTree& tree) {
    sim::Machine machine;
    sim::LoadMachine(folder, machine);
    WriteSmbios(machine, tree);
    WritePci(machine, tree);
    std::filesystem::create_directories(tree.root / "sys/block");
    for (char letter = 'a'; letter <= 'd'; ++letter) WriteDisk(machine, letter, tree);
    std::filesystem::create_directories(tree.root / "proc");
    std::filesystem::create_symlink("/proc/stat", tree.root / "proc/stat");
}
