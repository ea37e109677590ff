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
#include <optional>
#include <string>

#include "simulator/bmc/BmcTimeline.h"

namespace sim {

class Bmc;

class BmcControlFile {
public:
    // The file need not exist yet. The controller outlives this object.
    BmcControlFile(std::filesystem::path file, const Bmc& bmc)
        : file_(std::move(file)), bmc_(bmc) {}

    // What the file says now, by sensor number; empty when it does not exist. While the file has a
    // mistake, is no regular file or cannot be read, its previous content applies. Standard error
    // says so once, and names each sensor that the controller does not have; its statements apply
    // all the same.
    const std::map<std::uint8_t, BmcTimeline>& Timelines();

private:
    void ReadAgain(const std::string& text);
    void Report(const std::string& problem) const;

    std::filesystem::path file_;
    const Bmc& bmc_;
    std::optional<std::string> text_ = "";  // nothing: it could not be read
    std::map<std::uint8_t, BmcTimeline> timelines_;
};

// From now on the file's readings and states replace those that the controller was set to show.
void FollowControlFile(const std::filesystem::path& file, Bmc& bmc);

}  // namespace sim

#endif
