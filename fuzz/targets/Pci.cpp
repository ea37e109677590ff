// SPDX-License-Identifier: MIT
//
// PCI functions. Input: headers of 64 bytes each, at one place after another. The sum of all bytes
// decides which inputs are asked for the report, too: every sixteenth, since it looks at all 2,816
// places of a machine.

#include <memory>

#include "GetPciInfo.h"
#include "PCI/PCIscan.h"
#include "PCI/StatusText.h"
#include "PCI/SubClassName.h"
#include "fuzz/machine/FedMachine.h"

namespace {

void ReadHeaders(std::size_t count) {
    PCIscan scan;
    scan.m_InitOK = 1;
    for (std::size_t function = 0; function < count && function < 8; ++function) {
        if (scan.readPCIheader(0, 0, static_cast<unsigned char>(function)) != 0) continue;
        PCIdevice& found = scan.m_dev;
        const auto text = std::make_unique<char[]>(talvane::kStatusTextSize);
        talvane::AppendStatusTexts(found.getStatus(), text.get());
        (void)talvane::SubClassName(
            {found.getClassCode(), found.getSubClassCode(), found.getProgIF()});
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FedMachine machine;
    machine.pci = talvane::ByteView(data, size);
    ReadHeaders(size / sizeof(_HEADER) + 1);
    constexpr unsigned kReportEvery = 16;
    unsigned sum = 0;
    for (const unsigned char byte : machine.pci) sum += byte;
    if (sum % kReportEvery == 0) {
        const auto record = std::make_unique<DeviceInformation>();
        (void)GetPciInfo(record.get());
    }
    return 0;
}
