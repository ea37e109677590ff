// SPDX-License-Identifier: MIT
//
// The program `free` of a simulated server, as commands that the library runs in a shell find it.
#ifndef TALVANE_SIMULATOR_MACHINE_FREEPROGRAM_H
#define TALVANE_SIMULATOR_MACHINE_FREEPROGRAM_H

#include <cstdint>
#include <string>

namespace sim {

class FreeProgram {
public:
    // Sets what it prints. The text ends in a line feed and has no byte 00.
    void SetText(std::string text) { text_ = std::move(text); }

    // Lets it print these sizes, in KiB, in its usual layout.
    void SetMemory(std::uint64_t total, std::uint64_t used);

    // From now on it is the program of the real system.
    void UseReal() { isReal_ = true; }

    // Whether the command starts with this program. Always false while it has no text, unless it is
    // the real one.
    bool IsRunBy(const char* command) const;

    // The command with a definition of this program before it, so that the shell runs this one and
    // not the real one.
    std::string DefineBefore(const char* command) const;

private:
    std::string text_;
    bool isReal_ = false;
};

}  // namespace sim

#endif
