// SPDX-License-Identifier: MIT
//
// The results of the exported functions.
#ifndef TALVANE_INTERFACE_CALLRESULT_H
#define TALVANE_INTERFACE_CALLRESULT_H

namespace talvane {

constexpr int kSuccess = 0;
constexpr int kFailure = -1;
// Called from within a call of the same kind or the creation of its reader; nothing was done.
constexpr int kBusy = 1;

}  // namespace talvane

#endif
