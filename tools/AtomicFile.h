// SPDX-License-Identifier: MIT
//
// A file that readers see whole, either as it was or as it is now.
#ifndef TALVANE_TOOLS_ATOMICFILE_H
#define TALVANE_TOOLS_ATOMICFILE_H

#include <sys/types.h>

#include <filesystem>
#include <string_view>

namespace tool {

// Writes the text into a temporary file beside `file`, onto the disk, and renames it to `file`. The
// mode is this one whatever the umask is, and at first 0600. The temporary file's name begins with
// a dot and does not end as that of `file`, so that no reader of the folder takes it for one of its
// own.
//
// Throws std::system_error, which names the file, or as RequireReplaceable. The file is then as it
// was, and no temporary file is left.
void WriteAtomically(const std::filesystem::path& file, std::string_view text, mode_t mode = 0644);

// Throws std::runtime_error where the file is there and is not a regular one: a device would be
// replaced for all programs.
void RequireReplaceable(const std::filesystem::path& file);

}  // namespace tool

#endif
