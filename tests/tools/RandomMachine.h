// SPDX-License-Identifier: MIT
//
// Descriptions of machines that nobody has thought of, quirks and damage among them.
#ifndef TALVANE_TESTS_TOOLS_RANDOMMACHINE_H
#define TALVANE_TESTS_TOOLS_RANDOMMACHINE_H

#include <string>

// The text of a machine.txt that needs no other file. The same seed gives the same text.
std::string RandomMachine(unsigned seed);

#endif
