// SPDX-License-Identifier: MIT
//
// The data of the setting that was refused last.

#include "IPMI/RequestData.h"

#include <utility>

namespace {

RequestData refused;

}  // namespace

void KeepRefused(RequestData data) {
    refused = std::move(data);
}
