// SPDX-License-Identifier: MIT
//
// Runs a function of the library in a child process, in an empty folder of its own and with its
// standard output caught. For those that print, write files into the current folder, or divide by
// what the kernel says: none of that reaches the tool.
#ifndef TALVANE_TOOLS_APART_H
#define TALVANE_TOOLS_APART_H

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

// What `call` wrote to standard output; nothing when it did not come to its end. std::system_error
// when there can be no child.
std::optional<std::string> OutputApart(const std::function<void()>& call);

template <class Record>
struct ApartAnswer {
    Record record;
    std::string output;
};

// A zero-filled record as `fill` left it; nothing when it did not come to its end.
template <class Record, class Fill>
std::optional<ApartAnswer<Record>> RunApart(Fill fill) {
    static_assert(std::is_trivially_copyable_v<Record>);
    const SharedMemory memory(sizeof(Record));
    auto* const record = static_cast<Record*>(memory.Get());
    const auto output = OutputApart([&] { fill(*record); });
    if (!output) return std::nullopt;
    return ApartAnswer<Record>{*record, *output};
}

}  // namespace tool

#endif
