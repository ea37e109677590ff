// SPDX-License-Identifier: MIT
//
// Turns numbers, errors, texts and flags of a call into readable text.

#include "simulator/base/CallText.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstring>

namespace sim {

std::string Hex(std::uint64_t value) {
    char text[2 + 16 + 1];
    (void)std::snprintf(text, sizeof text, "0x%llX", static_cast<unsigned long long>(value));
    return text;
}

std::string ErrorName(int error) {
    const char* const name = strerrorname_np(error);
    return name != nullptr ? name : "errno " + std::to_string(error);
}

std::string Quoted(const char* text) {
    return text == nullptr ? "NULL" : "\"" + std::string(text) + "\"";
}

std::string OpenFlags(int flags) {
    struct Name {
        int flag;
        const char* name;
    };
    // O_LARGEFILE is left out: the log does not distinguish the variants of open.
    constexpr std::array names{Name{O_CREAT, "O_CREAT"},       Name{O_EXCL, "O_EXCL"},
                               Name{O_TRUNC, "O_TRUNC"},       Name{O_APPEND, "O_APPEND"},
                               Name{O_NONBLOCK, "O_NONBLOCK"}, Name{O_SYNC, "O_SYNC"},
                               Name{O_CLOEXEC, "O_CLOEXEC"}};
    const int mode = flags & O_ACCMODE;
    std::string text = mode == O_RDONLY ? "O_RDONLY" : mode == O_WRONLY ? "O_WRONLY" : "O_RDWR";
    for (const Name& name : names)
        if ((flags & name.flag) == name.flag) text += std::string("|") + name.name;
    return text;
}

std::string SeekTarget(std::int64_t offset, int whence) {
    // An off_t past 2 GiB arrives negative and means an address in the upper half.
    if (whence == SEEK_SET)
        return Hex(offset < 0 ? static_cast<std::uint32_t>(offset)
                              : static_cast<std::uint64_t>(offset));
    const std::string distance = (offset < 0 ? "" : "+") + std::to_string(offset);
    return whence == SEEK_CUR ? distance : "END" + distance;
}

}  // namespace sim
