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

// Read the rest of a line that begins with `reading` or `states`.
void ReadReading(MachineLine& line, std::map<std::uint8_t, BmcTimeline>& timelines);
void ReadStates(MachineLine& line, std::map<std::uint8_t, BmcTimeline>& timelines);

// Reads a whole line of a control file: one of these statements, or an empty line.
void ReadTimelineLine(MachineLine& line, std::map<std::uint8_t, BmcTimeline>& timelines);

}  // namespace sim

#endif
