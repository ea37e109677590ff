// SPDX-License-Identifier: MIT
//
// What a text getter did: its result and every byte that it wrote into the buffer, terminator
// included. Asking with a buffer full of a byte that no text holds shows the bytes left alone.
#ifndef TALVANE_TESTS_SUPPORT_ANSWER_H
#define TALVANE_TESTS_SUPPORT_ANSWER_H

#include <array>
#include <cstddef>
#include <cstdio>
#include <ostream>
#include <string>

struct Answer {
    int result;
    std::string written;

    friend bool operator==(const Answer&, const Answer&) = default;
};

inline void PrintTo(const Answer& answer, std::ostream* out) {
    *out << answer.result << " with \"";
    for (const char c : answer.written) {
        if (c >= ' ' && c <= '~') {
            *out << c;
        } else {
            char hex[8];
            std::snprintf(hex, sizeof hex, "\\x%02X", static_cast<unsigned char>(c));
            *out << hex;
        }
    }
    *out << '"';
}

// The four shapes of an answer.
inline Answer Copied(const std::string& text) {
    return {0, text};
}  // no terminator
inline Answer Terminated(const std::string& text) {
    return {0, text + '\0'};
}  // with one
inline Answer Refused(const std::string& text) {
    return {-1, text + '\0'};
}  // -1 with a text
inline Answer Missing() {
    return {-1, ""};
}  // -1, untouched
inline Answer NothingWritten() {
    return {0, ""};
}

// What the buffer handed to a getter holds before.
enum class Buffer { kMarked, kZeroed, kEmptyText };

constexpr char kMark = static_cast<char>(0xA5);

template <class Getter>
Answer AskWith(Buffer before, Getter getter) {
    std::array<char, 512> buffer;
    buffer.fill(before == Buffer::kZeroed ? '\0' : kMark);
    if (before == Buffer::kEmptyText) buffer[0] = '\0';
    const std::array<char, 512> untouched = buffer;

    const int result = getter(buffer.data());

    std::size_t end = buffer.size();
    while (end > 0 && buffer[end - 1] == untouched[end - 1]) --end;
    return {result, std::string(buffer.data(), end)};
}

#endif
