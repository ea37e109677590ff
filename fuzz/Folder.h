// SPDX-License-Identifier: MIT
//
// A folder for a target that tries code which reads files: of this process alone, and removed at
// its end.
#ifndef TALVANE_FUZZ_FOLDER_H
#define TALVANE_FUZZ_FOLDER_H

#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>

namespace fuzz {

class Folder {
public:
    Folder()
        : path_(std::filesystem::temp_directory_path() /
                ("talvane-fuzz-" + std::to_string(getpid()))) {
        std::filesystem::create_directory(path_);
    }
    ~Folder() { std::filesystem::remove_all(path_); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    [[nodiscard]] const std::filesystem::path& Path() const { return path_; }

private:
    std::filesystem::path path_;
};

inline void WriteFile(const std::filesystem::path& path, std::span<const std::uint8_t> bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

}  // namespace fuzz

#endif
