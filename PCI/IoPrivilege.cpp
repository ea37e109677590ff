// SPDX-License-Identifier: MIT

#include "PCI/IoPrivilege.h"

#include <sys/io.h>

IoPrivilege::IoPrivilege() : raised(iopl(3) == 0) {}

IoPrivilege::~IoPrivilege() {
    (void)iopl(0);  // result not used: lowering needs no permission
}
