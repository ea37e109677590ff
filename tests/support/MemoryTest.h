// SPDX-License-Identifier: MIT
//
// Fixture of the memory tests: builders for the structures that describe memory.
#ifndef TALVANE_TESTS_SUPPORT_MEMORYTEST_H
#define TALVANE_TESTS_SUPPORT_MEMORYTEST_H

#include <string>
#include <vector>

#include "support/SmBiosTest.h"

class MemoryTest : public SmBiosTest {
protected:
    // Memory controller (SMBIOS 7.6) with a list of module handles.
    sim::SmbiosStructure& AddController(const std::vector<int>& modules) {
        const std::size_t length = 15 + 2 * modules.size() + 1;
        sim::SmbiosStructure& controller = table.Add(5, 0x500, static_cast<std::uint8_t>(length));
        controller.Byte(14, static_cast<std::uint8_t>(modules.size()));
        for (std::size_t i = 0; i < modules.size(); ++i)
            controller.Word(15 + 2 * i, static_cast<std::uint16_t>(modules[i]));
        return controller;
    }

    // Memory module (7.7): installed size as a power of two, type bits.
    sim::SmbiosStructure& AddModule(int moduleHandle, int size, int typeBits = 0) {
        return table.Add(6, static_cast<std::uint16_t>(moduleHandle), 12)
            .Byte(9, static_cast<std::uint8_t>(size))
            .Word(7, static_cast<std::uint16_t>(typeBits));
    }

    // Memory device (7.18).
    sim::SmbiosStructure& AddDevice(int size, const std::string& locator,
                                    const std::string& bankLocator, int type = 18) {
        return table.Add(17, deviceHandle++, 27)
            .Word(12, static_cast<std::uint16_t>(size))
            .String(16, locator)
            .String(17, bankLocator)
            .Byte(18, static_cast<std::uint8_t>(type));
    }

    // Memory device mapped address (7.21).
    sim::SmbiosStructure& AddMappedAddress(int mappedHandle, std::uint32_t start,
                                           std::uint32_t end) {
        return table.Add(20, static_cast<std::uint16_t>(mappedHandle), 19)
            .Dword(4, start)
            .Dword(8, end);
    }

    std::uint16_t deviceHandle = 0x1100;
};

#endif
