// SPDX-License-Identifier: MIT
//
// PCI functions. Input: a byte; 0 asks for the report, which looks at all 2,816 places of a
// machine, and any other one for single headers. Then the headers, 64 bytes each, at one place
// after another.

#include <memory>

#include "GetPciInfo.h"
#include "PCI/PCIscan.h"
#include "PCI/StatusText.h"
#include "PCI/SubClassName.h"
#include "fuzz/Input.h"
#include "fuzz/machine/FedMachine.h"

namespace {

constexpr std::uint32_t kHeaderSize = 64;

// Bits 8 to 23 of a configuration address number the function, bits 2 to 7 its registers.
std::uint32_t RegisterAt(talvane::ByteView headers, std::uint32_t address) {
    constexpr std::uint32_t kNoAnswer = 0xFFFFFFFF;
    const std::size_t at = std::size_t{address >> 8 & 0xFFFF} * kHeaderSize + (address & 0xFC);
    return at < headers.size() ? talvane::Le32(headers, at) : kNoAnswer;
}

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
    fuzz::Input input(data, size);
    const bool wantsReport = input.TakeByte() == 0;
    const talvane::ByteView headers = input.Rest();
    machine.pci = [headers](std::uint32_t address) { return RegisterAt(headers, address); };
    ReadHeaders(headers.size() / kHeaderSize + 1);
    if (wantsReport) {
        const auto record = std::make_unique<DeviceInformation>();
        (void)GetPciInfo(record.get());
    }
    return 0;
}
