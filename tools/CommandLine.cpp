// SPDX-License-Identifier: MIT

#include "tools/CommandLine.h"

#include <CLI/CLI.hpp>

#include "tools/Commands.h"

namespace tool {
namespace {

// Before the command and behind it.
void AddOptions(CLI::App& app, Options& options) {
    app.add_flag_callback(
        "--json", [&options] { options.format = Format::json; }, "Answer in JSON");
    app.add_option("--machine", options.machine, "Run on the simulated server of this folder")
        ->type_name("DIR");
}

void AddCommand(CLI::App& app, Options& options, const char* name, const char* help) {
    CLI::App* command = app.add_subcommand(name, help);
    command->group("Commands");
    command->callback([&options, name] { options.command = name; });
    AddOptions(*command, options);
}

}  // namespace

std::variant<Options, int> ParseCommandLine(int argc, const char* const argv[]) {
    Options options;
    CLI::App app("Shows what hardware this server holds.", "talvane");
    app.set_version_flag("--version", "talvane " TALVANE_VERSION);
    app.footer(
        "Reading the machine takes root.\n"
        "Exit status: 0 all read, 1 a source could not be read, 2 usage or output error.");
    AddOptions(app, options);
    AddCommand(app, options, kReport, "Everything below");
    for (const Command& command : Commands()) AddCommand(app, options, command.name, command.help);
    // The least number is checked below: here a mistyped command would be reported as a missing
    // one.
    app.require_subcommand(0, 1);
    app.get_formatter()->label("SUBCOMMAND", "COMMAND");
    app.failure_message([](const CLI::App*, const CLI::Error& error) {
        return std::string("talvane: ") + error.what() + "\nRun talvane --help for the commands.\n";
    });
    try {
        app.parse(argc, argv);
        if (options.command.empty()) throw CLI::RequiredError("A command");
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kAllRead : kFailure;
    }
    return options;
}

}  // namespace tool
