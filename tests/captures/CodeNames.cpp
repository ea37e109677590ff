// SPDX-License-Identifier: MIT
//
// The names of every code but the processor families.

#include "CodeNames.h"

namespace captures {

namespace {

// Port types (SMBIOS 7.9.3).
constexpr NamePair kPortTypes[] = {
    {"None", "None"},
    {"Parallel Port XT/AT Compatible", "Parallel Port XT/AT Compatible"},
    {"Parallel Port PS/2", "Parallel Port PS/2"},
    {"Parallel Port ECP", "Parallel Port ECP"},
    {"Parallel Port EPP", "Parallel Port EPP"},
    {"Parallel Port ECP/EPP", "Parallel Port ECP/EPP"},
    {"Serial Port XT/AT Compatible", "Serial Port XT/AT Compatible"},
    {"Serial Port 16450 Compatible", "Serial Port 16450 Compatible"},
    {"Serial Port 16550 Compatible", "Serial Port 16550 Compatible"},
    {"Serial Port 16550A Compatible", "Serial Port 16550A Compatible"},
    {"SCSI Port", "SCSI Port"},
    {"MIDI Port", "MIDI Port"},
    {"Joystick Port", "Joy Stick Port"},
    {"Keyboard Port", "Keyboard Port"},
    {"Mouse Port", "Mouse Port"},
    {"SSA SCSI", "SSA SCSI"},
    {"USB", "USB"},
    {"Firewire (IEEE P1394)", "FireWire (IEEE P1394)"},
    {"PCMCIA Type I", "PCMCIA Type II"},
    {"PCMCIA Type II", "PCMCIA Type II"},
    {"PCMCIA Type III", "PCMCIA Type III"},
    {"Cardbus", "Cardbus"},
    {"Access Bus Port", "Access Bus Port"},
    {"SCSI II", "SCSI II"},
    {"SCSI Wide", "SCSI Wide"},
    {"PC-98", "PC-98"},
    {"PC-98 Hireso", "PC-98-Hireso"},
    {"PC-H98", "PC-H98"},
    {"Video Port", "Video Port"},
    {"Audio Port", "Audio Port"},
    {"Modem Port", "Modem Port"},
    {"Network Port", "Network Port"},
    {"SATA", "Unknown"},
    {"SAS", "Unknown"},
    {"8251 Compatible", "8251 Compatible"},
    {"8251 FIFO Compatible", "8251 FIFO Compatible"},
    {"Other", "Other"},
};

// Memory types (SMBIOS 7.18.2).
constexpr NamePair kMemoryTypes[] = {
    {"Other", "Other"},    {"Unknown", "Unknown"},
    {"DRAM", "DRAM"},      {"EDRAM", "EDRAM"},
    {"VRAM", "VRAM"},      {"SRAM", "SRAM"},
    {"RAM", "RAM"},        {"ROM", "ROM"},
    {"Flash", "FLASH"},    {"EEPROM", "EEPROM"},
    {"FEPROM", "FEPROM"},  {"EPROM", "EPROM"},
    {"CDRAM", "CDRAM"},    {"3DRAM", "3DRAM"},
    {"SDRAM", "SDRAM"},    {"SGRAM", "SGRAM"},
    {"RDRAM", "RDRAM"},    {"DDR", "DDR"},
    {"DDR2", "Unknown"},   {"DDR2 FB-DIMM", "Unknown"},
    {"DDR3", "Unknown"},   {"FBD2", "Unknown"},
    {"DDR4", "Unknown"},   {"LPDDR", "Unknown"},
    {"LPDDR2", "Unknown"}, {"LPDDR3", "Unknown"},
    {"LPDDR4", "Unknown"}, {"Logical non-volatile device", "Unknown"},
    {"HBM", "Unknown"},    {"HBM2", "Unknown"},
    {"DDR5", "Unknown"},   {"LPDDR5", "Unknown"},
};

// Memory type details (SMBIOS 7.18.3), from bit 1 upward.
constexpr NamePair kTypeDetails[] = {
    {"Other", "other"},
    {"Unknown", "Unknown"},
    {"Fast-paged", "Fast-paged"},
    {"Static Column", "Static column"},
    {"Pseudo-static", "Pseudo-static"},
    {"RAMBus", "RAMBUS"},
    {"Synchronous", "Synchronous"},
    {"CMOS", "CMOS"},
    {"EDO", "EDO"},
    {"Window DRAM", "Window DRAM"},
    {"Cache DRAM", "Cache DRAM"},
    {"Non-Volatile", "Non-volatile"},
    {"Registered (Buffered)", ""},
    {"Unbuffered (Unregistered)", ""},
    {"LRDIMM", ""},
};

// Memory module types (SMBIOS 7.7.1), from bit 0 upward.
constexpr NamePair kModuleTypes[] = {
    {"Other", "other"},       {"Unknown", "Unknown"},
    {"Standard", "Standard"}, {"FPM", "Fast Page Mode"},
    {"EDO", "EDO"},           {"Parity", "Parity"},
    {"ECC", "ECC"},           {"SIMM", "SIMM"},
    {"DIMM", "DIMM"},         {"Burst EDO", " Burst EDO"},
    {"SDRAM", " SDRAM"},
};

}  // namespace

std::span<const NamePair> PortTypes() {
    return kPortTypes;
}
std::span<const NamePair> MemoryTypes() {
    return kMemoryTypes;
}
std::span<const NamePair> TypeDetails() {
    return kTypeDetails;
}
std::span<const NamePair> ModuleTypes() {
    return kModuleTypes;
}

std::optional<std::string> OurName(std::span<const NamePair> names, std::string_view peer) {
    if (peer == "<OUT OF SPEC>") return "Unknown";
    for (const NamePair& pair : names)
        if (pair.peer == peer) return std::string(pair.ours);
    return std::nullopt;
}

}  // namespace captures
