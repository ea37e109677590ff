// SPDX-License-Identifier: MIT
//
// A file in which a person changes what sensors show while a program runs. It holds statements
// `reading` and `states`, as a machine description does, and is read again at every request for a
// reading.
#ifndef TALVANE_SIMULATOR_DESCRIPTION_BMCCONTROLFILE_H
#define TALVANE_SIMULATOR_DESCRIPTION_BMCCONTROLFILE_H

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>

#include "simulator/bmc/BmcTimeline.h"

namespace sim {

class Bmc;

class BmcControlFile {
public:
    // The file need not exist yet.
    explicit BmcControlFile(std::filesystem::path file) : file_(std::move(file)) {}

    // What the file says now, by sensor number; empty when it does not exist. While the file has a
    // mistake, its previous content applies, and the mistake is reported on standard error once.
    const std::map<std::uint8_t, BmcTimeline>& Timelines();

private:
    void ReadAgain(const std::string& text);

    std::filesystem::path file_;
    std::string text_;
    std::map<std::uint8_t, BmcTimeline> timelines_;
};

// From now on the file's readings and states replace those that the controller was set to show.
void FollowControlFile(const std::filesystem::path& file, Bmc& bmc);

}  // namespace sim

#endif
