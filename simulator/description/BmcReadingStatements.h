// SPDX-License-Identifier: MIT
//
// The statements about what sensors show, shared by machine descriptions and control files.
#ifndef TALVANE_SIMULATOR_DESCRIPTION_BMCREADINGSTATEMENTS_H
#define TALVANE_SIMULATOR_DESCRIPTION_BMCREADINGSTATEMENTS_H

#include <cstdint>
#include <map>

#include "simulator/bmc/BmcTimeline.h"
#include "simulator/description/MachineLine.h"

namespace sim {

// What stands behind the words `reading` and `states`.
void ReadReading(MachineLine& line, std::map<std::uint8_t, BmcTimeline>& timelines);
void ReadStates(MachineLine& line, std::map<std::uint8_t, BmcTimeline>& timelines);

// A whole line of a control file: one of these statements, or nothing.
void ReadTimelineLine(MachineLine& line, std::map<std::uint8_t, BmcTimeline>& timelines);

}  // namespace sim

#endif
