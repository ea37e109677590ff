// SPDX-License-Identifier: MIT
//
// Finds out by the library itself what it can read directly.

#include "tools/Ways.h"

#include <dlfcn.h>
#include <sys/io.h>

#include <algorithm>
#include <cstdio>
#include <functional>

#include "Talvane.h"
#include "simulator/Launcher.h"
#include "tools/library/ChildProcess.h"
#include "tools/library/IdeDrives.h"
#include "tools/records/System.h"

namespace tool {
namespace {

bool PortsAreGranted() {
    if (iopl(3) != 0) return false;
    (void)iopl(0);  // result not used: lowering is always allowed
    return true;
}

// A folder /proc/ide without drives does not mean that there are no disks.
bool HasIdeDrives() {
    const auto drives = ReadDrives();
    return drives && !drives->empty();
}

struct DirectArea {
    const char* area;
    const char* from;
    bool (*isGranted)();
};

constexpr DirectArea kDirectAreas[] = {
    {sim::kSmbiosArea, "/dev/mem", [] { return ReadSystem().has_value(); }},
    {sim::kBmcArea, "/dev/ipmi", [] { return IsIpmiSupport() != 0; }},
    {sim::kPciArea, "ports 0xCF8 and 0xCFC", PortsAreGranted},
    {sim::kDrivesArea, "/proc/ide", HasIdeDrives},
    {sim::kLoadArea, "/proc/stat", [] { return true; }},
};

// In a child process, since the library keeps what it has read, and without its messages.
bool IsGranted(const DirectArea& area) {
    struct Granted {
        bool value;
    };
    const auto answer = FillInChildProcess<Granted>([&](Granted& granted) {
        if (std::freopen("/dev/null", "w", stderr) != nullptr) granted.value = area.isGranted();
    });
    return answer && answer->record.value;
}

bool IsAmong(const std::vector<std::string>& areas, const std::string& area) {
    return std::find(areas.begin(), areas.end(), area) != areas.end();
}

// What the library that is preloaded to this process says: null when there is none.
const char* WaysOfThisProcess() {
    using Function = const char*();
    auto* const function = reinterpret_cast<Function*>(dlsym(RTLD_DEFAULT, "TalvaneWays"));
    return function != nullptr ? function() : nullptr;
}

bool ChangesBmc(const Options& options) {
    const auto changes = Changes();
    return std::any_of(changes.begin(), changes.end(),
                       [&](const Change& change) { return options.command == change.name; });
}

[[noreturn]] void Restart(const Options& options, const std::vector<std::string>& direct) {
    std::vector<std::string> line{std::filesystem::read_symlink("/proc/self/exe")};
    line.insert(line.end(), options.arguments.begin(), options.arguments.end());
    std::vector<char*> argv;
    for (std::string& argument : line) argv.push_back(argument.data());
    argv.push_back(nullptr);
    sim::RunOnHost(argv.data(),
                   {.root = options.root.empty() ? "/" : options.root,
                    .direct = {direct.begin(), direct.end()},
                    .mayChangeBmc = ChangesBmc(options)},
                   {.realTime = true});
}

}  // namespace

std::vector<std::string> AreasOf(const Options& options) {
    if (options.command == kDoctor) return {};
    if (options.command == kHealth || ChangesBmc(options)) return {sim::kBmcArea};
    for (const Command& command : Commands())
        if (options.command == command.name) return {command.source->area};
    return {sim::kAreas.begin(), sim::kAreas.end()};
}

std::vector<Way> WaysOrRestart(const Options& options) {
    const std::vector<std::string> areas = AreasOf(options);
    std::vector<Way> ways;
    if (const char* const text = WaysOfThisProcess()) {
        for (const sim::AreaWay& way : sim::DecodeWays(text))
            if (IsAmong(areas, way.area))
                ways.push_back({way.area, way.isDirect, way.from, way.note, way.problem,
                                way.unopened, way.whyUnopened});
        return ways;
    }
    std::vector<std::string> direct;
    for (const DirectArea& area : kDirectAreas) {
        if (!IsAmong(areas, area.area)) continue;
        if (options.reading == Reading::kDirect ||
            (options.reading == Reading::kChoose && IsGranted(area)))
            direct.emplace_back(area.area);
        ways.push_back({area.area, true, area.from, "", ""});
    }
    if (direct.size() < areas.size()) Restart(options, direct);
    return ways;
}

}  // namespace tool
