// SPDX-License-Identifier: MIT
//
// Options by getopt_long, up to the separator; the rest is the program's.

#include "simulator/SimulatorCommandLine.h"

#include <getopt.h>

#include <algorithm>
#include <string_view>

namespace sim {

const char* const kHelpText =
    "Runs a 32-bit program on a simulated server.\n"
    "Usage: talvane-sim MACHINE [OPTION...] -- PROGRAM [ARGUMENT...]\n"
    "\n"
    "Positionals:\n"
    "  MACHINE REQUIRED  folder that describes the server, a capture, or the name of an installed "
    "one\n"
    "\n"
    "Options:\n"
    "  -h,--help         Print this help message and exit\n"
    "  --version         Display program version information and exit\n"
    "  --log FILE        file to write every access to\n"
    "  --control FILE    file that changes sensors while the program runs\n"
    "  --real-time       let sleeps take real time; by default the machine's clock jumps\n";

namespace {

constexpr int kWord = 1;  // what getopt_long returns for a word that is no option
enum : int { kHelp = 'h', kVersion = 2, kLog, kControl, kRealTime };

constexpr option kLongOptions[] = {{"help", no_argument, nullptr, kHelp},
                                   {"version", no_argument, nullptr, kVersion},
                                   {"log", required_argument, nullptr, kLog},
                                   {"control", required_argument, nullptr, kControl},
                                   {"real-time", no_argument, nullptr, kRealTime},
                                   {}};

// Keeps the file of an option that names one.
void TakeFile(const char* name, std::string& file) {
    if (!file.empty()) throw UsageError(std::string(name) + " is given twice");
    if (*optarg == '\0') throw UsageError(std::string(name) + ": 1 required FILE missing");
    file = optarg;
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
void ParseOwnWords(int argc, char* const argv[], CommandLine& line) {
    std::vector<std::string> extras;
    opterr = 0;  // the messages are our own
    // The minus hands every word that is no option over where it stands.
    for (int next = 0; (next = getopt_long(argc, argv, "-:h", kLongOptions, nullptr)) != -1;) {
        switch (next) {
            case kHelp:
                line.request = CommandLine::Request::kHelp;
                return;
            case kVersion:
                line.request = CommandLine::Request::kVersion;
                return;
            case kLog:
                TakeFile("--log", line.options.logFile);
                break;
            case kControl:
                TakeFile("--control", line.options.controlFile);
                break;
            case kRealTime:
                line.options.realTime = true;
                break;
            case kWord:
                if (*optarg == '\0') throw UsageError("MACHINE: an empty name names no server");
                if (line.machine.empty())
                    line.machine = optarg;
                else
                    extras.emplace_back(optarg);
                break;
            case ':':
                throw UsageError(std::string(argv[optind - 1]) + ": 1 required FILE missing");
            default:
                extras.push_back(UnknownOption(argv));
                break;
        }
    }
    if (!extras.empty()) RefuseExtras(extras);
    if (line.machine.empty()) throw UsageError("MACHINE is required");
    if (line.command.empty()) throw UsageError("-- PROGRAM is required");
}

}  // namespace

CommandLine ParseCommandLine(int argc, char* const argv[]) {
    char* const* const end = argv + argc;
    char* const* const separator = std::find(argv, end, std::string_view("--"));
    CommandLine line;
    line.command.assign(separator != end ? separator + 1 : end, end);
    ParseOwnWords(static_cast<int>(separator - argv), argv, line);
    return line;
}

}  // namespace sim
