// SPDX-License-Identifier: MIT
//
// Gives inputs to a target, as libFuzzer does. An argument is a file of kept inputs (see pack.py),
// or a single input where its name does not end in .inputs. Fails where there is no input at all:
// it would have shown nothing.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Read(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(stream), {});
}

// Each input in a block of its own, so that a sanitizer sees a read beyond it.
std::vector<Bytes> Unpack(const Bytes& kept) {
    std::vector<Bytes> inputs;
    for (auto at = kept.begin(); kept.end() - at >= 2;) {
        const std::ptrdiff_t stated = at[0] + 256 * at[1];
        at += 2;
        const std::ptrdiff_t length = std::min(stated, kept.end() - at);
        inputs.emplace_back(at, at + length);
        at += length;
    }
    return inputs;
}

}  // namespace

int main(int count, char** arguments) {
    std::size_t replayed = 0;
    for (int i = 1; i < count; ++i) {
        const std::filesystem::path file = arguments[i];
        const Bytes content = Read(file);
        const std::vector<Bytes> inputs =
            file.extension() == ".inputs" ? Unpack(content) : std::vector<Bytes>{content};
        for (const Bytes& input : inputs) (void)LLVMFuzzerTestOneInput(input.data(), input.size());
        replayed += inputs.size();
    }
    std::printf("%zu inputs\n", replayed);
    return replayed == 0 ? 1 : 0;
}
