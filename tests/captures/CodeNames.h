// SPDX-License-Identifier: MIT
//
// The names that dmidecode and the library give to the same code. Names are this library's
// interface, so its column is written out here once more and not taken from its sources.
#ifndef TALVANE_TESTS_CODENAMES_H
#define TALVANE_TESTS_CODENAMES_H

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace captures {

struct NamePair {
    std::string_view peer;
    std::string_view ours;
};

std::span<const NamePair> Families();
std::span<const NamePair> PortTypes();
std::span<const NamePair> MemoryTypes();
std::span<const NamePair> TypeDetails();  // empty where the library has no word for the bit
std::span<const NamePair> ModuleTypes();

// What the library calls it; nothing for a word that is not one of dmidecode's.
std::optional<std::string> OurName(std::span<const NamePair> names, std::string_view peer);

}  // namespace captures

#endif
