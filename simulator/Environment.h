// SPDX-License-Identifier: MIT
//
// The environment variables by which the launcher tells the preload library what to do.
#ifndef TALVANE_SIMULATOR_ENVIRONMENT_H
#define TALVANE_SIMULATOR_ENVIRONMENT_H

namespace sim {

inline constexpr const char* kMachineVariable = "TALVANE_MACHINE";  // its folder or archive
inline constexpr const char* kHostVariable =
    "TALVANE_HOST";  // in place of a machine: the root folder of the running system
inline constexpr const char* kHostDirectVariable =
    "TALVANE_HOST_DIRECT";  // its areas to read directly, separated by commas
inline constexpr const char* kHostChangesVariable =
    "TALVANE_HOST_CHANGES";  // pass commands on that can change the controller, when set
inline constexpr const char* kLogVariable = "TALVANE_MACHINE_LOG";  // the log file, if any
inline constexpr const char* kControlVariable =
    "TALVANE_MACHINE_CONTROL";  // the control file, if any
inline constexpr const char* kRealTimeVariable =
    "TALVANE_MACHINE_REAL_TIME";                               // sleep for real when set
inline constexpr const char* kPreloadVariable = "LD_PRELOAD";  // our library comes first
inline constexpr const char* kPreloadLibrary = "libtalvane-sim.so";

}  // namespace sim

#endif
