// SPDX-License-Identifier: MIT
//
// The statements about requests that the controller does not answer as it should, or as the other
// statements say: fault, answer.

#include "simulator/base/CallText.h"
#include "simulator/description/MachineDraft.h"

namespace sim {
namespace {

constexpr std::uint32_t kMaxRequests = 1000000;
constexpr std::uint32_t kMaxResponse = 256;

// The errors with which the driver's call can fail.
constexpr int kRequestErrors[] = {EIO, EBUSY, EAGAIN, EINTR, ENODEV, ETIMEDOUT};

unsigned TakeRequestError(MachineLine& line) {
    if (!line.HasMore()) return EIO;
    const std::string name = line.TakeWord("the error");
    std::string known;
    for (const int error : kRequestErrors) {
        if (ErrorName(error) == name) return static_cast<unsigned>(error);
        known += " " + ErrorName(error);
    }
    line.Fail("the error \"" + name + "\" is none of" + known);
}

void ReadFaultKind(MachineLine& line, BmcFault& fault) {
    const std::string kind = line.TakeWord("the fault");
    if (kind == "refused") {
        fault.kind = BmcFault::Kind::kRefused;
        fault.value = line.TakeByte("the completion code");
        if (fault.value == 0) line.Fail("the completion code 0 refuses nothing");
    } else if (kind == "short") {
        fault.kind = BmcFault::Kind::kCut;
        fault.value = line.TakeNumber("the number of bytes", kMaxResponse);
    } else if (kind == "empty") {
        fault.kind = BmcFault::Kind::kCut;
    } else if (kind == "stale") {
        fault.kind = BmcFault::Kind::kStale;
    } else if (kind == "fails") {
        fault.kind = BmcFault::Kind::kFails;
        fault.value = TakeRequestError(line);
    } else {
        line.Fail("the fault \"" + kind + "\" is none of refused, short, empty, stale, fails");
    }
}

void ReadFault(MachineLine& line, MachineDraft& draft) {
    BmcDraft& bmc = ControllerOf(line, draft);
    const std::string command = line.TakeText("the command");
    BmcFault fault;
    if (!line.TakeIf("every")) {
        fault.nth = line.TakeNumber("the request's number", kMaxRequests);
        if (fault.nth == 0) line.Fail("requests count from 1");
    }
    ReadFaultKind(line, fault);
    bmc.faults.push_back({command, fault, line});
}

// As in the log: the bytes of the request, an arrow, the completion code and the other bytes.
void ReadAnswer(MachineLine& line, MachineDraft& draft) {
    constexpr std::uint8_t kMaxLun = 3;
    AnswerDraft answer{line.TakeText("the command"), 0, {}, {}, line};
    if (line.TakeIf("lun")) answer.lun = line.TakeByte("the LUN", kMaxLun);
    while (!line.TakeIf("->")) answer.data.push_back(line.TakeHexByte("the byte or \"->\""));
    do {
        answer.answer.push_back(line.TakeHexByte("the byte"));
    } while (line.HasMore());
    if (answer.answer.size() > 1 + kMaxResponse) line.Fail("an answer has at most 256 bytes");
    ControllerOf(line, draft).answers.push_back(std::move(answer));
}

constexpr MachineStatement kBmcFaultStatements[] = {{"fault", ReadFault}, {"answer", ReadAnswer}};

}  // namespace

std::span<const MachineStatement> BmcFaultStatements() {
    return kBmcFaultStatements;
}

}  // namespace sim
