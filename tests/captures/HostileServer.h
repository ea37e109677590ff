// SPDX-License-Identifier: MIT
//
// A simulated server whose entry point and table are rewritten between rounds, and what must hold
// in each: every SMBIOS command returns, and writes nothing outside its record.
#ifndef TALVANE_TESTS_HOSTILESERVER_H
#define TALVANE_TESTS_HOSTILESERVER_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "RawTable.h"
#include "simulator/SimulatedServer.h"

namespace captures {

// An entry point and its table, taken out of a machine's memory.
struct TableImage {
    Bytes entry;
    Bytes table;
    bool legacy = false;  // a _DMI_ entry point
};

// Throws std::runtime_error when the memory has no entry point.
TableImage ImageOf(const sim::PhysicalMemory& memory);

class HostileServer {
public:
    // The table is placed low, where the library reads 64 KiB to get it and not 1 MiB.
    explicit HostileServer(const TableImage& image);

    void SetEntryByte(std::size_t offset, std::uint8_t value);
    void SetTableByte(std::size_t offset, std::uint8_t value);

    // The table length that the entry point states.
    void StateLength(std::uint16_t length);

    // Fills memory from the table's byte `offset` on, to well after its end.
    void FillFrom(std::size_t offset, std::uint8_t value);

    // Puts the image back as it was.
    void Restore();

    // Asks everything. Returns what went wrong, nothing when all is well.
    std::vector<std::string> Ask();

private:
    TableImage image_;
    sim::SimulatedServer server_;
};

}  // namespace captures

#endif
