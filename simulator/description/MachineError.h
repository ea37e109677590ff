// SPDX-License-Identifier: MIT
//
// The error that a machine description cannot be used. The text starts with FILE:LINE: when a line
// is at fault.
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
