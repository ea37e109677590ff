// SPDX-License-Identifier: MIT
//
// Reads and shows TALVANE_BOARD.

#include "tools/records/Board.h"

#include <nlohmann/json.hpp>

#include "Talvane.h"
#include "tools/base/JsonValue.h"
#include "tools/base/Layout.h"
#include "tools/base/Text.h"

namespace tool {

std::optional<Board> ReadBoard() {
    BaseBoardInformation record{};
    if (GetInfo(TALVANE_BOARD, &record) != 0) return std::nullopt;
    return Board{.manufacturer = FieldText(record.Manufacturer),
                 .product = FieldText(record.ProductName),
                 .serialNumber = FieldText(record.SerialNo),
                 .biosVendor = FieldText(record.RomVendor),
                 .biosVersion = FieldText(record.RomVersion),
                 .biosReleaseDate = FieldText(record.RomReleaseDate)};
}

std::string ToText(const Board& board) {
    return Section("Board", {FactBlock({{"Manufacturer", board.manufacturer},
                                        {"Product", board.product},
                                        {"Serial number", board.serialNumber},
                                        {"BIOS vendor", board.biosVendor},
                                        {"BIOS version", board.biosVersion},
                                        {"BIOS date", board.biosReleaseDate}})});
}

Json ToJson(const Board& board) {
    return {{"manufacturer", TextJson(board.manufacturer)},
            {"product", TextJson(board.product)},
            {"serialNumber", TextJson(board.serialNumber)},
            {"bios",
             {{"vendor", TextJson(board.biosVendor)},
              {"version", TextJson(board.biosVersion)},
              {"releaseDate", TextJson(board.biosReleaseDate)}}}};
}

}  // namespace tool
