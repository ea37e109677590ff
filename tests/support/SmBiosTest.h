// SPDX-License-Identifier: MIT
//
// Fixture of the SMBIOS tests: a simulated server, a structure table to fill and the reader that
// finds the table in the server's memory.
#ifndef TALVANE_TESTS_SUPPORT_SMBIOSTEST_H
#define TALVANE_TESTS_SUPPORT_SMBIOSTEST_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <malloc.h>

#include <memory>

#include "simulator/SimulatedServer.h"
#include "simulator/machine/SmbiosTable.h"
#include "support/Answer.h"
#include "support/OpenSmBios.h"

class SmBiosTest : public ::testing::Test {
protected:
    // Memory comes filled with a pattern, so that bytes nobody has set do not pass for zeroes.
    SmBiosTest() { mallopt(M_PERTURB, 0x5A); }

    // Places the table and has a new reader find it.
    SmBios& Open(const sim::SmbiosPlacement& placement = {}) {
        server.GetMemory().PlaceSmbios(table.Image(), placement);
        return Read();
    }

    SmBios& OpenVersion(int major, int minor) {
        sim::SmbiosPlacement placement;
        placement.major = static_cast<std::uint8_t>(major);
        placement.minor = static_cast<std::uint8_t>(minor);
        return Open(placement);
    }

    SmBios& OpenDmi() {
        sim::SmbiosPlacement placement;
        placement.anchor = sim::SmbiosPlacement::Anchor::kDmi;
        return Open(placement);
    }

    // A new reader of the memory as it is.
    SmBios& Read() {
        reader.reset();
        reader = std::make_unique<SmBios>();
        return *reader;
    }

    // Forgets the structures added so far.
    sim::SmbiosTable& NewTable() { return table = sim::SmbiosTable(); }

    std::unique_ptr<BiosDataItem> Item(int type, int index) {
        return std::unique_ptr<BiosDataItem>(
            reader->GetItem(static_cast<unsigned char>(type), static_cast<unsigned char>(index)));
    }

    // Getters by the shape of their arguments.
    Answer Ask(int (SmBios::*getter)(char*, unsigned), unsigned size) {
        return AskWith(Buffer::kMarked, [&](char* b) { return (*reader.*getter)(b, size); });
    }
    Answer Ask(int (SmBios::*getter)(int, char*), int index, Buffer before = Buffer::kMarked) {
        return AskWith(before, [&](char* b) { return (*reader.*getter)(index, b); });
    }
    Answer Ask(int (SmBios::*getter)(int, char*, unsigned), int index, unsigned size,
               Buffer before = Buffer::kMarked) {
        return AskWith(before, [&](char* b) { return (*reader.*getter)(index, b, size); });
    }
    Answer AskNth(int (SmBios::*getter)(int, int, char*), int first, int second) {
        return AskWith(Buffer::kMarked,
                       [&](char* b) { return (*reader.*getter)(first, second, b); });
    }
    Answer AskNth(int (SmBios::*getter)(int, int, char*, unsigned), int first, int second,
                  unsigned size) {
        return AskWith(Buffer::kMarked,
                       [&](char* b) { return (*reader.*getter)(first, second, b, size); });
    }
    Answer AskHandle(int (SmBios::*getter)(unsigned, char*), unsigned handle) {
        return AskWith(Buffer::kMarked, [&](char* b) { return (*reader.*getter)(handle, b); });
    }
    Answer AskHandle(int (SmBios::*getter)(unsigned, char*, unsigned), unsigned handle,
                     unsigned size) {
        return AskWith(Buffer::kMarked,
                       [&](char* b) { return (*reader.*getter)(handle, b, size); });
    }

    sim::SimulatedServer server;
    sim::SmbiosTable table;
    std::unique_ptr<SmBios> reader;
};

#endif
