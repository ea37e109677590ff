// SPDX-License-Identifier: MIT
//
// Answers a request and logs it.

#include "simulator/bmc/Bmc.h"

#include <algorithm>
#include <cstdio>

#include "simulator/base/AccessLog.h"
#include "simulator/base/CallText.h"
#include "simulator/bmc/BmcReply.h"

namespace sim {
namespace {

std::string HexBytes(const Bytes& bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        char digits[4];
        std::snprintf(digits, sizeof digits, " %02X", byte);
        text += digits;
    }
    return text;
}

}  // namespace

std::string BmcRequest::Text() const {
    const Bmc::Command* const row = Bmc::Find(netFn, command);
    if (row != nullptr) return row->name + HexBytes(data);
    return "Command" + HexBytes({netFn, command}) + " with" + HexBytes(data);
}

Bmc::Bmc(Clock clock, AccessLog& log) : clock_(std::move(clock)), log_(log) {}

void Bmc::SetAnswer(std::string_view command, std::uint8_t lun, const Bytes& data,
                    const Bytes& answer) {
    const Command& row = FindByName(command);
    if (answer.empty()) throw std::invalid_argument("an answer has a completion code");
    answers_[{row.netFn, row.command, lun, data}] = answer;
}

void Bmc::ForgetAnswers(std::uint8_t netFn, std::uint8_t command, const Bytes& data) {
    std::erase_if(answers_, [&](const auto& answer) {
        const Question& asked = answer.first;
        return asked.netFn == netFn && asked.command == command && asked.data == data;
    });
}

Bmc::Reply Bmc::Execute(const BmcRequest& request) {
    const auto given = answers_.find({request.netFn, request.command, request.lun, request.data});
    if (given != answers_.end())
        return {given->second.front(), Bytes(given->second.begin() + 1, given->second.end())};
    const Command* const row = Find(request.netFn, request.command);
    if (row == nullptr) return {kUnknownCommand, {}};
    if (request.data.size() < row->minData) return {kWrongLength, {}};
    return (this->*row->run)(request.data);
}

void Bmc::CarryOut(BmcRequest& request) {
    Reply reply = Execute(request);
    request.completion = reply.completion;
    request.response = std::move(reply.data);
}

void Bmc::Answer(BmcRequest& request) {
    const std::optional<Bytes> given = interceptor_ ? interceptor_(request) : std::nullopt;
    const std::optional<BmcFault> fault = given ? std::nullopt : TakeFaultFor(request);
    if (given)
        request.response = *given;
    else if (fault)
        AnswerWithFault(*fault, request);
    else
        CarryOut(request);
    log_.Add({"bmc", request.DescribeRequest(), request.DescribeResponse()});
    log_.Add({"ipmi", request.Text(),
              request.error != 0
                  ? "-1 " + ErrorName(request.error)
                  : HexBytes({request.completion}).substr(1) + HexBytes(request.response)});
    requests_.push_back(request);
}

std::vector<std::string> Bmc::RequestTexts() const {
    std::vector<std::string> texts;
    for (const BmcRequest& request : requests_) texts.push_back(request.Text());
    return texts;
}

std::size_t Bmc::Count(std::string_view command) const {
    const Command& row = FindByName(command);
    return Count(row.netFn, row.command);
}

std::size_t Bmc::Count(std::uint8_t netFn, std::uint8_t command) const {
    return static_cast<std::size_t>(
        std::count_if(requests_.begin(), requests_.end(), [=](const BmcRequest& request) {
            return request.netFn == netFn && request.command == command;
        }));
}

}  // namespace sim
