// SPDX-License-Identifier: MIT
//
// A shell script in a folder of its own, which the command puts in front of PATH.

#include "FreeProgram.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string_view>
#include <system_error>

namespace sim {

FreeProgram::~FreeProgram() {
    std::error_code ignored;
    if (!folder_.empty()) std::filesystem::remove_all(folder_, ignored);
}

void FreeProgram::setText(const std::string& text) {
    if (folder_.empty()) {
        std::string name = "/tmp/talvane-programs-XXXXXX";
        if (mkdtemp(name.data()) == nullptr)
            throw std::system_error(errno, std::generic_category(), name);
        folder_ = name;
    }
    std::ofstream(folder_ / "text", std::ios::binary) << text;
    std::ofstream(folder_ / "free") << "#!/bin/sh\nexec cat \"${0%/*}/text\"\n";
    std::filesystem::permissions(folder_ / "free", std::filesystem::perms::owner_all);
}

void FreeProgram::setMemory(std::uint64_t total, std::uint64_t used) {
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
    setText(text);
}

bool FreeProgram::isRunBy(const char* command) const {
    constexpr std::string_view name = "free";
    if (folder_.empty() || command == nullptr) return false;
    const std::string_view text = command;
    return text.starts_with(name) &&
           (text.size() == name.size() || text[name.size()] == ' ' || text[name.size()] == '|');
}

std::string FreeProgram::before(const char* command) const {
    return "PATH=" + folder_.string() + ":$PATH\n" + command;
}

}  // namespace sim
