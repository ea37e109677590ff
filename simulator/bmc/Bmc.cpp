// SPDX-License-Identifier: MIT
//
// How a request comes to its answer, and how it is logged.

#include "simulator/bmc/Bmc.h"

#include <algorithm>
#include <cstdio>

#include "simulator/base/AccessLog.h"
#include "simulator/base/CallText.h"
#include "simulator/bmc/BmcReply.h"

namespace sim {
namespace {

std::string hexBytes(const Bytes& bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        char digits[4];
        std::snprintf(digits, sizeof digits, " %02X", byte);
        text += digits;
    }
    return text;
}

}  // namespace

std::string BmcRequest::text() const {
    const Bmc::Command* const row = Bmc::find(netFn, command);
    if (row != nullptr) return row->name + hexBytes(data);
    return "Command" + hexBytes({netFn, command}) + " with" + hexBytes(data);
}

Bmc::Bmc(Clock clock, AccessLog& log) : clock_(std::move(clock)), log_(log) {}

Bmc::Reply Bmc::execute(const BmcRequest& request) {
    const Command* const row = find(request.netFn, request.command);
    if (row == nullptr) return {kUnknownCommand, {}};
    if (request.data.size() < row->leastData) return {kWrongLength, {}};
    return (this->*row->run)(request.data);
}

void Bmc::carryOut(BmcRequest& request) {
    Reply reply = execute(request);
    request.completion = reply.completion;
    request.response = std::move(reply.data);
}

void Bmc::answer(BmcRequest& request) {
    const std::optional<Bytes> given = interceptor_ ? interceptor_(request) : std::nullopt;
    const std::optional<BmcFault> fault = given ? std::nullopt : strike(request);
    if (given)
        request.response = *given;
    else if (fault)
        answerWith(*fault, request);
    else
        carryOut(request);
    log_.add({"bmc", request.asked(), request.answered()});
    log_.add({"ipmi", request.text(),
              request.error != 0
                  ? "-1 " + errorName(request.error)
                  : hexBytes({request.completion}).substr(1) + hexBytes(request.response)});
    requests_.push_back(request);
}

std::vector<std::string> Bmc::requestTexts() const {
    std::vector<std::string> texts;
    for (const BmcRequest& request : requests_) texts.push_back(request.text());
    return texts;
}

std::size_t Bmc::count(std::uint8_t netFn, std::uint8_t command) const {
    return static_cast<std::size_t>(
        std::count_if(requests_.begin(), requests_.end(), [=](const BmcRequest& request) {
            return request.netFn == netFn && request.command == command;
        }));
}

}  // namespace sim
