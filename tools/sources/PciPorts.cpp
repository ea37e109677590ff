// SPDX-License-Identifier: MIT
//
// Why the PCI functions could not be listed: no port access, or more functions than fit.

#include <sys/io.h>

#include <cerrno>

#include "tools/base/Source.h"
#include "tools/sources/ErrorText.h"

namespace tool {
namespace {

std::string WhyPciNotRead() {
    if (iopl(3) != 0)
        return "cannot use the PCI configuration ports: " + ErrorText(errno, "no port access");
    (void)iopl(0);  // result not used: lowering is always allowed
    return "there are more than 64 PCI functions on buses 0 to 10, which the library does not list";
}

}  // namespace

const Source kPciPorts{"PCI ports", WhyPciNotRead, "pci"};

}  // namespace tool
