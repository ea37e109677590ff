// SPDX-License-Identifier: MIT
//
// The statement about requests that are not answered as they should be: fault.

#include "simulator/base/CallText.h"
#include "simulator/description/MachineDraft.h"

namespace sim {
namespace {

constexpr std::uint32_t kMostRequests = 1000000;
constexpr std::uint32_t kLongestResponse = 256;

// What the driver's call can fail with.
constexpr int kErrors[] = {EIO, EBUSY, EAGAIN, EINTR, ENODEV, ETIMEDOUT};

unsigned ErrorNamed(MachineLine& line) {
    if (!line.More()) return EIO;
    const std::string name = line.Word("the error");
    std::string known;
    for (const int error : kErrors) {
        if (ErrorName(error) == name) return static_cast<unsigned>(error);
        known += " " + ErrorName(error);
    }
    line.Fail("the error \"" + name + "\" is none of" + known);
}

void ReadKind(MachineLine& line, BmcFault& fault) {
    const std::string kind = line.Word("the fault");
    if (kind == "refused") {
        fault.kind = BmcFault::Kind::kRefused;
        fault.value = line.Byte("the completion code");
        if (fault.value == 0) line.Fail("the completion code 0 refuses nothing");
    } else if (kind == "short") {
        fault.kind = BmcFault::Kind::kCut;
        fault.value = line.Number("the number of bytes", kLongestResponse);
    } else if (kind == "empty") {
        fault.kind = BmcFault::Kind::kCut;
    } else if (kind == "stale") {
        fault.kind = BmcFault::Kind::kStale;
    } else if (kind == "fails") {
        fault.kind = BmcFault::Kind::kFails;
        fault.value = ErrorNamed(line);
    } else {
        line.Fail("the fault \"" + kind + "\" is none of refused, short, empty, stale, fails");
    }
}

void ReadFault(MachineLine& line, MachineDraft& draft) {
    BmcDraft& bmc = ControllerOf(line, draft);
    const std::string command = line.Text("the command");
    BmcFault fault;
    if (!line.TakeIf("every")) {
        fault.nth = line.Number("the request's number", kMostRequests);
        if (fault.nth == 0) line.Fail("requests count from 1");
    }
    ReadKind(line, fault);
    bmc.faults.push_back({command, fault, line});
}

constexpr MachineStatement kStatements[] = {{"fault", ReadFault}};

}  // namespace

std::span<const MachineStatement> BmcFaultStatements() {
    return kStatements;
}

}  // namespace sim
