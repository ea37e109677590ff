// SPDX-License-Identifier: MIT
//
// What a program asked of the simulated server, in order.
#ifndef TALVANE_SIMULATOR_BASE_ACCESSLOG_H
#define TALVANE_SIMULATOR_BASE_ACCESSLOG_H

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
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

// A port instruction.
struct PortTransfer {
    enum class Direction : std::uint8_t { kIn, kOut };
    Direction direction;
    std::uint8_t width;  // in bytes
    std::uint16_t port;
    std::uint32_t value;

    std::string_view Call() const { return direction == Direction::kIn ? "in" : "out"; }
    Access Description() const;
};

class AccessLog {
public:
    void Add(Access access);
    void Add(const PortTransfer& access);
    void Clear() { entries_.clear(); }

    std::size_t Count(std::string_view call) const;
    std::vector<Access> Accesses() const;
    std::vector<Access> Calls() const;       // the accesses but for port instructions
    std::vector<std::string> Lines() const;  // Text() of each access

    // From now on each access is also written to `stream` at once, one per line. Null ends that.
    void CopyTo(std::ostream* stream) { copy_ = stream; }

private:
    // Port instructions are kept as numbers, since a PCI scan makes 90,112 of them. Their texts are
    // made when somebody asks for them.
    using Described = std::unique_ptr<const Access>;
    using Entry = std::variant<Described, PortTransfer>;

    void Copy(const Access& access) const;

    std::vector<Entry> entries_;
    std::ostream* copy_ = nullptr;
};

}  // namespace sim

#endif
