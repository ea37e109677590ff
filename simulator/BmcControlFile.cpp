// SPDX-License-Identifier: MIT
//
// The file is small and read whole: an editor may replace it within the resolution of a time stamp.

#include "BmcControlFile.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>

#include "BmcSensorStatements.h"
#include "MachineError.h"
#include "MachineLine.h"

namespace sim {

const std::map<std::uint8_t, BmcCourse>& BmcControlFile::courses() {
    std::ifstream stream(file_);
    std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (text != text_) readAgain(text);
    text_ = std::move(text);
    return courses_;
}

void BmcControlFile::readAgain(const std::string& text) {
    std::map<std::uint8_t, BmcCourse> read;
    std::istringstream lines(text);
    std::string words;
    try {
        for (int number = 1; std::getline(lines, words); ++number) {
            MachineLine line(file_.string(), number, words);
            readCourseLine(line, read);
        }
        courses_ = std::move(read);
    } catch (const MachineError& error) {
        (void)std::fprintf(stderr, "simulated server: %s; what it said before holds\n",
                           error.what());
    }
}

}  // namespace sim
