// SPDX-License-Identifier: MIT
//
// In place of base/PortIo.h, which the fuzz targets' search path finds second: a fed machine has no
// ports, so its answers are plain calls.
#ifndef TALVANE_BASE_PORTIO_H
#define TALVANE_BASE_PORTIO_H

#include <cstdint>

#include "fuzz/machine/FedMachine.h"

namespace talvane {

// A system interface is there: any value but all ones.
inline std::uint8_t ReadPort8(std::uint16_t) {
    return 0;
}

inline std::uint32_t ReadPort32(std::uint16_t) {
    const fuzz::FedMachine& machine = *fuzz::FedMachine::Current();
    return machine.Configuration(machine.configurationAddress);
}

inline void WritePort32(std::uint16_t, std::uint32_t value) {
    fuzz::FedMachine::Current()->configurationAddress = value;
}

}  // namespace talvane

#endif
