// SPDX-License-Identifier: MIT
//
// What the doctor looks at, before anybody judges it.
#ifndef TALVANE_TOOLS_DOCTOR_FACTS_H
#define TALVANE_TOOLS_DOCTOR_FACTS_H

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace tool {

// A system call that was tried: 0, or the errno that it failed with.
struct Attempt {
    int error = 0;

    bool Succeeded() const { return error == 0; }
};

struct Facts {
    bool isRoot = true;
    bool hasUefi = false;            // the system was booted by UEFI firmware
    bool isEmulated = false;         // the kernel has 32-bit programs run by QEMU
    bool refuses32Bit = false;       // the kernel was told to run no 32-bit programs
    std::string lockdown;            // "none", "integrity" or "confidentiality"; empty: not known
    Attempt openMemory;              // /dev/mem
    Attempt readMemory;              // the read of a mebibyte that the library makes there
    Attempt openTables;              // /sys/firmware/dmi/tables/DMI
    Attempt portAccess;              // iopl
    Attempt listPci;                 // /sys/bus/pci/devices
    std::size_t pciFunctions = 0;    // on the buses that the library scans
    bool hasInterfaceDriver = true;  // ipmi_si or another driver of a system interface
    bool hasDeviceDriver = true;     // ipmi_devintf
    Attempt openKernelIpmi;          // /dev/ipmi0
    Attempt askBmc;                  // Get Device ID; ETIMEDOUT when nothing came
    Attempt openBridge;              // /dev/ipmi
    std::vector<std::string> otherIpmiPrograms;  // that have one of these devices open
    Attempt listIde;                             // /proc/ide
    Attempt listDisks;                           // /sys/block
    std::string firstDisk;                       // the path of its device; empty: there is no disk
    Attempt openDisk;
    Attempt openStat;     // /proc/stat
    bool hasFree = true;  // in PATH
    bool hasAwk = true;
    Attempt writeHere;              // into the working directory
    std::string library;            // the file of the library in this process
    std::string meantLibrary;       // the file that belongs to this tool
    bool hasPreloadLibrary = true;  // that reads through the kernel's interfaces
};

// Looks at the system whose sys, proc and dev lie below `root`, and at this process.
Facts ReadFacts(const std::filesystem::path& root);

}  // namespace tool

#endif
