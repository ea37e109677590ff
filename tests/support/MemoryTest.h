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
        sim::SmbiosStructure& controller = table.add(5, 0x500, static_cast<std::uint8_t>(length));
        controller.byte(14, static_cast<std::uint8_t>(modules.size()));
        for (std::size_t i = 0; i < modules.size(); ++i)
            controller.word(15 + 2 * i, static_cast<std::uint16_t>(modules[i]));
        return controller;
    }

    // Memory module (7.7): installed size as a power of two, type bits.
    sim::SmbiosStructure& AddModule(int moduleHandle, int size, int typeBits = 0) {
        return table.add(6, static_cast<std::uint16_t>(moduleHandle), 12)
            .byte(9, static_cast<std::uint8_t>(size))
            .word(7, static_cast<std::uint16_t>(typeBits));
    }

    // Memory device (7.18).
    sim::SmbiosStructure& AddDevice(int size, const std::string& locator,
                                    const std::string& bankLocator, int type = 18) {
        return table.add(17, deviceHandle++, 27)
            .word(12, static_cast<std::uint16_t>(size))
            .string(16, locator)
            .string(17, bankLocator)
            .byte(18, static_cast<std::uint8_t>(type));
    }

    // Memory device mapped address (7.21).
    sim::SmbiosStructure& AddMappedAddress(int mappedHandle, std::uint32_t start,
                                           std::uint32_t end) {
        return table.add(20, static_cast<std::uint16_t>(mappedHandle), 19)
            .dword(4, start)
            .dword(8, end);
    }

    std::uint16_t deviceHandle = 0x1100;
};

#endif
