// SPDX-License-Identifier: MIT
//
// The simulated server's machine files. Input: the text of a machine.txt, in a folder of its own.

#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "simulator/description/MachineFile.h"
#include "simulator/machine/Machine.h"

namespace {

// Removed at the end of the process.
class Folder {
public:
    Folder()
        : path_(std::filesystem::temp_directory_path() /
                ("talvane-fuzz-" + std::to_string(getpid()))) {
        std::filesystem::create_directory(path_);
    }
    ~Folder() { std::filesystem::remove_all(path_); }

    [[nodiscard]] const std::filesystem::path& Path() const { return path_; }

private:
    std::filesystem::path path_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Folder folder;
    {
        std::ofstream file(folder.Path() / "machine.txt", std::ios::binary);
        file.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    try {
        sim::Machine machine;
        sim::LoadMachine(folder.Path(), machine);
    } catch (const sim::MachineError&) {  // what a description that cannot be used ends with
    }
    return 0;
}
