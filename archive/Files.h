// SPDX-License-Identifier: MIT
//
// The files of an archive while they are in memory, and the limits of what is taken there.
#ifndef TALVANE_ARCHIVE_FILES_H
#define TALVANE_ARCHIVE_FILES_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace archive {

using Bytes = std::vector<std::uint8_t>;
using Files = std::map<std::string, Bytes>;  // by path, its parts joined by '/'

// A capture has some hundred kilobytes. An archive beyond these limits is refused.
inline constexpr std::size_t kMaxEntries = 1024;
inline constexpr std::size_t kMaxFileSize = std::size_t{8} << 20;
inline constexpr std::size_t kMaxTotalSize = std::size_t{32} << 20;  // of all files
inline constexpr std::size_t kMaxTarSize = std::size_t{40} << 20;    // with their headers
inline constexpr std::size_t kMaxGzipSize = std::size_t{16} << 20;

// What is wrong with an archive. The text names the entry that is at fault.
struct Error : std::runtime_error {
    using std::runtime_error::runtime_error;
};

}  // namespace archive

#endif
