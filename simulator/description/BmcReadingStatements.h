// SPDX-License-Identifier: MIT
//
// The statements about what sensors show, shared by machine descriptions and control files.
#ifndef TALVANE_SIMULATOR_DESCRIPTION_BMCREADINGSTATEMENTS_H
#define TALVANE_SIMULATOR_DESCRIPTION_BMCREADINGSTATEMENTS_H

#include <cstdint>
#include <map>
#include <optional>

#include "simulator/bmc/BmcTimeline.h"
#include "simulator/description/MachineLine.h"

namespace sim {

// Read the rest of a line that begins with `reading` or `states`, and return the sensor's number.
std::uint8_t ReadReading(MachineLine& line, std::map<std::uint8_t, BmcTimeline>& timelines);
std::uint8_t ReadStates(MachineLine& line, std::map<std::uint8_t, BmcTimeline>& timelines);

// Reads a whole line of a control file: one of these statements, whose sensor is returned, or an
// empty line.
std::optional<std::uint8_t> ReadTimelineLine(MachineLine& line,
                                             std::map<std::uint8_t, BmcTimeline>& timelines);

}  // namespace sim

#endif
