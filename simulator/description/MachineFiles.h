// SPDX-License-Identifier: MIT
//
// The files of a described machine: those of a folder, or those of an archive of one. An archive is
// read into memory as a whole. No name in its description can lead to any other file.
#ifndef TALVANE_SIMULATOR_DESCRIPTION_MACHINEFILES_H
#define TALVANE_SIMULATOR_DESCRIPTION_MACHINEFILES_H

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "archive/Files.h"
#include "simulator/base/Bytes.h"

namespace sim {

inline constexpr const char* kDescriptionName = "machine.txt";

class MachineFiles {
public:
    // A folder; it need not be there. A regular file must be an archive as `tar czf` writes it,
    // which holds machine.txt, by itself or in one folder: MachineError if it is not, or cannot be
    // accepted (archive/Tar.h).
    explicit MachineFiles(const std::filesystem::path& place);

    bool IsArchive() const { return archive_.has_value(); }

    // The path of a file, as messages show it. Of an archive, it is no path of the file system.
    std::filesystem::path PathOf(const std::string& name) const { return place_ / name; }

    // The file's bytes. std::runtime_error, whose text begins with its path, when it cannot be read
    // or is not in the archive, or when all reads of an archive together have given more bytes than
    // archive::kMaxTotalSize: the same file can be named again and again.
    Bytes Read(const std::string& name) const;

    // The names of the files right in this folder. std::runtime_error as above.
    std::vector<std::string> List(const std::string& folder) const;
    bool HasFolder(const std::string& folder) const;

private:
    std::filesystem::path place_;
    std::optional<archive::Files> archive_;
    mutable std::size_t taken_ = 0;  // bytes that were read of the archive
};

}  // namespace sim

#endif
