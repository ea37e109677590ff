// SPDX-License-Identifier: MIT
//
// The files of the running system below a root folder: "/", or that of another system's tree.
#ifndef TALVANE_SIMULATOR_HOST_HOSTFILES_H
#define TALVANE_SIMULATOR_HOST_HOSTFILES_H

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "simulator/base/Bytes.h"

namespace sim {

// A file or folder that cannot be read.
struct HostFileError : std::runtime_error {
    HostFileError(const std::string& file, int why);

    std::string path;
    int error;  // errno
};

class HostFiles {
public:
    explicit HostFiles(std::filesystem::path root) : root_(std::move(root)) {}

    // The path of a file that is named from the root, such as "sys/block".
    std::string Path(const std::string& name) const { return (root_ / name).string(); }

    // The file's bytes, at most `limit` of them. HostFileError when it cannot be read.
    Bytes Read(const std::string& name, std::size_t limit) const;

    // The text of a short file without blanks at both ends; empty when it cannot be read.
    std::string Text(const std::string& name) const;

    // The names in a folder, in ascending order. HostFileError as above.
    std::vector<std::string> List(const std::string& name) const;

private:
    std::filesystem::path root_;
};

// "cannot open PATH: REASON", with advice where the reason is missing rights, or that there is no
// such file or device.
std::string CannotOpen(const std::string& path, int error, const char* whyAbsent,
                       const char* rightsAdvice = "run as root");

}  // namespace sim

#endif
