// SPDX-License-Identifier: MIT
//
// The parts of a machine that sensors belong to (IPMI 2.0, table 43-13).
#ifndef TALVANE_TOOLS_SENSORS_ENTITYNAMES_H
#define TALVANE_TOOLS_SENSORS_ENTITYNAMES_H

#include <optional>
#include <string>

namespace tool {

// "power supply"; "entity 0x95" for a code without a name.
std::string EntityName(int entity);

// "power supply (10)".
std::string EntityText(int entity);

// "power supply 2".
std::string EntityInstanceName(int entity, int instance);

// The number in that name. An instance from 0x60 on is counted within its controller, from 0.
int InstanceNumber(int instance);

// The code of such a name; nothing for any other text.
std::optional<int> EntityNamed(const std::string& name);

}  // namespace tool

#endif
