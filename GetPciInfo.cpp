// SPDX-License-Identifier: MIT
//
// The PCI report: scans the functions and describes each one in an entry of the record.

#include "GetPciInfo.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <list>

#include "PCI/IoPrivilege.h"
#include "PCI/PCIscan.h"
#include "PCI/StatusText.h"
#include "PCI/SubClassName.h"

using namespace talvane;

// Class codes (PCI 3.0, appendix D).
const char MainDev[20][64] = {
    "Old devices",                                         // 00
    "Mass storage controller",                             // 01
    "Network controller",                                  // 02
    "Display controller",                                  // 03
    "Multimedia device",                                   // 04
    "Memory controller",                                   // 05
    "Bridge device",                                       // 06
    "Simple communication controllers",                    // 07
    "Base system peripherals",                             // 08
    "Input devices",                                       // 09
    "Docking stations",                                    // 0A
    "Processors",                                          // 0B
    "Serial bus controllers",                              // 0C
    "Wireless controller",                                 // 0D
    "Intelligent I/O controllers",                         // 0E
    "Satellite communication controllers",                 // 0F
    "Encryption/Decryption controllers",                   // 10
    "Data acquisition and signal processing controllers",  // 11
    "Unknown",                                             // 12
    "",                                                    // 13
};

namespace {

constexpr unsigned kNamedClasses = sizeof MainDev / sizeof MainDev[0];
constexpr unsigned char kOtherSubClass = 0x80;
constexpr unsigned kOtherTextLimit = 32;
constexpr unsigned char kNoInterruptLine = 0xFF;
constexpr int kMaxEntries = sizeof DeviceInformation::dev / sizeof DeviceInformation::dev[0];

constexpr int kScanAttempts = 3;
constexpr unsigned kPauseSeconds = 5000;

static_assert(sizeof(DEV::status) == kStatusTextSize);

// Clears the field and copies at most limit - 1 characters of the name.
template <unsigned N>
void SetName(char (&field)[N], const char* name, unsigned limit = N) {
    std::memset(field, 0, N);
    CopyString(field, name, limit);
}

void DescribeFunction(PCIdevice& function, DEV& entry) {
    (void)std::snprintf(entry.desc, sizeof entry.desc, "bus:%d, dev:%d, func:%d",
                        function.getBusNo(), function.getDevNo(), function.getFuncNo());
    entry.revision = function.getRevisionID();
    std::memset(entry.status, 0, sizeof entry.status);
    AppendStatusTexts(function.getStatus(), entry.status);
    entry.IRQ = function.getIntLine() == kNoInterruptLine ? 0 : function.getIntLine();
    entry.IOBase = static_cast<long>(function.header.BaseAddress[0]);

    const PciClass code = {function.getClassCode(), function.getSubClassCode(),
                           function.getProgIF()};
    if (code.classCode < kNamedClasses) SetName(entry.model, MainDev[code.classCode]);
    if (code.subClass == kOtherSubClass) SetName(entry.type, "other", kOtherTextLimit);
    if (const char* name = SubClassName(code)) SetName(entry.type, name);
}

// Returns whether one of the attempts found no more functions than the list may hold.
bool Scan(PCIscan& scan, std::list<PCIdevice>& functions) {
    for (int attempt = 0; attempt < kScanAttempts; ++attempt) {
        if (scan.getAllDevice(functions) == 0) return true;
        // Kept: the pause also follows the last failure.
        (void)sleep(kPauseSeconds);  // result not used: a signal may cut the pause short
    }
    return false;
}

}  // namespace

int GetPciInfo(DeviceInformation* info) {
    const IoPrivilege privilege;
    PCIscan scan;
    scan.m_InitOK = privilege.IsRaised();
    std::list<PCIdevice> functions;
    if (!Scan(scan, functions)) return -1;
    int count = 0;
    for (PCIdevice& function : functions) {
        if (count == kMaxEntries) break;  // only a scan that an agent replaced finds more
        DescribeFunction(function, info->dev[count++]);
    }
    info->quantity = count;
    return 0;
}

void CopyString(char* target, const char* source, unsigned int TargetBufLen) {
    if (TargetBufLen == 0) return;
    std::memcpy(target, source, std::min<std::size_t>(std::strlen(source), TargetBufLen - 1));
}
