// SPDX-License-Identifier: MIT
//
// The areas of a machine that are read apart from each other, and the way in which each was read.
#ifndef TALVANE_SIMULATOR_HOST_WAYS_H
#define TALVANE_SIMULATOR_HOST_WAYS_H

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

// The names of the areas, in the order of a report.
inline constexpr const char* kSmbiosArea = "smbios";
inline constexpr const char* kBmcArea = "bmc";
inline constexpr const char* kPciArea = "pci";
inline constexpr const char* kDrivesArea = "drives";
inline constexpr const char* kLoadArea = "load";
inline constexpr std::array kAreas = {kSmbiosArea, kBmcArea, kPciArea, kDrivesArea, kLoadArea};

struct AreaWay {
    std::string area;     // one of kAreas
    bool isDirect;        // through the devices that agents know, else through other interfaces
    std::string from;     // the file or folder that is read, or was to be read
    std::string note;     // what is different from the machine itself; empty: nothing
    std::string problem;  // why nothing can be read; empty: it can
    // The disks that cannot be opened, separated by commas, and why; empty: all can be.
    std::string unopened = {};
    std::string whyUnopened = {};
};

// As lines of text, and back. Decoding skips lines that are not whole.
std::string EncodeWays(const std::vector<AreaWay>& ways);
std::vector<AreaWay> DecodeWays(std::string_view text);

}  // namespace sim

#endif
