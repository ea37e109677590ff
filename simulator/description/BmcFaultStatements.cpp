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

unsigned errorNamed(MachineLine& line) {
    if (!line.more()) return EIO;
    const std::string name = line.word("the error");
    std::string known;
    for (const int error : kErrors) {
        if (errorName(error) == name) return static_cast<unsigned>(error);
        known += " " + errorName(error);
    }
    line.fail("the error \"" + name + "\" is none of" + known);
}

void readKind(MachineLine& line, BmcFault& fault) {
    const std::string kind = line.word("the fault");
    if (kind == "refused") {
        fault.kind = BmcFault::Kind::refused;
        fault.value = line.byte("the completion code");
        if (fault.value == 0) line.fail("the completion code 0 refuses nothing");
    } else if (kind == "short") {
        fault.kind = BmcFault::Kind::cut;
        fault.value = line.number("the number of bytes", kLongestResponse);
    } else if (kind == "empty") {
        fault.kind = BmcFault::Kind::cut;
    } else if (kind == "stale") {
        fault.kind = BmcFault::Kind::stale;
    } else if (kind == "fails") {
        fault.kind = BmcFault::Kind::fails;
        fault.value = errorNamed(line);
    } else {
        line.fail("the fault \"" + kind + "\" is none of refused, short, empty, stale, fails");
    }
}

void readFault(MachineLine& line, MachineDraft& draft) {
    BmcDraft& bmc = controllerOf(line, draft);
    const std::string command = line.text("the command");
    BmcFault fault;
    if (!line.takeIf("every")) {
        fault.nth = line.number("the request's number", kMostRequests);
        if (fault.nth == 0) line.fail("requests count from 1");
    }
    readKind(line, fault);
    bmc.faults.push_back({command, fault, line});
}

constexpr MachineStatement kStatements[] = {{"fault", readFault}};

}  // namespace

std::span<const MachineStatement> bmcFaultStatements() {
    return kStatements;
}

}  // namespace sim
