// SPDX-License-Identifier: MIT

#include "PeerTable.h"

#include <stdexcept>

namespace captures {

ExpectedField& PeerStructure::addText(ExpectedFields& fields, std::string name,
                                      std::string_view key, std::size_t offset,
                                      std::size_t size) const {
    return fields.add(std::move(name), stringText(key, offset)).cutTo(size);
}

std::string PeerStructure::stringText(std::string_view key, std::size_t offset) const {
    return raw.string(offset) ? text.value(key) : "";
}

PeerTable::PeerTable(const DmidecodeText& text, const std::vector<RawStructure>& raw)
    : legacy_(text.entryPoint == DmidecodeText::EntryPoint::legacy),
      major_(text.major),
      minor_(text.minor) {
    if (text.structures.size() > raw.size())
        throw std::runtime_error("dmidecode tells of more structures than the table has");
    for (std::size_t i = 0; i < text.structures.size(); ++i) {
        if (text.structures[i].type != raw[i].type || text.structures[i].handle != raw[i].handle)
            throw std::runtime_error("dmidecode's structure " + std::to_string(i + 1) +
                                     " is not the table's");
        structures_.push_back({text.structures[i], raw[i]});
    }
}

std::vector<const PeerStructure*> PeerTable::ofType(unsigned type) const {
    std::vector<const PeerStructure*> found;
    for (const PeerStructure& structure : structures_)
        if (structure.text.type == type) found.push_back(&structure);
    return found;
}

const PeerStructure* PeerTable::first(unsigned type) const {
    for (const PeerStructure& structure : structures_)
        if (structure.text.type == type) return &structure;
    return nullptr;
}

const PeerStructure* PeerTable::byHandle(unsigned type, unsigned handle) const {
    for (const PeerStructure& structure : structures_)
        if (structure.text.type == type && structure.text.handle == handle) return &structure;
    return nullptr;
}

}  // namespace captures
