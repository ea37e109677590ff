// SPDX-License-Identifier: MIT
//
// Faults of the controller: requests that it does not answer as it should.

#include <algorithm>
#include <stdexcept>

#include "simulator/bmc/Bmc.h"

namespace sim {

void Bmc::Inject(const BmcFault& fault) {
    if (Find(fault.netFn, fault.command) == nullptr)
        throw std::invalid_argument("the controller knows no such command");
    faults_.push_back(fault);
}

void Bmc::Inject(std::string_view command, BmcFault::Kind kind, unsigned value, unsigned nth) {
    const Command& row = FindByName(command);
    faults_.push_back({row.netFn, row.command, nth, kind, value});
}

// Counts the request for every fault that waits for its command. Returns the first fault that is
// due and drops all that are due and strike once.
std::optional<BmcFault> Bmc::TakeFaultFor(const BmcRequest& request) {
    std::optional<BmcFault> met;
    for (auto fault = faults_.begin(); fault != faults_.end();) {
        const bool isMeant = fault->netFn == request.netFn && fault->command == request.command;
        const bool isOnce = fault->nth != 0;
        if (!isMeant || (isOnce && --fault->nth != 0)) {
            ++fault;
            continue;
        }
        if (!met) met = *fault;
        fault = isOnce ? faults_.erase(fault) : fault + 1;
    }
    return met;
}

void Bmc::AnswerWithFault(const BmcFault& fault, BmcRequest& request) {
    // No default: the compiler names a kind that is missing here.
    switch (fault.kind) {  // LCOV_EXCL_BR_LINE: each kind has a case
        case BmcFault::Kind::kRefused:
            request.completion = static_cast<std::uint8_t>(fault.value);
            return;
        case BmcFault::Kind::kFails:
            request.error = static_cast<int>(fault.value);
            return;
        case BmcFault::Kind::kCut:
            CarryOut(request);
            request.response.resize(std::min<std::size_t>(request.response.size(), fault.value));
            return;
        case BmcFault::Kind::kStale:
            CarryOut(request);
            request.response = requests_.empty() ? Bytes{} : requests_.back().response;
            return;
    }
}

}  // namespace sim
