// SPDX-License-Identifier: MIT
//
// A file by which a person changes what sensors show while a program runs: statements `reading` and
// `states`, as in a machine description. It is read again whenever a sensor is asked for.
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
    // The file need not be there yet.
    explicit BmcControlFile(std::filesystem::path file) : file_(std::move(file)) {}

    // What the file says now, by sensor; nothing when it is not there. While it cannot be
    // understood what it said before holds, and the complaint goes to standard error, once.
    const std::map<std::uint8_t, BmcTimeline>& Timelines();

private:
    void ReadAgain(const std::string& text);

    std::filesystem::path file_;
    std::string text_;
    std::map<std::uint8_t, BmcTimeline> timelines_;
};

// From now on what the file says stands in place of what the controller was set to show.
void FollowControlFile(const std::filesystem::path& file, Bmc& bmc);

}  // namespace sim

#endif
