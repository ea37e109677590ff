// SPDX-License-Identifier: MIT
//
// Runs a function of the library in a child process, in an empty folder of its own, and catches its
// standard output. Some functions print, write files into the current folder, or divide by what the
// kernel says. None of that reaches the tool.
#ifndef TALVANE_TOOLS_LIBRARY_CHILDPROCESS_H
#define TALVANE_TOOLS_LIBRARY_CHILDPROCESS_H

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <type_traits>

namespace tool {

// Memory that a child process shares with its parent, zero-filled.
class SharedMemory {
public:
    explicit SharedMemory(std::size_t size);
    ~SharedMemory();
    SharedMemory(const SharedMemory&) = delete;
    SharedMemory& operator=(const SharedMemory&) = delete;

    void* Get() const { return memory_; }

private:
    void* memory_;
    std::size_t size_;
};

// What `call` wrote to standard output; nothing when the child process ended before `call`
// returned. Throws std::system_error when no child process can be started.
std::optional<std::string> OutputOfChildProcess(const std::function<void()>& call);

template <class Record>
struct ChildProcessAnswer {
    Record record;
    std::string output;
};

// A zero-filled record after `fill` has run on it; nothing when the child process ended before
// `fill` returned.
template <class Record, class Fill>
std::optional<ChildProcessAnswer<Record>> FillInChildProcess(Fill fill) {
    static_assert(std::is_trivially_copyable_v<Record>);
    const SharedMemory memory(sizeof(Record));
    auto* const record = static_cast<Record*>(memory.Get());
    const auto output = OutputOfChildProcess([&] { fill(*record); });
    if (!output) return std::nullopt;
    return ChildProcessAnswer<Record>{*record, *output};
}

}  // namespace tool

#endif
