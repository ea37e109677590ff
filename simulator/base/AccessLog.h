// SPDX-License-Identifier: MIT
//
// What a program asked of the simulated server, in order.
#ifndef TALVANE_SIMULATOR_BASE_ACCESSLOG_H
#define TALVANE_SIMULATOR_BASE_ACCESSLOG_H

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

// One access: the call, its arguments and its answer as readable text. Addresses and ports are
// hexadecimal; counts and widths (in bytes) are decimal. A failure is "-1" and the errno's name.
// Descriptor numbers are not shown: the arguments name the path that was opened instead.
//   open   /dev/mem O_RDONLY      -> ok            (a failure: -1 EACCES)
//   lseek  /dev/mem 0xF0000       -> 0xF0000       (with SEEK_CUR: /dev/mem +16)
//   read   /dev/mem 0xF0000 65520 -> 65520         (position and size -> bytes delivered)
//   close  /dev/mem               -> 0
//   ioctl  /dev/mem 0xC0045301    -> 0
//   bmc    Get SDR 0x0000         -> 64 bytes, next 0x0001   (inside the ioctl, for people)
//   ipmi   Get SDR 00 00 00 00 00 FF -> 00 ...   (the same in bytes: completion code, response)
//   opendir /proc/ide             -> ok
//   closedir /proc/ide            -> 0
//   iopl   3                      -> 0
//   in     0xCA3 1                -> 0xFF
//   out    0xCF8 4 0x80000000     -> ok
//   sleep  5                      -> 0
//   system free | ...            -> 0
struct Access {
    std::string call;
    std::string what;
    std::string answer;

    std::string Text() const { return call + " " + what + " -> " + answer; }
};

class AccessLog {
public:
    void Add(Access access);
    void Clear() { accesses_.clear(); }

    const std::vector<Access>& Accesses() const { return accesses_; }
    std::size_t Count(std::string_view call) const;
    std::vector<std::string> Lines() const;  // Text() of each access

    // From now on each access is also written to `stream` at once, one per line. Null ends that.
    void CopyTo(std::ostream* stream) { copy_ = stream; }

private:
    std::vector<Access> accesses_;
    std::ostream* copy_ = nullptr;
};

}  // namespace sim

#endif
