// SPDX-License-Identifier: MIT
//
// The arguments of calls as text, for the access log and for messages.
#ifndef TALVANE_SIMULATOR_BASE_CALLTEXT_H
#define TALVANE_SIMULATOR_BASE_CALLTEXT_H

#include <cstdint>
#include <string>

namespace sim {

std::string Hex(std::uint64_t value);                     // 0xF0000
std::string ErrorName(int error);                         // EACCES
std::string Quoted(const char* text);                     // in double quotes, or NULL
std::string OpenFlags(int flags);                         // O_RDONLY|O_CLOEXEC
std::string SeekTarget(std::int64_t offset, int whence);  // 0xF0000, +16, END-1

}  // namespace sim

#endif
