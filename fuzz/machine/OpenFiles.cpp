// SPDX-License-Identifier: MIT
//
// A table with a place for every descriptor.

#include "fuzz/machine/OpenFiles.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "storage/GetAllPartitionInfo.h"

namespace fuzz {
namespace {

constexpr int kFirstDescriptor = 1 << 20;

// The library has two files open at once; more than this is a leak.
std::array<std::optional<OpenFile>, 16> files;

std::optional<OpenFile>* PlaceOf(int descriptor) {
    const auto place = static_cast<std::size_t>(descriptor) - kFirstDescriptor;
    return descriptor >= kFirstDescriptor && place < files.size() ? &files[place] : nullptr;
}

}  // namespace

int OpenFiles::Add(const char* path) {
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (files[i]) continue;
        files[i] = OpenFile{path};
        return kFirstDescriptor + static_cast<int>(i);
    }
    std::abort();  // a finding
}

OpenFile* OpenFiles::Find(int descriptor) {
    std::optional<OpenFile>* const place = PlaceOf(descriptor);
    return place != nullptr && *place ? &**place : nullptr;
}

bool OpenFiles::Remove(int descriptor) {
    if (Find(descriptor) == nullptr) return false;
    PlaceOf(descriptor)->reset();
    return true;
}

int OpenFiles::Count() {
    return static_cast<int>(std::count_if(files.begin(), files.end(),
                                          [](const auto& file) { return file.has_value(); }));
}

}  // namespace fuzz

// In place of storage/Llseek.cpp: systems of 64 bits do not have the call. It stands here since the
// library makes one for each cylinder before a partition.
int _llseek(unsigned int fd, unsigned long offset_high, unsigned long offset_low, long long* result,
            unsigned int whence) {
    fuzz::OpenFile* const file = fuzz::OpenFiles::Find(static_cast<int>(fd));
    if (file == nullptr) return -1;
    const std::uint64_t offset = (std::uint64_t{offset_high} << 32) + offset_low;
    file->position = whence == SEEK_CUR ? file->position + offset : offset;
    *result = static_cast<long long>(file->position);
    return 0;
}
