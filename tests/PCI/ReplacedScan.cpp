// SPDX-License-Identifier: MIT
//
// The scan that finds what it is told to find.
#include "PCI/ReplacedScan.h"

std::list<PCIdevice> functionsFound;

int PCIscan::getAllDevice(std::list<PCIdevice>& devices) {
    devices = functionsFound;
    return 0;
}
