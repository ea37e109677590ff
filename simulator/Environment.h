// SPDX-License-Identifier: MIT
//
// The environment variables by which the launcher tells the preload library what to do.
#ifndef TALVANE_SIMULATOR_ENVIRONMENT_H
#define TALVANE_SIMULATOR_ENVIRONMENT_H

namespace sim {

inline constexpr const char* kMachineVariable = "TALVANE_MACHINE";  // the machine's folder
inline constexpr const char* kLogVariable = "TALVANE_MACHINE_LOG";  // the log file, if any
inline constexpr const char* kControlVariable =
    "TALVANE_MACHINE_CONTROL";  // the control file, if any
inline constexpr const char* kRealTimeVariable =
    "TALVANE_MACHINE_REAL_TIME";                               // sleep for real when set
inline constexpr const char* kPreloadVariable = "LD_PRELOAD";  // our library comes first
inline constexpr const char* kPreloadLibrary = "libtalvane-sim.so";

}  // namespace sim

#endif
