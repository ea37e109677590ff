// SPDX-License-Identifier: MIT
//
// The text of a file that a capture has written.
#ifndef TALVANE_TESTS_TOOLS_FILETEXT_H
#define TALVANE_TESTS_TOOLS_FILETEXT_H

#include <string>

#include "archive/Tar.h"

// Throws std::out_of_range where there is no such file.
inline std::string FileText(const archive::Files& files, const std::string& name) {
    const archive::Bytes& bytes = files.at(name);
    return std::string(bytes.begin(), bytes.end());
}

#endif
