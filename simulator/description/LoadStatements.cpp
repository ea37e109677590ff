// SPDX-License-Identifier: MIT
//
// The statements about load: cpu, stat, free.

#include <set>

#include "simulator/description/MachineDraft.h"

namespace sim {
namespace {

constexpr std::uint32_t kMostRate = 1000000;
constexpr std::uint32_t kMost = 0xFFFFFFFF;

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
    const std::uint32_t cpu = line.Number("the processor", 255);
    ProcStat::Rates rates{.idle = 0};
    std::set<std::string> seen;
    do {
        const std::string option = line.Word("the counter");
        std::uint32_t* const rate = RateNamed(option, rates);
        if (rate == nullptr) line.Fail("\"" + option + "\" is none of user, nice, system, idle");
        if (!seen.insert(option).second) line.Fail("\"" + option + "\" is given twice");
        *rate = line.Number("the ticks a second", kMostRate);
    } while (line.More());
    if (!draft.load.cpus.emplace(cpu, rates).second)
        line.Fail("the processor " + std::to_string(cpu) + " was given already");
}

void ReadStat(MachineLine& line, MachineDraft& draft) {
    std::chrono::seconds from{0};
    if (line.TakeIf("at")) from = std::chrono::seconds(line.Number("the second", kMost));
    if (!draft.load.stat.emplace(from, CaptureText(line, draft)).second)
        line.Fail("the text from second " + std::to_string(from.count()) + " on was given already");
}

void ReadFree(MachineLine& line, MachineDraft& draft) {
    if (draft.load.free) line.Fail("what free prints was given already");
    FreeProgram& program = draft.load.free.emplace();
    if (line.TakeIf("total")) {
        const std::uint32_t total = line.Number("the memory in KiB", kMost);
        line.Expect("used");
        program.SetMemory(total, line.Number("the used memory", total));
    } else {
        std::string text = CaptureText(line, draft);
        if (text.back() != '\n') text += '\n';
        program.SetText(std::move(text));
    }
}

constexpr MachineStatement kStatements[] = {
    {"cpu", ReadCpu}, {"stat", ReadStat}, {"free", ReadFree}};

}  // namespace

std::span<const MachineStatement> LoadStatements() {
    return kStatements;
}

}  // namespace sim
