// SPDX-License-Identifier: MIT
//
// What a program asked of the simulated server, in order.
#ifndef TALVANE_SIMULATOR_ACCESSLOG_H
#define TALVANE_SIMULATOR_ACCESSLOG_H

#include <string>
#include <string_view>
#include <vector>

namespace sim {

// One access: the call and, readable, its arguments and its answer, such as
//   {"read", "/dev/mem 0xF0000 65520", "65520"}
//   {"open", "/dev/mem O_RDONLY", "-1 EACCES"}     (descriptor numbers are not shown)
struct Access {
    std::string call;
    std::string what;
    std::string answer;

    std::string text() const { return call + " " + what + " -> " + answer; }
};

class AccessLog {
public:
    void add(Access access) { accesses_.push_back(std::move(access)); }
    void clear() { accesses_.clear(); }

    const std::vector<Access>& accesses() const { return accesses_; }
    std::size_t count(std::string_view call) const;
    std::vector<std::string> lines() const;  // text() of each

private:
    std::vector<Access> accesses_;
};

}  // namespace sim

#endif
