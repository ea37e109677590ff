// SPDX-License-Identifier: MIT
//
// The program `free` of a simulated server, for commands that the library gives to a shell.
#ifndef TALVANE_SIMULATOR_MACHINE_FREEPROGRAM_H
#define TALVANE_SIMULATOR_MACHINE_FREEPROGRAM_H

#include <cstdint>
#include <string>

namespace sim {

class FreeProgram {
public:
    // What it prints from now on; ends in a line feed.
    void SetText(std::string text) { text_ = std::move(text); }

    // The same in its own layout, numbers in KiB.
    void SetMemory(std::uint64_t total, std::uint64_t used);

    // Whether the command starts with this program; never before it was given a text.
    bool IsRunBy(const char* command) const;

    // The command for a shell that finds this program before the real one.
    std::string DefineBefore(const char* command) const;

private:
    std::string text_;
};

}  // namespace sim

#endif
