// SPDX-License-Identifier: MIT
//
// The statements about what sensors show, shared by machine descriptions and control files.
#ifndef TALVANE_SIMULATOR_BMCSENSORSTATEMENTS_H
#define TALVANE_SIMULATOR_BMCSENSORSTATEMENTS_H

#include <cstdint>
#include <map>

#include "BmcCourse.h"
#include "MachineLine.h"

namespace sim {

// What stands behind the words `reading` and `states`.
void readReading(MachineLine& line, std::map<std::uint8_t, BmcCourse>& courses);
void readStates(MachineLine& line, std::map<std::uint8_t, BmcCourse>& courses);

// A whole line of a control file: one of these statements, or nothing.
void readCourseLine(MachineLine& line, std::map<std::uint8_t, BmcCourse>& courses);

}  // namespace sim

#endif
