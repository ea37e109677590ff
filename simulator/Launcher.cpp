// SPDX-License-Identifier: MIT
//
// Checks everything before the process is replaced, since nobody could report a mistake after that.

#include "simulator/Launcher.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <map>
#include <stdexcept>
#include <system_error>

#include "simulator/Environment.h"
#include "simulator/ProgramFile.h"
#include "simulator/description/MachineFile.h"
#include "simulator/description/RegularFile.h"
#include "simulator/machine/Machine.h"

namespace sim {
namespace {

namespace fs = std::filesystem;

// Where the library can be, relative to the folder of the running program: as installed, beside the
// program, and as built.
constexpr std::array kPreloadFolders = {TALVANE_PRELOAD_FOLDER, ".", "../simulator"};

fs::path FolderOfThisProgram() {
    return fs::read_symlink("/proc/self/exe").parent_path();
}

// A bare name that is no folder here stands for a machine that is installed with the programs.
fs::path FindMachine(const fs::path& machine) {
    if (fs::exists(machine) || machine.has_parent_path()) return machine;
    const fs::path installed = FolderOfThisProgram() / TALVANE_MACHINES_FOLDER / machine;
    return fs::exists(installed) ? installed.lexically_normal() : machine;
}

fs::path FindPreloadLibrary() {
    const fs::path here = FolderOfThisProgram();
    for (const char* const folder : kPreloadFolders) {
        const fs::path candidate = (here / folder / kPreloadLibrary).lexically_normal();
        if (fs::exists(candidate)) return candidate;
    }
    throw std::runtime_error(std::string(kPreloadLibrary) + " is not where " + here.string() +
                             " expects it");
}

void SetVariable(const char* name, const std::string& value) {
    if (setenv(name, value.c_str(), 1) != 0)
        throw std::system_error(errno, std::generic_category(), name);
}

// The dynamic linker takes a list separated by blanks or colons, and knows no escape.
void AddPreload(const std::string& library) {
    if (library.find_first_of(": \t\n") != std::string::npos)
        throw std::runtime_error(library +
                                 ": cannot be preloaded from a path with blanks or colons");
    const char* const others = std::getenv(kPreloadVariable);
    SetVariable(kPreloadVariable, others != nullptr ? library + ":" + others : library);
#ifdef __SANITIZE_ADDRESS__
    // AddressSanitizer insists on coming first in the list. Here it need not: every function that
    // the preload library interposes passes calls on to it.
    const char* const options = std::getenv("ASAN_OPTIONS");
    SetVariable("ASAN_OPTIONS",
                std::string(options != nullptr ? options : "") + ":verify_asan_link_order=0");
#endif
}

void RequireWritable(const std::string& file) {
    if (!std::ofstream(file)) throw std::system_error(errno, std::generic_category(), file);
}

// Replaces the process by the program, whose server the variables describe.
[[noreturn]] int Launch(char* const argv[], const LaunchOptions& options,
                        const std::map<const char*, std::string>& variables) {
    const fs::path program = FindProgram(argv[0]);
    RequirePreloadable(program);
    const fs::path library = FindPreloadLibrary();
    if (!options.logFile.empty()) RequireWritable(options.logFile);

    AddPreload(library.string());
    for (const auto& [name, value] : variables) SetVariable(name, value);
    if (!options.logFile.empty()) SetVariable(kLogVariable, fs::absolute(options.logFile).string());
    if (!options.controlFile.empty())
        SetVariable(kControlVariable, fs::absolute(options.controlFile).string());
    if (options.realTime) SetVariable(kRealTimeVariable, "1");
    execv(program.c_str(), argv);
    throw std::system_error(errno, std::generic_category(), program.string());
}

}  // namespace

int RunOnMachine(const fs::path& nameOrFolder, char* const argv[], const LaunchOptions& options) {
    const fs::path machine = FindMachine(nameOrFolder);
    Machine trial;
    LoadMachine(machine, trial);
    if (!options.controlFile.empty() && !trial.HasBmc())
        throw std::runtime_error(machine.string() +
                                 " has no management controller for a control file to change");
    if (IsNotRegular(options.controlFile))
        throw std::runtime_error(options.controlFile + ": " + kNotRegular);
    Launch(argv, options, {{kMachineVariable, fs::absolute(machine).string()}});
}

int RunOnHost(char* const argv[], const HostOptions& host, const LaunchOptions& options) {
    std::string direct;
    for (const std::string& area : host.direct) direct += (direct.empty() ? "" : ",") + area;
    std::map<const char*, std::string> variables = {
        {kHostVariable, fs::absolute(host.root).string()}, {kHostDirectVariable, direct}};
    if (host.mayChangeBmc) variables[kHostChangesVariable] = "1";
    Launch(argv, options, variables);
}

std::vector<AreaWay> SurveyHost(const HostOptions& options) {
    Machine machine;
    return BuildHostMachine(options, machine);
}

}  // namespace sim
