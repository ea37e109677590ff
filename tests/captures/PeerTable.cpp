// SPDX-License-Identifier: MIT
//
// Pairs the structures of a text with those of the bytes.

#include "PeerTable.h"

#include <stdexcept>

namespace captures {

ExpectedField& PeerStructure::AddText(ExpectedFields& fields, std::string name,
                                      std::string_view key, std::size_t offset,
                                      std::size_t size) const {
    return fields.Add(std::move(name), StringText(key, offset)).CutTo(size);
}

std::string PeerStructure::StringText(std::string_view key, std::size_t offset) const {
    return raw.String(offset) ? text.Value(key) : "";
}

PeerTable::PeerTable(const DmidecodeText& text, const std::vector<RawStructure>& raw)
    : legacy_(text.entryPoint == DmidecodeText::EntryPoint::kLegacy),
      major_(text.major),
      minor_(text.minor) {
    if (text.structures.size() > raw.size())
        throw std::runtime_error("dmidecode lists more structures than the table has");
    for (std::size_t i = 0; i < text.structures.size(); ++i) {
        if (text.structures[i].type != raw[i].type || text.structures[i].handle != raw[i].handle)
            throw std::runtime_error("dmidecode's structure " + std::to_string(i + 1) +
                                     " is not the table's");
        structures_.push_back({text.structures[i], raw[i]});
    }
}

std::vector<const PeerStructure*> PeerTable::OfType(unsigned type) const {
    std::vector<const PeerStructure*> found;
    for (const PeerStructure& structure : structures_)
        if (structure.text.type == type) found.push_back(&structure);
    return found;
}

const PeerStructure* PeerTable::First(unsigned type) const {
    for (const PeerStructure& structure : structures_)
        if (structure.text.type == type) return &structure;
    return nullptr;
}

const PeerStructure* PeerTable::ByHandle(unsigned type, unsigned handle) const {
    for (const PeerStructure& structure : structures_)
        if (structure.text.type == type && structure.text.handle == handle) return &structure;
    return nullptr;
}

}  // namespace captures
