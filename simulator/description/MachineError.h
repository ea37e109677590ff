// SPDX-License-Identifier: MIT
//
// A machine description that cannot be used. The text starts with FILE:LINE: where a line is at
// fault.
#ifndef TALVANE_SIMULATOR_DESCRIPTION_MACHINEERROR_H
#define TALVANE_SIMULATOR_DESCRIPTION_MACHINEERROR_H

#include <stdexcept>

namespace sim {

class MachineError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace sim

#endif
