// SPDX-License-Identifier: MIT
//
// Options by getopt_long, up to the separator; the rest is the program's.

#include "simulator/LauncherProgram.h"

#include <getopt.h>

#include <algorithm>
#include <cstdio>
#include <string_view>

namespace sim {
namespace {

constexpr int kFailure = 2;  // a usage error, or the machine or the program cannot be used

constexpr int kWord = 1;  // what getopt_long returns for a word that is no option
constexpr int kHelpOption = 'h';
constexpr int kVersionOption = 2;
constexpr int kFirstOfProgram = 3;  // the program's own options, in their order

enum class Request { kRun, kHelp, kVersion };

std::vector<option> LongOptions(const LauncherProgram& program) {
    std::vector<option> options{{"help", no_argument, nullptr, kHelpOption},
                                {"version", no_argument, nullptr, kVersionOption}};
    int code = kFirstOfProgram;
    for (const LauncherOption& own : program.options)
        options.push_back({own.name, own.value ? required_argument : no_argument, nullptr, code++});
    options.emplace_back();
    return options;
}

[[noreturn]] void RefuseMissingValue(const LauncherOption& option) {
    throw UsageError(std::string("--") + option.name + ": 1 required " + option.valueName +
                     " missing");
}

void Take(const LauncherOption& option) {
    if (!option.value) {
        *option.isGiven = true;
        return;
    }
    if (!option.value->empty())
        throw UsageError(std::string("--") + option.name + " is given twice");
    if (*optarg == '\0') RefuseMissingValue(option);
    *option.value = optarg;
}

// An unknown letter can stand in a word with others, which getopt_long has not finished.
std::string UnknownOption(char* const argv[]) {
    return optopt > ' ' ? std::string("-") + static_cast<char>(optopt) : argv[optind - 1];
}

[[noreturn]] void RefuseExtras(const std::vector<std::string>& extras) {
    std::string text = extras.size() == 1 ? "The following argument was not expected:"
                                          : "The following arguments were not expected:";
    for (const std::string& extra : extras) text += ' ' + extra;
    throw UsageError(text);
}

// The words and options before the separator. What was not expected is refused at the end, when it
// is clear that no help is asked for.
Request ParseOwnWords(const LauncherProgram& program, int argc, char* const argv[]) {
    const std::vector<option> options = LongOptions(program);
    std::vector<std::string> extras;
    opterr = 0;  // the messages are our own
    // The minus hands every word that is no option over where it stands.
    for (int next = 0; (next = getopt_long(argc, argv, "-:h", options.data(), nullptr)) != -1;) {
        switch (next) {
            case kHelpOption:
                return Request::kHelp;
            case kVersionOption:
                return Request::kVersion;
            case kWord:
                if (!program.machine || !program.machine->empty()) {
                    extras.emplace_back(optarg);
                    break;
                }
                if (*optarg == '\0') throw UsageError("MACHINE: an empty name names no server");
                *program.machine = optarg;
                break;
            case ':':
                RefuseMissingValue(program.options.at(optopt - kFirstOfProgram));
            case '?':
                extras.push_back(UnknownOption(argv));
                break;
            default:
                Take(program.options.at(next - kFirstOfProgram));
                break;
        }
    }
    if (!extras.empty()) RefuseExtras(extras);
    if (program.machine && program.machine->empty()) throw UsageError("MACHINE is required");
    return Request::kRun;
}

void Complain(const LauncherProgram& program, const std::string& problem) {
    (void)std::fprintf(stderr, "%s: %s\n", program.name, problem.c_str());
}

int Print(const LauncherProgram& program, const std::string& text) {
    if (std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0) return 0;
    Complain(program, "cannot write to standard output");
    return kFailure;
}

int Answer(const LauncherProgram& program, int argc, char* argv[]) {
    char** const end = argv + argc;
    char** const separator = std::find(argv, end, std::string_view("--"));
    const Request request = ParseOwnWords(program, static_cast<int>(separator - argv), argv);
    if (request == Request::kHelp) return Print(program, program.helpText);
    if (request == Request::kVersion)
        return Print(program, program.name + std::string(" " TALVANE_VERSION "\n"));
    if (end - separator < 2) throw UsageError("-- PROGRAM is required");
    return program.run(separator + 1);
}

}  // namespace

int RunLauncher(const LauncherProgram& program, int argc, char* argv[]) {
    try {
        return Answer(program, argc, argv);
    } catch (const UsageError& error) {
        Complain(program,
                 error.what() + std::string("\nRun ") + program.name + " --help for its options.");
    } catch (const std::exception& error) {
        Complain(program, error.what());
    }
    return kFailure;
}

}  // namespace sim
