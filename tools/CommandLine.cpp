// SPDX-License-Identifier: MIT

#include "tools/CommandLine.h"

#include <CLI/CLI.hpp>

#include "tools/Commands.h"

namespace tool {
namespace {

void AddMachineOption(CLI::App& app, Options& options) {
    app.add_option("--machine", options.machine, "Run on the simulated server of this folder")
        ->type_name("DIR")
        ->check(CLI::ExistingDirectory);
}

void AddCommand(CLI::App& app, Options& options, const char* name, const char* help) {
    CLI::App* command = app.add_subcommand(name, help);
    command->add_flag_callback(
        "--json", [&options] { options.format = Format::json; }, "Answer in JSON");
    AddMachineOption(*command, options);
    command->callback([&options, name] { options.command = name; });
}

}  // namespace

std::variant<Options, int> ParseCommandLine(int argc, const char* const argv[]) {
    Options options;
    CLI::App app("Shows what hardware this server holds.", "talvane");
    app.set_version_flag("--version", "talvane " TALVANE_VERSION);
    app.footer(
        "Reading the machine takes root.\n"
        "Exit status: 0 all read, 1 a source could not be read, 2 usage error.");
    AddMachineOption(app, options);
    AddCommand(app, options, kReport, "Everything below");
    for (const Command& command : Commands()) AddCommand(app, options, command.name, command.help);
    app.require_subcommand(1);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kAllRead : kUsageError;
    }
    return options;
}

}  // namespace tool
