// SPDX-License-Identifier: MIT
//
// BIOS, board and system texts.

#include <vector>

#include "Expectation.h"

namespace captures {

namespace {

void ExpectBios(const PeerTable& peer, ExpectedFields& fields) {
    struct Text {
        const char* field;
        const char* key;
        std::size_t offset;
        std::size_t size;
    };
    constexpr Text kTexts[] = {{"board.RomVendor", "Vendor", 4, 32},
                               {"board.RomVersion", "Version", 5, 32},
                               {"board.RomReleaseDate", "Release Date", 8, 16}};
    const PeerStructure* bios = peer.First(0);
    for (const Text& text : kTexts) {
        ExpectedField& field =
            bios == nullptr ? fields.Add(text.field, "")
                            : bios->AddText(fields, text.field, text.key, text.offset, text.size);
        const PeerStructure& first = peer.Structures().front();
        if (first.text.type != 0)
            field.By(Rule::kFirstStructureIsBios, first.raw.String(text.offset).value_or(""))
                .CutTo(text.size);
    }
}

// The board that is reported: the only one, or of several the first without contained objects.
const PeerStructure* SelectedBoard(const std::vector<const PeerStructure*>& boards) {
    if (boards.size() == 1) return boards[0];
    for (const PeerStructure* board : boards)
        if (LeadingNumber(board->text.Value("Contained Object Handles")).value_or(0) == 0)
            return board;
    return nullptr;
}

void ExpectBoard(const PeerTable& peer, ExpectedFields& fields) {
    struct Text {
        const char* field;
        const char* key;
        std::size_t offset;
        std::size_t size;
    };
    constexpr Text kTexts[] = {{"board.Manufacturer", "Manufacturer", 4, 32},
                               {"board.ProductName", "Product Name", 5, 32},
                               {"board.SerialNo", "Serial Number", 7, 16}};
    const std::vector<const PeerStructure*> boards = peer.OfType(2);
    if (boards.empty()) return;
    const PeerStructure* selected = SelectedBoard(boards);
    for (const Text& text : kTexts) {
        ExpectedField& field = fields.Add(text.field, boards[0]->StringText(text.key, text.offset));
        field.By(Rule::kBoardSelection,
                 selected == nullptr ? "" : selected->StringText(text.key, text.offset));
        field.CutTo(text.size);
    }
}

void ExpectSystem(const PeerTable& peer, ExpectedFields& fields) {
    const PeerStructure* system = peer.First(1);
    if (system == nullptr) return;
    system->AddText(fields, "system.manufacturer", "Manufacturer", 4, 32);
    system->AddText(fields, "system.SysProductName", "Product Name", 5, 32);
    system->AddText(fields, "system.version", "Version", 6, 16);
}

}  // namespace

void ExpectBoardAndSystem(const PeerTable& peer, ExpectedFields& fields) {
    ExpectBios(peer, fields);
    ExpectBoard(peer, fields);
    ExpectSystem(peer, fields);
}

}  // namespace captures
