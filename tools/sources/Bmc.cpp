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
#include "tools/library/BmcPorts.h"
#include "tools/sources/ErrorText.h"

namespace tool {
namespace {

std::string WhyBmcNotRead() {
    const Descriptor device("/dev/ipmi", O_RDONLY);
    if (!device.IsOpen())
        return "cannot open /dev/ipmi: " + ErrorText(errno, "no BMC, or its driver is not loaded");
    if (iopl(3) != 0)
        return "cannot use the ports of the BMC: " + ErrorText(errno, "no port access");
    const bool answers = talvane::ReadPort8(kKcsStatusPort) != kNoInterface ||
                         talvane::ReadPort8(kSmicControlPort) != kNoInterface;
    (void)iopl(0);  // result not used: lowering is always allowed
    if (!answers) return "no BMC answers at port 0xCA3 (KCS) or 0xCAA (SMIC)";
    return "the BMC behind /dev/ipmi did not answer";
}

}  // namespace

const Source kBmc{"/dev/ipmi", WhyBmcNotRead, "bmc"};

}  // namespace tool
