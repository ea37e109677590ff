// SPDX-License-Identifier: MIT
//
// Whether a file can be read to its end at once. A FIFO cannot: it keeps its reader waiting until
// someone writes to it, and a device can give bytes without end.
#ifndef TALVANE_SIMULATOR_DESCRIPTION_REGULARFILE_H
#define TALVANE_SIMULATOR_DESCRIPTION_REGULARFILE_H

#include <filesystem>

namespace sim {

inline constexpr const char* kNotRegular = "not a regular file";

// True for a file that is there and no regular one. False for one that is not there: opening it
// says why.
inline bool IsNotRegular(const std::filesystem::path& file) {
    std::error_code ignored;  // of a file that is not there
    const std::filesystem::file_status status = std::filesystem::status(file, ignored);
    return std::filesystem::exists(status) && !std::filesystem::is_regular_file(status);
}

}  // namespace sim

#endif
