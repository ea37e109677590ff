// SPDX-License-Identifier: MIT
//
// Captures of real machines: TALVANE_SHARED_DATA, from the environment, else as built.
#ifndef TALVANE_TESTS_SUPPORT_SHAREDDATA_H
#define TALVANE_TESTS_SUPPORT_SHAREDDATA_H

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

inline constexpr char kNoCaptures[] =
    "no captures: set TALVANE_SHARED_DATA to the folder that holds them";

inline std::filesystem::path SharedData(std::string_view folder) {
    const char* const root = std::getenv("TALVANE_SHARED_DATA");
    return std::filesystem::path(root != nullptr ? root : TALVANE_SHARED_DATA) / folder;
}

// The names of the folder's files that end so, without that end, in order; none without a folder.
inline std::vector<std::string> CapturesEndingIn(std::string_view folder, std::string_view end) {
    std::vector<std::string> names;
    std::error_code absent;
    for (const auto& entry : std::filesystem::directory_iterator(SharedData(folder), absent)) {
        const std::string name = entry.path().filename().string();
        if (name.ends_with(end)) names.push_back(name.substr(0, name.size() - end.size()));
    }
    std::sort(names.begin(), names.end());
    return names;
}

// The same; one empty name where there is none, so that tests of each capture can say what they
// miss.
inline std::vector<std::string> CapturesOrNone(std::string_view folder, std::string_view end) {
    std::vector<std::string> names = CapturesEndingIn(folder, end);
    if (names.empty()) names.emplace_back();
    return names;
}

inline std::string ContentOf(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

#endif
