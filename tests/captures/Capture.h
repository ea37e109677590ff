// SPDX-License-Identifier: MIT
//
// The captured machines that lie in the shared data folder.
#ifndef TALVANE_TESTS_CAPTURE_H
#define TALVANE_TESTS_CAPTURE_H

#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "Comparison.h"
#include "simulator/SimulatedServer.h"

namespace captures {

// One file of the folder:
//   NAME.bin          a table as `dmidecode --dump-bin` writes it
//   NAME.f0000.bin    the 64 KiB at 0xF0000, with the pages NAME.mem-ADDRESS.bin
struct Capture {
    std::string name;  // the file name without ".bin"
    std::filesystem::path image;
    std::filesystem::path dump;   // the table that the image holds; empty without one
    std::filesystem::path words;  // dmidecode's text; empty when it found no table
    bool isSegment = false;

    // What the machine's memory holds.
    void LoadInto(sim::SimulatedServer& server) const;

    // What the library must answer.
    ExpectedFields Expected(const sim::PhysicalMemory& memory) const;
};

// How gtest shows one.
inline void PrintTo(const Capture& capture, std::ostream* out) {
    *out << capture.name;
}

// TALVANE_SHARED_DATA (from the environment, else as built) and its "smbios" folder.
std::filesystem::path CaptureFolder();

// All captures in order of their names; none where the folder is absent.
std::vector<Capture> AllCaptures();

// Asks the library about the machine and compares.
Comparison Examine(const Capture& capture);

}  // namespace captures

#endif
