// SPDX-License-Identifier: MIT
//
// The statements about load: cpu, stat, free.

#include <set>

#include "simulator/description/MachineDraft.h"

namespace sim {
namespace {

constexpr std::uint32_t kMostRate = 1000000;
constexpr std::uint32_t kMost = 0xFFFFFFFF;

std::string captureText(MachineLine& line, const MachineDraft& draft) {
    const Bytes bytes = draft.capture(line);
    return std::string(bytes.begin(), bytes.end());
}

std::uint32_t* rateNamed(const std::string& name, ProcStat::Rates& rates) {
    if (name == "user") return &rates.user;
    if (name == "nice") return &rates.nice;
    if (name == "system") return &rates.system;
    if (name == "idle") return &rates.idle;
    return nullptr;
}

void readCpu(MachineLine& line, MachineDraft& draft) {
    const std::uint32_t cpu = line.number("the processor", 255);
    ProcStat::Rates rates{.idle = 0};
    std::set<std::string> seen;
    do {
        const std::string option = line.word("the counter");
        std::uint32_t* const rate = rateNamed(option, rates);
        if (rate == nullptr) line.fail("\"" + option + "\" is none of user, nice, system, idle");
        if (!seen.insert(option).second) line.fail("\"" + option + "\" is given twice");
        *rate = line.number("the ticks a second", kMostRate);
    } while (line.more());
    if (!draft.load.cpus.emplace(cpu, rates).second)
        line.fail("the processor " + std::to_string(cpu) + " was given already");
}

void readStat(MachineLine& line, MachineDraft& draft) {
    std::chrono::seconds from{0};
    if (line.takeIf("at")) from = std::chrono::seconds(line.number("the second", kMost));
    if (!draft.load.stat.emplace(from, captureText(line, draft)).second)
        line.fail("the text from second " + std::to_string(from.count()) + " on was given already");
}

void readFree(MachineLine& line, MachineDraft& draft) {
    if (draft.load.free) line.fail("what free prints was given already");
    FreeProgram& program = draft.load.free.emplace();
    if (line.takeIf("total")) {
        const std::uint32_t total = line.number("the memory in KiB", kMost);
        line.expect("used");
        program.setMemory(total, line.number("the used memory", total));
    } else {
        std::string text = captureText(line, draft);
        if (text.back() != '\n') text += '\n';
        program.setText(std::move(text));
    }
}

constexpr MachineStatement kStatements[] = {
    {"cpu", readCpu}, {"stat", readStat}, {"free", readFree}};

}  // namespace

std::span<const MachineStatement> loadStatements() {
    return kStatements;
}

}  // namespace sim
