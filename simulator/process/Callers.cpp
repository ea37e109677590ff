// SPDX-License-Identifier: MIT
//
// Where the code of the observed libraries lies in memory. It is looked up again after a module was
// loaded or unloaded. The arrays are fixed, since this code runs inside operator new.

#include "simulator/process/Callers.h"

#include <link.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <new>
#include <stdexcept>

namespace sim {
namespace {

constexpr std::size_t kMaxNames = 4;
constexpr std::size_t kMaxRanges = 32;

struct CodeRange {
    std::uintptr_t begin;
    std::uintptr_t end;
    std::size_t name;
};

struct ObservedModules {
    std::array<std::string, kMaxNames> names{"libTalvane.so"};
    std::size_t nameCount = 1;
    std::array<CodeRange, kMaxRanges> ranges{};
    std::size_t rangeCount = 0;
    unsigned long long loads = 0;  // the dynamic linker's counters when `ranges` was filled
    unsigned long long unloads = 0;
    bool current = false;
};

// Created without operator new, which itself asks for it, and never destroyed: the program's last
// destructors still allocate memory and close files.
ObservedModules& SharedModules() {
    alignas(ObservedModules) static std::byte storage[sizeof(ObservedModules)];
    static ObservedModules* const instance = new (storage) ObservedModules;
    return *instance;
}

std::string_view FileName(const char* path) {
    const std::string_view text = path;
    const std::size_t slash = text.rfind('/');
    return slash == std::string_view::npos ? text : text.substr(slash + 1);
}

void AddModule(ObservedModules& known, const dl_phdr_info& module) {
    const std::string_view file = FileName(module.dlpi_name);
    for (std::size_t name = 0; name < known.nameCount; ++name) {
        if (!file.starts_with(known.names[name])) continue;
        for (int i = 0; i < module.dlpi_phnum && known.rangeCount < kMaxRanges; ++i) {
            const ElfW(Phdr)& segment = module.dlpi_phdr[i];
            if (segment.p_type != PT_LOAD || (segment.p_flags & PF_X) == 0) continue;
            const std::uintptr_t begin = module.dlpi_addr + segment.p_vaddr;
            known.ranges[known.rangeCount++] = {begin, begin + segment.p_memsz, name};
        }
        return;
    }
}

// Called with each module. The first one carries the linker's counters: while they are unchanged,
// so are the modules.
int VisitModule(dl_phdr_info* module, std::size_t, void* first) {
    ObservedModules& known = SharedModules();
    bool& isFirst = *static_cast<bool*>(first);
    if (isFirst) {
        isFirst = false;
        if (known.current && known.loads == module->dlpi_adds && known.unloads == module->dlpi_subs)
            return 1;
        known.current = true;
        known.loads = module->dlpi_adds;
        known.unloads = module->dlpi_subs;
        known.rangeCount = 0;
    }
    AddModule(known, *module);
    return 0;
}

}  // namespace

void ObserveLibrary(const std::string& name) {
    ObservedModules& known = SharedModules();
    const auto end = known.names.begin() + known.nameCount;
    if (std::find(known.names.begin(), end, name) != end) return;
    if (known.nameCount == kMaxNames) throw std::length_error("too many observed libraries");
    known.names[known.nameCount++] = name;
    known.current = false;
}

std::string_view ObservedCaller(const void* address) {
    bool first = true;
    (void)dl_iterate_phdr(VisitModule, &first);
    const ObservedModules& known = SharedModules();
    const auto at = reinterpret_cast<std::uintptr_t>(address);
    for (std::size_t i = 0; i < known.rangeCount; ++i)
        if (at >= known.ranges[i].begin && at < known.ranges[i].end)
            return known.names[known.ranges[i].name];
    return {};
}

}  // namespace sim
