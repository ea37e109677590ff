// SPDX-License-Identifier: MIT
//
// One machine's structures as dmidecode words them, each beside its bytes.
#ifndef TALVANE_TESTS_PEERTABLE_H
#define TALVANE_TESTS_PEERTABLE_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "DmidecodeText.h"
#include "ExpectedField.h"
#include "RawTable.h"

namespace captures {

struct PeerStructure {
    DmidecodeStructure text;
    RawStructure raw;

    // Adds a text that the library copies into a field of `size` bytes: dmidecode's under `key`,
    // whose string number stands at `offset`. A missing string is a missing text.
    ExpectedField& AddText(ExpectedFields& fields, std::string name, std::string_view key,
                           std::size_t offset, std::size_t size) const;

    // The same text, uncut.
    std::string StringText(std::string_view key, std::size_t offset) const;
};

class PeerTable {
public:
    // Throws std::runtime_error when the two do not tell of the same structures.
    PeerTable(const DmidecodeText& text, const std::vector<RawStructure>& raw);

    bool Legacy() const { return legacy_; }
    unsigned Major() const { return major_; }
    unsigned Minor() const { return minor_; }

    const std::vector<PeerStructure>& Structures() const { return structures_; }
    std::vector<const PeerStructure*> OfType(unsigned type) const;
    const PeerStructure* First(unsigned type) const;  // null without one
    const PeerStructure* ByHandle(unsigned type, unsigned handle) const;

private:
    bool legacy_;
    unsigned major_;
    unsigned minor_;
    std::vector<PeerStructure> structures_;
};

}  // namespace captures

#endif
