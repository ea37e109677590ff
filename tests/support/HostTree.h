// SPDX-License-Identifier: MIT
//
// A folder with the files of sysfs, proc and dev that a running system would have.
#ifndef TALVANE_TESTS_SUPPORT_HOSTTREE_H
#define TALVANE_TESTS_SUPPORT_HOSTTREE_H

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

class HostTree {
public:
    HostTree() {
        std::string name = (std::filesystem::temp_directory_path() / "host-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder " + name);
        root = name;
    }
    ~HostTree() { std::filesystem::remove_all(root); }
    HostTree(const HostTree&) = delete;
    HostTree& operator=(const HostTree&) = delete;

    // The file's folders are made, too.
    void Write(const std::string& name, std::string_view content) const {
        std::filesystem::create_directories((root / name).parent_path());
        std::ofstream(root / name, std::ios::binary) << content;
    }

    std::filesystem::path root;
};

#endif
