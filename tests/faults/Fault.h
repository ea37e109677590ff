// SPDX-License-Identifier: MIT
//
// One way in which one kind of call goes wrong, for all calls by which the library touches the
// machine.
#ifndef TALVANE_TESTS_FAULTS_FAULT_H
#define TALVANE_TESTS_FAULTS_FAULT_H

#include <string>
#include <string_view>
#include <vector>

#include "simulator/SimulatedServer.h"
#include "simulator/machine/CallFaults.h"

namespace faults {

// A kind of call, and what may go wrong with it.
struct Call {
    std::string_view name;
    std::vector<int> values;      // errnos; for kShortRead the bytes that arrive
    bool endsWhenForEver = true;  // whether the library ends when every such call fails
};

inline constexpr std::string_view kShortRead = "short read";
inline constexpr std::string_view kAllocation = "allocation";

const std::vector<Call>& Calls();

struct Fault {
    std::string_view call;
    int nth;  // the call that it strikes, counted from 1
    sim::Strikes strikes;
    int value;

    bool Is(std::string_view name) const { return call == name; }
    bool IsForEver() const { return strikes == sim::Strikes::kForEver; }
    std::string Text() const;  // "read 2 for ever: Input/output error"
};

// From now on the fault counts calls.
void Set(sim::SimulatedServer& server, const Fault& fault);

// No fault is set any more; the access log is empty.
void Clear(sim::SimulatedServer& server);

// How often the call has been made since Clear.
class Uses {
public:
    explicit Uses(sim::SimulatedServer& server) : server_(server) {}
    void Clear() { allocations_ = server_.Allocations(); }
    int Of(std::string_view call) const;

private:
    sim::SimulatedServer& server_;
    std::size_t allocations_ = 0;
};

}  // namespace faults

#endif
