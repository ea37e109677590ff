// SPDX-License-Identifier: MIT
//
// The error that a machine description cannot be used. The text starts with FILE:LINE: when a line
// is at fault. It is one line: control characters in it, which can be a stranger's, are shown as
// \xHH, so that they do not reach a terminal.
#ifndef TALVANE_SIMULATOR_DESCRIPTION_MACHINEERROR_H
#define TALVANE_SIMULATOR_DESCRIPTION_MACHINEERROR_H

#include <stdexcept>
#include <string>

namespace sim {

class MachineError : public std::runtime_error {
public:
    explicit MachineError(const std::string& text);
};

}  // namespace sim

#endif
