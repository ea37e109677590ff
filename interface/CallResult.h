// SPDX-License-Identifier: MIT
//
// The results of the exported functions.
#ifndef TALVANE_INTERFACE_CALLRESULT_H
#define TALVANE_INTERFACE_CALLRESULT_H

namespace talvane {

constexpr int kSuccess = 0;
constexpr int kFailure = -1;
constexpr int kBusy = 1;  // called from inside a call of the same kind; nothing was done

}  // namespace talvane

#endif
