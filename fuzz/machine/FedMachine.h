// SPDX-License-Identifier: MIT
//
// The machine that a fuzz target makes of its input. While it lives, it answers the calls of the C
// library and the port accesses by which the library touches a machine. Unlike the simulated
// server it checks nothing and keeps no log, so that it answers millions of inputs in a short time.
#ifndef TALVANE_FUZZ_MACHINE_FEDMACHINE_H
#define TALVANE_FUZZ_MACHINE_FEDMACHINE_H

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "base/Bytes.h"

namespace fuzz {

using Bytes = std::vector<unsigned char>;

// A request to the BMC.
struct BmcRequest {
    std::uint8_t netFunction = 0;
    std::uint8_t command = 0;
    std::uint8_t lun = 0;
    talvane::ByteView data;
};

class FedMachine {
public:
    // One exists at a time. It forgets what the library has kept of the machine before.
    FedMachine();
    ~FedMachine();
    FedMachine(const FedMachine&) = delete;
    FedMachine& operator=(const FedMachine&) = delete;

    static FedMachine* Current();

    // Bytes at an address; zeros are between the pieces, and nothing after the last of them.
    struct Piece {
        std::uint64_t address;
        talvane::ByteView bytes;
    };
    std::vector<Piece> memory;  // physical memory
    std::vector<Piece> disk;    // what every drive of `identities` holds

    // The bytes after the completion code of a response; at most 256 of them reach the library.
    std::function<Bytes(const BmcRequest&)> bmc;

    // The configuration headers of the first PCI functions, 64 bytes each.
    talvane::ByteView pci;
    // The double word of them that an address of configuration mechanism #1 selects.
    [[nodiscard]] std::uint32_t Configuration(std::uint32_t address) const;

    // Files by their path; there are no others. A folder is there when a file is in it.
    std::map<std::string, Bytes> files;

    // The drives, by the path of the device, with what each answers about itself.
    std::map<std::string, talvane::ByteView> identities;

    // What `free` leaves in the scratch file of the memory query.
    std::string freeOutput;

    std::uint32_t configurationAddress = 0;  // that the library has selected
    Bytes entryPoint;                        // of the firmware's table
};

}  // namespace fuzz

#endif
