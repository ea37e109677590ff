// SPDX-License-Identifier: MIT
//
// Reads the whole file each time, since its time stamp can stay the same when it changes twice
// within a moment.

#include "simulator/description/BmcControlFile.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>

#include "simulator/base/CallText.h"
#include "simulator/bmc/Bmc.h"
#include "simulator/description/BmcReadingStatements.h"
#include "simulator/description/MachineError.h"
#include "simulator/description/MachineLine.h"
#include "simulator/description/RegularFile.h"

namespace sim {

namespace {

constexpr const char* kStillApplies = "; its previous content still applies";

// The text of a file; nothing, with the reason in `problem`, when it cannot be read or reading it
// would wait for someone who writes.
std::optional<std::string> TextNow(const std::filesystem::path& file, const char*& problem) {
    problem = kNotRegular;
    if (IsNotRegular(file)) return std::nullopt;
    std::ifstream stream(file);
    try {
        return std::string{std::istreambuf_iterator<char>(stream),
                           std::istreambuf_iterator<char>()};
    } catch (const std::ios_base::failure&) {
        problem = "cannot be read";
        return std::nullopt;
    }
}

}  // namespace

const std::map<std::uint8_t, BmcTimeline>& BmcControlFile::Timelines() {
    const char* problem = nullptr;
    auto text = TextNow(file_, problem);
    if (text == text_) return timelines_;
    if (text)
        ReadAgain(*text);
    else
        Report(file_.string() + ": " + problem + kStillApplies);
    text_ = std::move(text);
    return timelines_;
}

void BmcControlFile::ReadAgain(const std::string& text) {
    std::map<std::uint8_t, BmcTimeline> read;
    std::map<std::uint8_t, int> unknown;  // the first line about each sensor that there is not
    std::istringstream lines(text);
    std::string words;
    try {
        for (int number = 1; std::getline(lines, words); ++number) {
            MachineLine line(file_.string(), number, words);
            const auto sensor = ReadTimelineLine(line, read);
            if (sensor && !bmc_.HasSensor(*sensor)) unknown.emplace(*sensor, number);
        }
    } catch (const MachineError& error) {
        Report(error.what() + std::string(kStillApplies));
        return;
    }
    timelines_ = std::move(read);
    for (const auto& [sensor, line] : unknown)
        Report(file_.string() + ':' + std::to_string(line) + ": the machine has no sensor " +
               Hex(sensor));
}

void BmcControlFile::Report(const std::string& problem) const {
    (void)std::fprintf(stderr, "simulated server: %s\n", problem.c_str());
}

void FollowControlFile(const std::filesystem::path& file, Bmc& bmc) {
    bmc.Follow([control = BmcControlFile(file, bmc)]() mutable -> const auto& {
        return control.Timelines();
    });
}

}  // namespace sim
