// SPDX-License-Identifier: MIT
//
// A machine folder that lasts as long as its test.
#ifndef TALVANE_TESTS_SIMULATOR_MACHINEFOLDER_H
#define TALVANE_TESTS_SIMULATOR_MACHINEFOLDER_H

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

class MachineFolder {
public:
    explicit MachineFolder(std::string_view description) {
        std::string name = (std::filesystem::temp_directory_path() / "machine-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder " + name);
        path = name;
        Write("machine.txt", description);
    }
    ~MachineFolder() { std::filesystem::remove_all(path); }
    MachineFolder(const MachineFolder&) = delete;
    MachineFolder& operator=(const MachineFolder&) = delete;

    void Write(const std::string& name, std::string_view content) const {
        std::ofstream(path / name, std::ios::binary) << content;
    }

    std::filesystem::path path;
};

#endif
