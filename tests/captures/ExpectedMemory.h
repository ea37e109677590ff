// SPDX-License-Identifier: MIT
//
// What the memory expectations of modules (the older structures) and of devices share.
#ifndef TALVANE_TESTS_EXPECTEDMEMORY_H
#define TALVANE_TESTS_EXPECTEDMEMORY_H

#include <string>

#include "ExpectedField.h"
#include "PeerTable.h"

namespace captures {

constexpr std::size_t kMaxBanks = 16;
constexpr std::size_t kDeviceLocator = 16;  // SMBIOS 7.18

// Whether the library takes the memory from the module structures, or else knows the devices.
bool ModulesRecognised(const PeerTable& peer);
bool DevicesRecognised(const PeerTable& peer);

bool IsPopulated(const PeerStructure& device);

void ExpectModules(const PeerTable& peer, ExpectedFields& fields);
void ExpectDevices(const PeerTable& peer, ExpectedFields& fields);

// The slot number that follows from a locator.
void ExpectSlot(const std::string& locator, const std::string& prefix, ExpectedFields& fields);

void ExpectTypeDetail(const PeerStructure& device, const std::string& prefix,
                      ExpectedFields& fields);
ExpectedField& ExpectTotal(const PeerTable& peer, ExpectedFields& fields);

}  // namespace captures

#endif
