// SPDX-License-Identifier: MIT
//
// The statements about the load of a machine: cpu, stat, free.

#include <set>

#include "simulator/description/MachineDraft.h"

namespace sim {
namespace {

constexpr std::uint32_t kMaxRate = 1000000;
constexpr std::uint32_t kMaxCount = 0xFFFFFFFF;

std::string CaptureText(MachineLine& line, const MachineDraft& draft) {
    const Bytes bytes = draft.Capture(line);
    return std::string(bytes.begin(), bytes.end());
}

std::uint32_t* RateNamed(const std::string& name, ProcStat::Rates& rates) {
    if (name == "user") return &rates.user;
    if (name == "nice") return &rates.nice;
    if (name == "system") return &rates.system;
    if (name == "idle") return &rates.idle;
    return nullptr;
}

void ReadCpu(MachineLine& line, MachineDraft& draft) {
    const std::uint32_t cpu = line.TakeNumber("the processor", 255);
    ProcStat::Rates rates{.idle = 0};
    std::set<std::string> seen;
    do {
        const std::string option = line.TakeWord("the counter");
        std::uint32_t* const rate = RateNamed(option, rates);
        if (rate == nullptr) line.Fail("\"" + option + "\" is none of user, nice, system, idle");
        if (!seen.insert(option).second) line.Fail("\"" + option + "\" is given twice");
        *rate = line.TakeNumber("the ticks a second", kMaxRate);
    } while (line.HasMore());
    if (!draft.load.cpus.emplace(cpu, rates).second)
        line.Fail("the processor " + std::to_string(cpu) + " was given already");
}

void ReadStat(MachineLine& line, MachineDraft& draft) {
    if (line.TakeIf("continues")) {
        draft.load.statContinues = true;
        return;
    }
    std::chrono::seconds from{0};
    if (line.TakeIf("at")) from = std::chrono::seconds(line.TakeNumber("the second", kMaxCount));
    if (!draft.load.stat.emplace(from, CaptureText(line, draft)).second)
        line.Fail("the text from second " + std::to_string(from.count()) + " on was given already");
}

void ReadFree(MachineLine& line, MachineDraft& draft) {
    if (draft.load.free) line.Fail("what free prints was given already");
    FreeProgram& program = draft.load.free.emplace();
    if (line.TakeIf("total")) {
        const std::uint32_t total = line.TakeNumber("the memory in KiB", kMaxCount);
        line.ExpectWord("used");
        program.SetMemory(total, line.TakeNumber("the used memory", total));
    } else {
        std::string text = CaptureText(line, draft);
        if (text.find('\0') != std::string::npos) line.Fail("what free prints has no byte 00");
        if (text.back() != '\n') text += '\n';
        program.SetText(std::move(text));
    }
}

constexpr MachineStatement kLoadStatements[] = {
    {"cpu", ReadCpu}, {"stat", ReadStat}, {"free", ReadFree}};

}  // namespace

std::span<const MachineStatement> LoadStatements() {
    return kLoadStatements;
}

}  // namespace sim
