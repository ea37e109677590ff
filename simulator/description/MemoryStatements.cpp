// SPDX-License-Identifier: MIT
//
// The statements about physical memory: memory, pages.

#include <limits>

#include "simulator/description/MachineDraft.h"

namespace sim {
namespace {

constexpr std::uint64_t kMaxMemory = std::uint64_t{4} << 30;

void ReadMemory(MachineLine& line, MachineDraft& draft) {
    const std::uint64_t size = line.TakeSize("the memory size", kMaxMemory);
    if (draft.memorySize)
        line.Fail("the memory size was given in line " + std::to_string(draft.memorySize->second));
    draft.memorySize.emplace(size, line.LineNumber());
}

void ReadPages(MachineLine& line, MachineDraft& draft) {
    const std::uint32_t address =
        line.TakeNumber("the address", std::numeric_limits<std::uint32_t>::max());
    Bytes bytes = draft.Capture(line);
    draft.pieces.push_back({address, std::move(bytes), line});
}

constexpr MachineStatement kMemoryStatements[] = {{"memory", ReadMemory}, {"pages", ReadPages}};

}  // namespace

std::span<const MachineStatement> MemoryStatements() {
    return kMemoryStatements;
}

}  // namespace sim
