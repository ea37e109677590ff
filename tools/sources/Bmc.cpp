// SPDX-License-Identifier: MIT
//
// Why the BMC could not be reached. Follows the library's way to it: opens the device, asks for
// access to the ports, and looks for a system interface there.

#include <fcntl.h>
#include <sys/io.h>

#include <cerrno>

#include "base/PortIo.h"
#include "tools/base/Descriptor.h"
#include "tools/base/Source.h"
#include "tools/sources/ErrorText.h"

namespace tool {
namespace {

// Status or flags of the two system interfaces at their default base 0xCA2 and 0xCA9 (IPMI 2.0,
// 9.5 and 10.5). All ones mean that no interface is there.
constexpr std::uint16_t kKcsStatus = 0xCA3;
constexpr std::uint16_t kSmicControl = 0xCAA;
constexpr std::uint8_t kNoInterface = 0xFF;

std::string WhyBmcNotRead() {
    const Descriptor device("/dev/ipmi", O_RDONLY);
    if (!device.IsOpen())
        return "cannot open /dev/ipmi: " + ErrorText(errno, "no BMC, or its driver is not loaded");
    if (iopl(3) != 0)
        return "cannot use the ports of the BMC: " + ErrorText(errno, "no port access");
    const bool answers = talvane::ReadPort8(kKcsStatus) != kNoInterface ||
                         talvane::ReadPort8(kSmicControl) != kNoInterface;
    (void)iopl(0);  // result not used: lowering is always allowed
    if (!answers) return "no BMC answers at port 0xCA3 (KCS) or 0xCAA (SMIC)";
    return "the BMC behind /dev/ipmi did not answer";
}

}  // namespace

const Source kBmc{"/dev/ipmi", WhyBmcNotRead, "bmc"};

}  // namespace tool
