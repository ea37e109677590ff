// SPDX-License-Identifier: MIT
//
// The bytes of one input, taken from the front. What is not there any more reads as zero.
#ifndef TALVANE_FUZZ_INPUT_H
#define TALVANE_FUZZ_INPUT_H

#include <algorithm>
#include <cstdint>
#include <string>

#include "base/Bytes.h"

namespace fuzz {

class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}

    [[nodiscard]] bool IsEmpty() const { return rest_.empty(); }
    [[nodiscard]] talvane::ByteView Rest() const { return rest_; }

    std::uint8_t TakeByte() { return talvane::ByteAt(Take(1), 0); }
    std::uint16_t TakeLe16() { return talvane::Le16(Take(2), 0); }
    std::uint32_t TakeLe32() { return talvane::Le32(Take(4), 0); }

    // Fewer bytes where fewer are left.
    talvane::ByteView Take(std::size_t size) {
        const talvane::ByteView taken = rest_.first(std::min(size, rest_.size()));
        rest_ = rest_.subspan(taken.size());
        return taken;
    }

    // One byte that says how many follow, and these.
    talvane::ByteView TakeCounted() { return Take(TakeByte()); }

    // Up to and without the next byte of this value, or all that is left.
    talvane::ByteView TakeUntil(std::uint8_t end) {
        const auto found = std::find(rest_.begin(), rest_.end(), end);
        const talvane::ByteView taken = Take(static_cast<std::size_t>(found - rest_.begin()));
        (void)Take(1);  // the end itself, where there is one
        return taken;
    }

    std::string TakeText(std::uint8_t end = 0) {
        const talvane::ByteView taken = TakeUntil(end);
        return std::string(taken.begin(), taken.end());
    }

private:
    talvane::ByteView rest_;
};

}  // namespace fuzz

#endif
