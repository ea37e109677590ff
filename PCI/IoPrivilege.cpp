// SPDX-License-Identifier: MIT
//
// The two system calls that raise and lower the I/O privilege level.

#include "PCI/IoPrivilege.h"

#include <sys/io.h>

namespace talvane {

IoPrivilege::IoPrivilege() : raised_(iopl(3) == 0) {}

IoPrivilege::~IoPrivilege() {
    (void)iopl(0);  // result not used: lowering needs no permission
}

}  // namespace talvane
