// SPDX-License-Identifier: MIT
//
// How the launcher tells the preload library, in the program it starts, what to do.
#ifndef TALVANE_SIMULATOR_ENVIRONMENT_H
#define TALVANE_SIMULATOR_ENVIRONMENT_H

namespace sim {

inline constexpr const char* kMachineVariable = "TALVANE_MACHINE";          // the machine's folder
inline constexpr const char* kLogVariable = "TALVANE_MACHINE_LOG";          // file, when wanted
inline constexpr const char* kControlVariable = "TALVANE_MACHINE_CONTROL";  // the same
inline constexpr const char* kRealTimeVariable = "TALVANE_MACHINE_REAL_TIME";  // set: yes
inline constexpr const char* kPreloadVariable = "LD_PRELOAD";                  // ours comes first
inline constexpr const char* kPreloadLibrary = "libtalvane-sim.so";

}  // namespace sim

#endif
