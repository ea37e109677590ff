// SPDX-License-Identifier: MIT
//
// Reads the headers of the functions through the library's own scanner, on the buses that it knows.

#include <sys/io.h>

#include <cerrno>

#include "PCI/PCIscan.h"
#include "base/Bytes.h"
#include "tools/capture/MachineCapture.h"

namespace tool {
namespace {

constexpr unsigned kCapturedBuses = 11;
constexpr unsigned kDevicesOfABus = 32;
constexpr unsigned kFunctionsOfADevice = 8;
constexpr unsigned kRegisterSize = 4;

bool IsThere(unsigned long ids) {
    const unsigned long vendor = ids & 0xFFFF;
    return vendor != 0 && vendor != 0xFFFF;
}

}  // namespace

void CapturePci(MachineCapture& capture) {
    if (iopl(3) != 0) {
        capture.unopened.push_back({"ports", errno});
        capture.notRead.push_back(&kPciPorts);
        return;
    }
    PCIscan scan;
    scan.m_InitOK = 1;
    for (unsigned i = 0; i < kCapturedBuses * kDevicesOfABus * kFunctionsOfADevice; ++i) {
        PciCapture function{i / kFunctionsOfADevice / kDevicesOfABus,
                            i / kFunctionsOfADevice % kDevicesOfABus,
                            i % kFunctionsOfADevice,
                            {}};
        const auto read = [&](unsigned at) {
            return scan.readPCIDeviceRegister(static_cast<unsigned char>(function.bus),
                                              static_cast<unsigned char>(function.device),
                                              static_cast<unsigned char>(function.function),
                                              static_cast<unsigned char>(at));
        };
        if (!IsThere(read(0))) continue;
        for (unsigned at = 0; at < function.header.size(); at += kRegisterSize) {
            const unsigned long value = read(at);
            for (unsigned byte = 0; byte < kRegisterSize; ++byte)
                function.header[at + byte] = static_cast<std::uint8_t>(value >> (8 * byte));
        }
        capture.pci.push_back(function);
    }
    (void)iopl(0);  // result not used: lowering is always allowed
}

}  // namespace tool
