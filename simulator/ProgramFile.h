// SPDX-License-Identifier: MIT
//
// Finds a program as a shell does, and checks whether it can run with a preloaded library.
#ifndef TALVANE_SIMULATOR_PROGRAMFILE_H
#define TALVANE_SIMULATOR_PROGRAMFILE_H

#include <filesystem>
#include <string>

namespace sim {

// The file that `name` stands for: itself when it has a slash, else the first executable of that
// name in PATH. std::system_error when there is none.
std::filesystem::path FindProgram(const std::string& name);

// std::runtime_error unless the file is a 32-bit x86 program that the dynamic linker starts. Any
// other program would silently run on the real machine.
void RequirePreloadable(const std::filesystem::path& program);

}  // namespace sim

#endif
