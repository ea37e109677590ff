// SPDX-License-Identifier: MIT
//
// Entity and sensor type codes with their names.
#ifndef TALVANE_TOOLS_LIBRARY_SENSORCODES_H
#define TALVANE_TOOLS_LIBRARY_SENSORCODES_H

#include <cstddef>
#include <string>

#include "IPMI/SensorNames.h"

namespace tool {

// "3 processor"; the number alone for a code without a name.
template <std::size_t N>
std::string CodeText(int code, const char* const (&names)[N]) {
    const std::string number = std::to_string(code);
    if (code < 0 || static_cast<std::size_t>(code) >= N) return number;
    return number + ' ' + names[code];
}

inline std::string EntityText(int entity) {
    return CodeText(entity, SensorsEntityID);
}

inline std::string SensorTypeText(int type) {
    return CodeText(type, SensorsType);
}

}  // namespace tool

#endif
