// SPDX-License-Identifier: MIT
//
// Each fault counts the calls it is meant for and is dropped after it has struck.

#include "simulator/machine/CallFaults.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace sim {
namespace {

// Calls that can fail, then the port instructions, which cannot.
constexpr std::array<std::string_view, 10> kCalls = {
    "open", "lseek", "read", "close", "ioctl", "opendir", "closedir", "sleep", "iopl", "system"};
constexpr std::array<std::string_view, 2> kInstructions = {"in", "out"};

bool Contains(const auto& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

void RequireCount(int nth) {
    if (nth < 1) throw std::invalid_argument("calls count from 1");
}

}  // namespace

void CallFaults::Fail(std::string_view call, int nth, int error) {
    if (!Contains(kCalls, call))
        throw std::invalid_argument("there is no call \"" + std::string(call) + "\" that can fail");
    RequireCount(nth);
    faults_.push_back({std::string(call), nth, error});
}

void CallFaults::ShortRead(int nth, std::size_t bytes) {
    RequireCount(nth);
    shortReads_.push_back({nth, bytes});
}

void CallFaults::FailAllocation(int nth) {
    RequireCount(nth);
    allocations_.push_back(nth);
}

void CallFaults::During(std::string_view call, void (*action)()) {
    if (!Contains(kCalls, call) && !Contains(kInstructions, call))
        throw std::invalid_argument("there is no simulated call \"" + std::string(call) + "\"");
    actions_.push_back({std::string(call), action});
}

std::optional<int> CallFaults::Enter(std::string_view call) {
    const auto action = std::find_if(actions_.begin(), actions_.end(),
                                     [call](const Action& next) { return next.call == call; });
    if (action != actions_.end()) {
        void (*const run)() = action->run;
        actions_.erase(action);  // before it runs, since the action may come here again
        run();
    }
    std::optional<int> error;
    for (auto fault = faults_.begin(); fault != faults_.end();) {
        if (fault->call == call && --fault->left == 0) {
            if (!error) error = fault->error;
            fault = faults_.erase(fault);
        } else {
            ++fault;
        }
    }
    return error;
}

std::size_t CallFaults::ReadSize(std::size_t size) {
    for (auto cut = shortReads_.begin(); cut != shortReads_.end();) {
        if (--cut->left == 0) {
            size = std::min(size, cut->bytes);
            cut = shortReads_.erase(cut);
        } else {
            ++cut;
        }
    }
    return size;
}

bool CallFaults::AllocationFails() {
    bool fails = false;
    for (auto left = allocations_.begin(); left != allocations_.end();) {
        if (--*left == 0) {
            fails = true;
            left = allocations_.erase(left);
        } else {
            ++left;
        }
    }
    return fails;
}

}  // namespace sim
