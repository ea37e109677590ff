// SPDX-License-Identifier: MIT
//
// Each fault counts the calls it is meant for. One that strikes once is dropped afterwards.

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

void CallFaults::Fail(std::string_view call, int nth, int error, Strikes strikes) {
    if (!Contains(kCalls, call))
        throw std::invalid_argument("there is no call \"" + std::string(call) + "\" that can fail");
    RequireCount(nth);
    faults_.push_back({std::string(call), Countdown(nth, strikes), error});
}

void CallFaults::ShortRead(int nth, std::size_t bytes, Strikes strikes) {
    RequireCount(nth);
    shortReads_.push_back({Countdown(nth, strikes), bytes});
}

void CallFaults::FailAllocation(int nth, Strikes strikes) {
    RequireCount(nth);
    allocations_.emplace_back(nth, strikes);
}

void CallFaults::Clear() {
    faults_.clear();
    shortReads_.clear();
    allocations_.clear();
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
    for (Fault& fault : faults_)
        if (fault.call == call && fault.countdown.StrikesNow() && !error) error = fault.error;
    faults_.remove_if([](const Fault& fault) { return fault.countdown.IsOver(); });
    return error;
}

std::size_t CallFaults::ReadSize(std::size_t size) {
    for (CutRead& cut : shortReads_)
        if (cut.countdown.StrikesNow()) size = std::min(size, cut.bytes);
    shortReads_.remove_if([](const CutRead& cut) { return cut.countdown.IsOver(); });
    return size;
}

bool CallFaults::AllocationFails() {
    bool fails = false;
    for (Countdown& left : allocations_)
        if (left.StrikesNow()) fails = true;
    allocations_.remove_if([](const Countdown& left) { return left.IsOver(); });
    if (fails) ++refusedAllocations_;
    return fails;
}

}  // namespace sim
