// SPDX-License-Identifier: MIT
//
// Whether a folder is there for this process.
#ifndef TALVANE_TOOLS_BASE_FOLDER_H
#define TALVANE_TOOLS_BASE_FOLDER_H

#include <dirent.h>

#include <string>

namespace tool {

// Opens the folder as the library does. When it cannot be listed, errno has the reason.
inline bool CanBeListed(const std::string& path) {
    DIR* const folder = opendir(path.c_str());
    if (folder == nullptr) return false;
    (void)closedir(folder);  // result not used: nothing was read
    return true;
}

}  // namespace tool

#endif
