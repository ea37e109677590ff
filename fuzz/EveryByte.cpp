// SPDX-License-Identifier: MIT
//
// Gives a target each input that differs from a given one in a single byte, and each that ends
// earlier. The arguments are files with one input each. Prints how many bytes they have and how
// many inputs were tried. An input that a sanitizer complains about, or that takes longer than 25
// seconds, ends the process and is named. Fails where there is no byte at all: it would have shown
// nothing.

#include <sanitizer/common_interface_defs.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr unsigned kValues = 256;
constexpr unsigned kMaxSeconds = 25;

// What is tried at the moment, for the message.
struct Attempt {
    const char* file;
    std::size_t at;
    int value;  // -1: the input ends at `at`
};
Attempt attempt;

void NameAttempt() {
    if (attempt.value < 0) {
        std::fprintf(stderr, "%s: ends at byte %zu\n", attempt.file, attempt.at);
    } else {
        std::fprintf(stderr, "%s: byte %zu is %d\n", attempt.file, attempt.at, attempt.value);
    }
}

void EndSlowAttempt(int) {
    NameAttempt();
    _exit(1);
}

void Try(const Bytes& input) {
    (void)alarm(kMaxSeconds);
    (void)LLVMFuzzerTestOneInput(input.data(), input.size());
}

// Each in a block of its own, so that a sanitizer sees a read beyond its end.
void TryEnds(const Bytes& input) {
    attempt.value = -1;
    for (attempt.at = 0; attempt.at < input.size(); ++attempt.at)
        Try(Bytes(input.begin(), input.begin() + static_cast<std::ptrdiff_t>(attempt.at)));
}

void TryValues(Bytes input) {
    for (attempt.at = 0; attempt.at < input.size(); ++attempt.at) {
        std::uint8_t& byte = input[attempt.at];
        const std::uint8_t genuine = byte;
        for (unsigned value = 0; value < kValues; ++value) {
            attempt.value = static_cast<int>(value);
            byte = static_cast<std::uint8_t>(value);
            Try(input);
        }
        byte = genuine;
    }
}

}  // namespace

int main(int count, char** arguments) {
    __sanitizer_set_death_callback(NameAttempt);
    (void)std::signal(SIGALRM, EndSlowAttempt);
    std::size_t bytes = 0;
    for (int i = 1; i < count; ++i) {
        attempt.file = arguments[i];
        std::ifstream stream(attempt.file, std::ios::binary);
        const Bytes input(std::istreambuf_iterator<char>(stream), {});
        TryEnds(input);
        TryValues(input);
        bytes += input.size();
    }
    // Not to standard output, which the library writes to.
    std::fprintf(stderr, "%zu %zu\n", bytes, bytes * (kValues + 1));
    return bytes == 0 ? 1 : 0;
}
