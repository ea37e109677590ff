// SPDX-License-Identifier: MIT
//
// Looks programs up in PATH and reads the few fields of an ELF file that matter here.

#include "simulator/ProgramFile.h"

#include <elf.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace sim {
namespace {

bool IsExecutable(const std::filesystem::path& file) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(file, ignored) && access(file.c_str(), X_OK) == 0;
}

template <typename Record>
bool ReadElfRecord(std::ifstream& stream, std::streamoff offset, Record& record) {
    return stream.seekg(offset) && stream.read(reinterpret_cast<char*>(&record), sizeof record);
}

}  // namespace

std::filesystem::path FindProgram(const std::string& name) {
    if (name.find('/') != std::string::npos) {
        if (access(name.c_str(), X_OK) != 0)
            throw std::system_error(errno, std::generic_category(), name);
        return name;
    }
    const char* const path = std::getenv("PATH");
    std::istringstream folders(path != nullptr ? path : "/usr/bin:/bin");
    for (std::string folder; std::getline(folders, folder, ':');) {
        const auto candidate = std::filesystem::path(folder.empty() ? "." : folder) / name;
        if (IsExecutable(candidate)) return candidate;
    }
    throw std::system_error(ENOENT, std::generic_category(), name);
}

void RequirePreloadable(const std::filesystem::path& program) {
    std::ifstream stream(program, std::ios::binary);
    Elf32_Ehdr header{};
    const bool matches = ReadElfRecord(stream, 0, header) &&
                         std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 &&
                         header.e_ident[EI_CLASS] == ELFCLASS32 && header.e_machine == EM_386;
    if (!matches) throw std::runtime_error(program.string() + ": not a 32-bit x86 program");
    for (unsigned i = 0; i < header.e_phnum; ++i) {
        Elf32_Phdr segment{};
        const std::streamoff offset =
            std::streamoff{header.e_phoff} + std::streamoff{i} * header.e_phentsize;
        if (ReadElfRecord(stream, offset, segment) && segment.p_type == PT_INTERP) return;
    }
    throw std::runtime_error(program.string() +
                             ": statically linked, so it cannot run on a simulated server");
}

}  // namespace sim
