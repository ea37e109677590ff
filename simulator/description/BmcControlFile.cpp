// SPDX-License-Identifier: MIT
//
// Reads the whole file each time, since its time stamp can stay the same when it changes twice
// within a moment.

#include "simulator/description/BmcControlFile.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>

#include "simulator/bmc/Bmc.h"
#include "simulator/description/BmcReadingStatements.h"
#include "simulator/description/MachineError.h"
#include "simulator/description/MachineLine.h"

namespace sim {

const std::map<std::uint8_t, BmcTimeline>& BmcControlFile::Timelines() {
    std::ifstream stream(file_);
    std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (text != text_) ReadAgain(text);
    text_ = std::move(text);
    return timelines_;
}

void BmcControlFile::ReadAgain(const std::string& text) {
    std::map<std::uint8_t, BmcTimeline> read;
    std::istringstream lines(text);
    std::string words;
    try {
        for (int number = 1; std::getline(lines, words); ++number) {
            MachineLine line(file_.string(), number, words);
            ReadTimelineLine(line, read);
        }
        timelines_ = std::move(read);
    } catch (const MachineError& error) {
        (void)std::fprintf(stderr, "simulated server: %s; its previous content still applies\n",
                           error.what());
    }
}

void FollowControlFile(const std::filesystem::path& file, Bmc& bmc) {
    bmc.Follow([control = BmcControlFile(file)]() mutable -> const auto& {
        return control.Timelines();
    });
}

}  // namespace sim
