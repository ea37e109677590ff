// SPDX-License-Identifier: MIT
//
// What the exported functions answer.
#ifndef TALVANE_INTERFACE_CALLRESULT_H
#define TALVANE_INTERFACE_CALLRESULT_H

constexpr int kSuccess = 0;
constexpr int kFailure = -1;
constexpr int kBusy = 1;

#endif
