// SPDX-License-Identifier: MIT
//
// PCIscan::getAllDevice put in front of the library's own: a program with ReplacedScan.cpp hands
// the report its functions without a scan, also such as no scan finds.
#ifndef TALVANE_TESTS_PCI_REPLACEDSCAN_H
#define TALVANE_TESTS_PCI_REPLACEDSCAN_H

#include <list>

#include "PCI/PCIscan.h"

// What every scan finds.
extern std::list<PCIdevice> functionsFound;

#endif
