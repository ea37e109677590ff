// SPDX-License-Identifier: MIT
//
// What a capture takes along of a machine: its sources, byte for byte, as the library and this tool
// read them. Reading them, taking secrets out of them and writing them down are apart.
#ifndef TALVANE_TOOLS_CAPTURE_MACHINECAPTURE_H
#define TALVANE_TOOLS_CAPTURE_MACHINECAPTURE_H

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tools/base/Source.h"
#include "tools/base/Way.h"

namespace tool {

using CapturedBytes = std::vector<std::uint8_t>;

// A device or folder that cannot be opened.
struct Unopened {
    std::string path;  // or "ports", for the I/O privilege
    int error;
};

struct SmbiosCapture {
    bool isDmi = false;    // the entry point is a _DMI_ one alone
    CapturedBytes entry;   // 31 bytes, or 15 of a _DMI_ one
    std::uint32_t at = 0;  // the entry point's address
    bool isTableRead = false;
    CapturedBytes table;  // as long as the entry point says
};

struct PciCapture {
    unsigned bus, device, function;
    std::array<std::uint8_t, 64> header;
};

inline constexpr const char* kGetSdr = "Get SDR";

// One request, and what came back: nothing when the BMC refused or did not answer.
struct BmcExchange {
    const char* command;  // its name in machine files
    int lun;
    CapturedBytes data;
    CapturedBytes answer;
};

struct BmcCapture {
    std::string interface;  // "kcs", "smic", "both" or "none"
    int majorFirmware = 1;
    int minorFirmware = 0;               // decimal
    std::vector<CapturedBytes> records;  // whole ones, with IDs of their own, in their order
    std::map<int, std::string> names;    // of sensors, by number
    std::vector<BmcExchange> readings;
    std::vector<BmcExchange> thresholds;
    std::vector<std::array<int, 3>> channels;  // number, medium, protocol
    CapturedBytes inventory;
    std::vector<BmcExchange> others;  // that the above does not answer alike
};

struct DriveCapture {
    char letter;
    std::map<std::string, std::string> files;  // of its folder in /proc/ide
    bool isOpened = false;                     // its device file
    std::optional<CapturedBytes> identity;     // 512 bytes
    std::uint64_t sectorCount = 0;
    std::map<std::uint64_t, CapturedBytes> sectors;  // partition tables alone, none all zero
};

struct LoadCapture {
    std::array<std::string, 2> stat;  // /proc/stat, and a second later
    std::string free;                 // what the program free prints
};

struct MachineCapture {
    std::optional<SmbiosCapture> smbios;
    std::uint64_t memorySize = 0;  // what of it makes the reads fail that failed; 0: none did
    std::vector<PciCapture> pci;
    std::optional<BmcCapture> bmc;
    bool hasIdeFolder = false;
    std::vector<DriveCapture> drives;
    LoadCapture load;
    std::vector<Unopened> unopened;
    std::vector<const Source*> notRead;
};

// Each reads one source. What cannot be read is noted in `unopened` and `notRead`.
void CaptureSmbios(MachineCapture& capture);
void CaptureBmc(MachineCapture& capture);
void CapturePci(MachineCapture& capture);
void CaptureDrives(MachineCapture& capture);
void CaptureLoad(MachineCapture& capture);  // takes a second

}  // namespace tool

#endif
