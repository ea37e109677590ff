// SPDX-License-Identifier: MIT
//
// The bytes that a record must hold after a call: a marked buffer, changed where the call writes.
// Offsets are numbers of the binary interface and are deliberately not taken from the header.
#ifndef TALVANE_TESTS_SUPPORT_RECORDIMAGE_H
#define TALVANE_TESTS_SUPPORT_RECORDIMAGE_H

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

class RecordImage {
public:
    static constexpr std::uint8_t kMark = 0xA5;
    static constexpr std::size_t kGuard = 64;  // bytes after the record that must stay

    explicit RecordImage(std::size_t size, std::uint8_t fill = kMark) : bytes_(size, fill) {
        bytes_.resize(size + kGuard, kMark);
    }

    // The record to pass to a call.
    void* Data() { return bytes_.data(); }

    RecordImage& Number(std::size_t offset, std::int32_t value) {
        std::memcpy(&bytes_.at(offset), &value, sizeof value);
        return *this;
    }
    RecordImage& Copied(std::size_t offset, std::string_view text) {
        for (const char c : text) bytes_.at(offset++) = static_cast<std::uint8_t>(c);
        return *this;
    }
    RecordImage& Text(std::size_t offset, std::string_view terminated) {
        Copied(offset, terminated);
        bytes_.at(offset + terminated.size()) = 0;
        return *this;
    }

    std::int32_t NumberAt(std::size_t offset) const {
        std::int32_t value = 0;
        std::memcpy(&value, &bytes_.at(offset), sizeof value);
        return value;
    }

    friend ::testing::AssertionResult SameBytes(const RecordImage& expected,
                                                const RecordImage& actual) {
        if (expected.bytes_.size() != actual.bytes_.size())
            return ::testing::AssertionFailure() << "records of different sizes";
        for (std::size_t i = 0; i < expected.bytes_.size(); ++i)
            if (expected.bytes_[i] != actual.bytes_[i])
                return ::testing::AssertionFailure()
                       << "byte " << i << " is " << ::testing::PrintToString(actual.bytes_[i])
                       << " instead of " << ::testing::PrintToString(expected.bytes_[i]);
        return ::testing::AssertionSuccess();
    }

private:
    std::vector<std::uint8_t> bytes_;
};

#endif
