// SPDX-License-Identifier: MIT
//
// The data of the setting that was refused last.

#include "IPMI/RequestData.h"

#include <utility>

namespace talvane {

namespace {

RequestData refused;

}  // namespace

int Settled(int result, RequestData sent, unsigned char*& recorded) {
    if (result == 0)
        recorded = nullptr;
    else
        refused = std::move(sent);
    return result;
}

}  // namespace talvane
