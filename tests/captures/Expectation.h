// SPDX-License-Identifier: MIT
//
// What the library must answer about a machine, derived from what dmidecode prints about it. Field
// names are those of Answers.h.
#ifndef TALVANE_TESTS_EXPECTATION_H
#define TALVANE_TESTS_EXPECTATION_H

#include "ExpectedField.h"
#include "PeerTable.h"

namespace captures {

// Every field of every SMBIOS command.
ExpectedFields ExpectedOf(const PeerTable& peer);

// The answers of a machine whose table the library does not read: `why` it does not.
ExpectedFields ExpectedWithoutTable(bool entryPointFound, Rule why);

// The answers of a machine that has no table to read.
ExpectedFields ExpectedWithoutFirmwareTable();

// The parts of ExpectedOf, one per subject.
void ExpectBoardAndSystem(const PeerTable& peer, ExpectedFields& fields);
void ExpectProcessors(const PeerTable& peer, ExpectedFields& fields);
void ExpectMemory(const PeerTable& peer, ExpectedFields& fields);
void ExpectPorts(const PeerTable& peer, ExpectedFields& fields);
void ExpectPower(const PeerTable& peer, ExpectedFields& fields);
void ExpectCoolingAndProbes(const PeerTable& peer, ExpectedFields& fields);

// "cpu[3].": the prefix of an element's field names, counted from 1.
std::string Element(const char* array, std::size_t number);

}  // namespace captures

#endif
