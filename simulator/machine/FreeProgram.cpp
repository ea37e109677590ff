// SPDX-License-Identifier: MIT
//
// `free` becomes a function of the shell, which looks for functions before it looks for programs.

#include "simulator/machine/FreeProgram.h"

#include <cstdio>
#include <string_view>

namespace sim {
namespace {

// As one word of a shell that stands for itself, whatever it holds: a text can come from a
// stranger's archive.
std::string ShellWord(std::string_view text) {
    std::string word = "'";
    for (const char c : text)
        if (c == '\'')
            word += "'\\''";
        else
            word += c;
    return word + '\'';
}

}  // namespace

void FreeProgram::SetMemory(std::uint64_t total, std::uint64_t used) {
    constexpr const char* layout =
        "             total       used       free     shared    buffers     cached\n"
        "Mem:    %10llu %10llu %10llu          0          0          0\n"
        "-/+ buffers/cache: %10llu %10llu\n"
        "Swap:            0          0          0\n";
    const auto inAll = static_cast<unsigned long long>(total);
    const auto inUse = static_cast<unsigned long long>(used);
    char text[512];
    (void)std::snprintf(text, sizeof text, layout, inAll, inUse, inAll - inUse, inUse,
                        inAll - inUse);
    SetText(text);
}

bool FreeProgram::IsRunBy(const char* command) const {
    constexpr std::string_view name = "free";
    if ((text_.empty() && !isReal_) || command == nullptr) return false;
    const std::string_view text = command;
    return text.starts_with(name) &&
           (text.size() == name.size() || text[name.size()] == ' ' || text[name.size()] == '|');
}

std::string FreeProgram::DefineBefore(const char* command) const {
    if (isReal_) return command;
    return "free() {\nprintf %s " + ShellWord(text_) + "\n}\n" + command;
}

}  // namespace sim
