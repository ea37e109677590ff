// SPDX-License-Identifier: MIT
//
// Puts the expectations of all commands together.

#include "Expectation.h"

#include "Answers.h"

namespace captures {

std::string Element(const char* array, std::size_t number) {
    return std::string(array) + "[" + std::to_string(number) + "].";
}

ExpectedFields ExpectedOf(const PeerTable& peer) {
    ExpectedFields fields;
    fields.Add("IsSmBiosSupport", peer.Legacy() ? "0" : "1");
    for (const char* command : kCommandNames) fields.Add(std::string(command) + ".result", "0");
    ExpectBoardAndSystem(peer, fields);
    ExpectProcessors(peer, fields);
    ExpectMemory(peer, fields);
    ExpectPorts(peer, fields);
    ExpectPower(peer, fields);
    ExpectCoolingAndProbes(peer, fields);
    return fields;
}

ExpectedFields ExpectedWithoutTable(bool entryPointFound, Rule why) {
    ExpectedFields fields;
    fields.Add("IsSmBiosSupport", "1").By(why, entryPointFound ? "1" : "0");
    for (const char* command : kCommandNames)
        fields.Add(std::string(command) + ".result", "0").By(why, "-1");
    return fields;
}

ExpectedFields ExpectedWithoutFirmwareTable() {
    ExpectedFields fields;
    fields.Add("IsSmBiosSupport", "0");
    for (const char* command : kCommandNames) fields.Add(std::string(command) + ".result", "-1");
    return fields;
}

}  // namespace captures
