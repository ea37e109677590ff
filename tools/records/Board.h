// SPDX-License-Identifier: MIT
//
// The main board and its BIOS.
#ifndef TALVANE_TOOLS_RECORDS_BOARD_H
#define TALVANE_TOOLS_RECORDS_BOARD_H

#include <optional>
#include <string>

#include "tools/base/Json.h"

namespace tool {

struct Board {
    std::string manufacturer;
    std::string product;
    std::string serialNumber;
    std::string biosVendor;
    std::string biosVersion;
    std::string biosReleaseDate;
};

// Nothing when the source cannot be read.
std::optional<Board> ReadBoard();

std::string ToText(const Board& board);
Json ToJson(const Board& board);

}  // namespace tool

#endif
