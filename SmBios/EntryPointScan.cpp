// SPDX-License-Identifier: MIT
//
// The search for an anchor on its boundaries.

#include "SmBios/EntryPointScan.h"

#include <algorithm>
#include <cstring>

namespace talvane {
namespace {

constexpr std::size_t kAnchorBoundary = 16;
constexpr std::uint32_t kSmBiosAnchor = 0x5F4D535F;  // "_SM_"
constexpr std::uint32_t kDmiAnchor = 0x494D445F;     // "_DMI", the first four of five bytes

template <class EntryPoint>
std::optional<EntryPoint> FindEntryPoint(ByteView segment, std::uint32_t anchor) {
    for (std::size_t at = 0; at < segment.size(); at += kAnchorBoundary) {
        if (Le32(segment, at) != anchor) continue;
        EntryPoint entry{};
        std::memcpy(&entry, &segment[at], std::min(sizeof entry, segment.size() - at));
        return entry;
    }
    return std::nullopt;
}

}  // namespace

std::optional<SmBiosTableEntryPoint> FindSmBiosEntryPoint(ByteView segment) {
    return FindEntryPoint<SmBiosTableEntryPoint>(segment, kSmBiosAnchor);
}

std::optional<DMITableEntryPoint> FindDmiEntryPoint(ByteView segment) {
    return FindEntryPoint<DMITableEntryPoint>(segment, kDmiAnchor);
}

}  // namespace talvane
