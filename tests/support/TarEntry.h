// SPDX-License-Identifier: MIT
//
// Entries of tar files byte by byte, so that tests can make those that no writer would.
#ifndef TALVANE_TESTS_SUPPORT_TARENTRY_H
#define TALVANE_TESTS_SUPPORT_TARENTRY_H

#include <algorithm>
#include <cstdio>
#include <string>

#include "archive/Tar.h"
#include "archive/TarHeader.h"

struct TarEntry {
    std::string name;
    std::string content = "";
    char type = '0';
    std::string size = "";  // as the field states it; empty: the content's, in octal digits
    std::string prefix = "";
    std::string magic = std::string("ustar\00000", 8);
    int checksumError = 0;
};

inline void PutTarField(archive::Bytes& header, archive::TarField field, const std::string& text) {
    std::copy_n(text.begin(), std::min(text.size(), field.size),
                header.begin() + static_cast<std::ptrdiff_t>(field.at));
}

inline archive::Bytes TarHeaderOf(const TarEntry& entry) {
    archive::Bytes header(archive::kTarBlock);
    char digits[16];
    std::snprintf(digits, sizeof digits, "%011zo", entry.content.size());
    PutTarField(header, archive::kTarName, entry.name);
    PutTarField(header, archive::kTarSize, entry.size.empty() ? digits : entry.size);
    PutTarField(header, archive::kTarType, {entry.type});
    PutTarField(header, archive::kTarMagic, entry.magic);
    PutTarField(header, archive::kTarPrefix, entry.prefix);
    std::snprintf(digits, sizeof digits, "%06o",
                  archive::TarChecksum(header) + static_cast<unsigned>(entry.checksumError));
    PutTarField(header, archive::kTarChecksum, digits);
    return header;
}

inline archive::Bytes TarOf(const std::vector<TarEntry>& entries) {
    archive::Bytes tar;
    for (const TarEntry& entry : entries) {
        const archive::Bytes header = TarHeaderOf(entry);
        tar.insert(tar.end(), header.begin(), header.end());
        tar.insert(tar.end(), entry.content.begin(), entry.content.end());
        tar.resize(tar.size() + archive::TarPadding(entry.content.size()));
    }
    tar.resize(tar.size() + 2 * archive::kTarBlock);
    return tar;
}

#endif
