// SPDX-License-Identifier: MIT
//
// Collects, counts and lists accesses.

#include "simulator/base/AccessLog.h"

#include <algorithm>
#include <ostream>

#include "simulator/base/CallText.h"

namespace sim {

Access PortTransfer::Description() const {
    const std::string place = Hex(port) + " " + std::to_string(width);
    if (direction == Direction::kIn) return {"in", place, Hex(value)};
    return {"out", place + " " + Hex(value), "ok"};
}

void AccessLog::Add(Access access) {
    if (copy_ != nullptr) Copy(access);
    entries_.emplace_back(std::make_unique<const Access>(std::move(access)));
}

void AccessLog::Add(const PortTransfer& access) {
    if (copy_ != nullptr) Copy(access.Description());
    entries_.emplace_back(access);
}

void AccessLog::Copy(const Access& access) const {
    *copy_ << access.Text() << std::endl;  // flushed: the process may end here
}

std::size_t AccessLog::Count(std::string_view call) const {
    const auto isCall = [call](const Entry& entry) {
        const auto* const port = std::get_if<PortTransfer>(&entry);
        return (port != nullptr ? port->Call() : std::get<Described>(entry)->call) == call;
    };
    return static_cast<std::size_t>(std::count_if(entries_.begin(), entries_.end(), isCall));
}

std::vector<Access> AccessLog::Accesses() const {
    std::vector<Access> accesses;
    for (const Entry& entry : entries_) {
        const auto* const port = std::get_if<PortTransfer>(&entry);
        accesses.push_back(port != nullptr ? port->Description() : *std::get<Described>(entry));
    }
    return accesses;
}

std::vector<Access> AccessLog::Calls() const {
    std::vector<Access> calls;
    for (const Entry& entry : entries_)
        if (const auto* const call = std::get_if<Described>(&entry)) calls.push_back(**call);
    return calls;
}

std::vector<std::string> AccessLog::Lines() const {
    std::vector<std::string> texts;
    for (const Access& access : Accesses()) texts.push_back(access.Text());
    return texts;
}

}  // namespace sim
