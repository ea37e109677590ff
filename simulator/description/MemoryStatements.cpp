// SPDX-License-Identifier: MIT
//
// The statements about physical memory: memory, pages.

#include <limits>

#include "simulator/description/MachineDraft.h"

namespace sim {
namespace {

constexpr std::uint64_t kMostMemory = std::uint64_t{4} << 30;

void readMemory(MachineLine& line, MachineDraft& draft) {
    const std::uint64_t size = line.size("the memory size", kMostMemory);
    if (draft.memorySize)
        line.fail("the memory size was given in line " + std::to_string(draft.memorySize->second));
    draft.memorySize.emplace(size, line.number());
}

void readPages(MachineLine& line, MachineDraft& draft) {
    const std::uint32_t address =
        line.number("the address", std::numeric_limits<std::uint32_t>::max());
    Bytes bytes = draft.capture(line);
    draft.pieces.push_back({address, std::move(bytes), line});
}

constexpr MachineStatement kStatements[] = {{"memory", readMemory}, {"pages", readPages}};

}  // namespace

std::span<const MachineStatement> memoryStatements() {
    return kStatements;
}

}  // namespace sim
