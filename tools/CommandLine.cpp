// SPDX-License-Identifier: MIT
//
// Options, arguments and their checks, on top of CLI11.

#include "tools/CommandLine.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string_view>

#include "Talvane.h"
#include "tools/library/Limits.h"
#include "tools/records/Watchdog.h"
#include "tools/sensors/EntityNames.h"

namespace tool {
namespace {

constexpr const char* kMachineOption = "--machine";
constexpr int kMaxSeconds = 86400;
constexpr int kMaxTables = 1000000;
constexpr int kMaxByte = 255;
// Seconds that the library takes as the watchdog's time-out.
constexpr int kMinWatchdogTimeout = TALVANE_WATCHDOG_SHORTEST / 1000;
constexpr int kMaxWatchdogTimeout = TALVANE_WATCHDOG_LONGEST / 1000;

std::string NameProblem(const std::string& name) {
    return name.empty() ? "an empty name names no server" : "";
}

void Read(Options& options, Reading reading) {
    if (options.reading != Reading::kChoose && options.reading != reading)
        throw CLI::ValidationError("--direct", "goes without --host");
    options.reading = reading;
}

// These options are taken before the command and after it.
void AddOptions(CLI::App& app, Options& options) {
    app.add_flag_callback(
        "--json", [&options] { options.format = Format::kJson; }, "Answer in JSON");
    app.add_option(kMachineOption, options.machine,
                   "Run on a simulated server: its folder, a capture, or an installed one's name")
        ->type_name("DIR")
        ->check(CLI::Validator(NameProblem, ""));
    app.add_flag_callback(
        "--direct", [&options] { Read(options, Reading::kDirect); },
        "Read this machine only through the devices that agents know");
    app.add_flag_callback(
        "--host", [&options] { Read(options, Reading::kHost); },
        "Read this machine only through the kernel's own interfaces");
    app.add_option("--root", options.root,
                   "With --host or doctor: the folder with the sys, proc and dev to read")
        ->type_name("DIR")
        ->check(CLI::ExistingDirectory);
    app.add_option_function<std::string>(
           "--color",
           [&options](const std::string& choice) {
               options.color = choice == "always"  ? ColorChoice::kAlways
                               : choice == "never" ? ColorChoice::kNever
                                                   : ColorChoice::kAuto;
           },
           "Colour verdicts and states: auto, on a terminal; always; or never")
        ->type_name("WHEN")
        ->check(CLI::IsMember({"auto", "always", "never"}));
}

// Of options that do not go together. They can stand before and after the command.
void CheckReading(const Options& options) {
    if (!options.machine.empty() && options.reading != Reading::kChoose)
        throw CLI::ValidationError("--machine", "goes without --direct and --host");
    const bool takesRoot = options.reading == Reading::kHost || options.command == kDoctor;
    if (!options.root.empty() && !takesRoot)
        throw CLI::ValidationError("--root", "goes with --host or doctor alone");
}

// A command below another is complete before the other one is, and so is selected first.
void Select(Options& options, const char* name) {
    if (options.command.empty()) options.command = name;
}

CLI::App* AddCommand(CLI::App& app, Options& options, const char* name, const char* help) {
    CLI::App* command = app.add_subcommand(name, help);
    command->group("Commands");
    command->parse_complete_callback([&options, name] { Select(options, name); });
    AddOptions(*command, options);
    return command;
}

// A command below a command. `name` has the words of both, separated by a blank.
CLI::App* AddChange(CLI::App& parent, Options& options, const char* name, const char* help) {
    const std::string word = std::string(name).substr(std::string_view(name).rfind(' ') + 1);
    CLI::App* change = parent.add_subcommand(word, help);
    change->parse_complete_callback([&options, name] { Select(options, name); });
    AddOptions(*change, options);
    return change;
}

void AddConfirmation(CLI::App& change, Options& options) {
    change.add_flag("--yes", options.order.confirmed, "Do it; without this option, only show it");
}

// The number that a text stands for; nothing when it is not a number.
std::optional<double> NumberOf(const std::string& text) {
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0' || !std::isfinite(value)) return std::nullopt;
    return value;
}

// The same for whole numbers, decimal or hexadecimal (with 0x in front).
std::optional<int> WholeNumberOf(const std::string& text) {
    const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
    const char* const begin = text.data() + (isHexadecimal ? 2 : 0);
    const char* const end = text.data() + text.size();
    int value = 0;
    const auto [stop, error] = std::from_chars(begin, end, value, isHexadecimal ? 16 : 10);
    if (stop != end || error != std::errc()) return std::nullopt;
    return value;
}

CLI::Validator Within(double least, double most) {
    return CLI::Validator(
        [=](const std::string& text) {
            const auto value = NumberOf(text);
            if (value && *value >= least && *value <= most) return std::string();
            return text + " is no number from " + NumberText(least) + " to " + NumberText(most);
        },
        "");
}

// Rewrites the number in decimal digits without leading zeros, which would be read as octal.
CLI::Validator WholeWithin(int least, int most) {
    return CLI::Validator(
        [=](std::string& text) {
            const auto value = WholeNumberOf(text);
            if (!value || *value < least || *value > most)
                return text + " is no whole number from " + std::to_string(least) + " to " +
                       std::to_string(most);
            text = std::to_string(*value);
            return std::string();
        },
        "");
}

void AddWatch(CLI::App& sensors, Watch& watch) {
    auto* seconds = sensors.add_option("--watch", watch.seconds, "Show again after every so many");
    seconds->type_name("SECONDS")->transform(WholeWithin(1, kMaxSeconds));
    sensors.add_option("--count", watch.count, "End after so many tables")
        ->type_name("N")
        ->transform(WholeWithin(1, kMaxTables))
        ->needs(seconds);
}

// Replaces a name by its code. With `orByte` a number from 0 to 255 is accepted as well.
CLI::Validator Named(const std::vector<std::pair<std::string, int>>& names, bool orByte = false) {
    return CLI::Validator(
        [names, orByte](std::string& text) -> std::string {
            std::string known;
            for (const auto& [name, code] : names) {
                if (text == name) {
                    text = std::to_string(code);
                    return "";
                }
                known += (known.empty() ? "" : ", ") + name;
            }
            if (orByte && WholeWithin(0, kMaxByte)(text).empty()) return "";
            return text + " is none of " + known + (orByte ? ", nor a number from 0 to 255" : "");
        },
        "");
}

// Replaces an entity's name by its code.
CLI::Validator EntityCode() {
    return CLI::Validator(
        [](std::string& text) {
            if (const auto code = EntityNamed(text)) text = std::to_string(*code);
            return WholeWithin(0, kMaxByte)(text).empty()
                       ? std::string()
                       : text + " is no entity's name, and no whole number from 0 to 255";
        },
        "");
}

std::string NumberProblem(const std::string& text) {
    return NumberOf(text) ? "" : text + " is no number";
}

void AddThresholdChange(CLI::App& app, Options& options) {
    CLI::App* threshold = app.add_subcommand("threshold", "Set a threshold: threshold set --help");
    threshold->group("Commands");
    AddOptions(*threshold, options);
    // That one is given is checked below, in the tool's own words.
    threshold->require_subcommand(0, 1);
    threshold->final_callback([threshold] {
        if (threshold->get_subcommands().empty()) throw CLI::RequiredError("threshold: set");
    });
    CLI::App* set = AddChange(*threshold, options, "threshold set",
                              "Set one threshold of all sensors of an entity and type");
    set->footer(
        "Not only the threshold asked for is written: the library writes a sensor's whole set\n"
        "of thresholds, and reads that set by the sensor's place in the repository, not by its\n"
        "number. Where the two differ, the sensor's other thresholds change, too. Without --yes\n"
        "the command shows what the BMC holds now and what would be written, and writes nothing.");
    ThresholdOrder& order = options.order.threshold;
    set->add_option("--entity", order.entity,
                    "Entity's name, as talvane sensors shows it, or number")
        ->type_name("E")
        ->required()
        ->transform(EntityCode());
    set->add_option("--type", order.type, "temperature, voltage, fan, or a sensor type's number")
        ->type_name("T")
        ->required()
        ->transform(Named({{"temperature", 1}, {"voltage", 2}, {"fan", 4}}, true));
    set->add_option("--which", order.which,
                    "lower- or upper-, and non-critical, critical or non-recoverable")
        ->type_name("THRESHOLD")
        ->required()
        ->transform(Named({{"lower-non-critical", THRESHOLD_LOWER_WARNING},
                           {"lower-critical", THRESHOLD_LOWER_CRITICAL},
                           {"lower-non-recoverable", THRESHOLD_LOWER_NON_RECOVERABLE},
                           {"upper-non-critical", THRESHOLD_UPPER_WARNING},
                           {"upper-critical", THRESHOLD_UPPER_CRITICAL},
                           {"upper-non-recoverable", THRESHOLD_UPPER_NON_RECOVERABLE}}));
    set->add_option("VALUE", order.value, "The new value, in the sensor's unit")
        ->type_name("")
        ->required()
        ->check(CLI::Validator(NumberProblem, ""));
    AddConfirmation(*set, options);
}

void AddWatchdogChanges(CLI::App& watchdog, Options& options) {
    watchdog.require_subcommand(0, 1);
    AddChange(watchdog, options, "watchdog", "Show it")->name("show");
    CLI::App* set = AddChange(watchdog, options, "watchdog set",
                              "Set it and start it; asks for --yes where it could reboot");
    std::vector<std::pair<std::string, int>> actions;
    for (std::size_t i = 0; i < kWatchdogActions.size(); ++i)
        actions.emplace_back(kWatchdogActions[i], static_cast<int>(i));
    WatchdogOrder& order = options.order.watchdog;
    set->add_option("--action", order.action, "none, hard-reset, power-down or power-cycle")
        ->type_name("ACTION")
        ->required()
        ->transform(Named(actions));
    set->add_option_function<double>(
           "--timeout",
           [&order](double seconds) {
               order.timeout = static_cast<int>(std::lround(seconds * 1000));
           },
           "Seconds until the action, " + std::to_string(kMinWatchdogTimeout) + " to " +
               std::to_string(kMaxWatchdogTimeout))
        ->type_name("SECONDS")
        ->required()
        ->check(Within(kMinWatchdogTimeout, kMaxWatchdogTimeout));
    AddConfirmation(*set, options);
    AddConfirmation(
        *AddChange(watchdog, options, "watchdog reset", "Start it over; asks for --yes"), options);
    AddChange(watchdog, options, "watchdog stop", "Stop it");
}

void AddSensorOptions(CLI::App& sensors, Options& options) {
    AddWatch(sensors, options.watch);
    sensors.add_flag("--library", options.settings.libraryRecords,
                     "Temperatures, voltages and fans as the library gives them to agents");
}

void AddHealth(CLI::App& app, Options& options) {
    CLI::App* health =
        AddCommand(app, options, kHealth, "A verdict on each sensor and on the server");
    health->add_option("--rules", options.health.rules, "Verdicts that replace those of the table")
        ->type_name("FILE");
    health
        ->add_option_function<std::string>(
            "--format",
            [&options](const std::string& format) {
                options.health.isNagios = format == "nagios";
                if (format == "json") options.format = Format::kJson;
            },
            "text, json, or nagios: the output of a monitoring plugin")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"text", "json", "nagios"}));
    health->add_flag("--states", options.health.showStates,
                     "Show which states there are, and their verdicts");
    health->final_callback([&options] {
        if (options.health.showStates && options.health.isNagios)
            throw CLI::ValidationError("--states",
                                       "there is no such output for a monitoring plugin");
    });
    health->footer("Exit status: 0 OK, 1 WARNING, 2 CRITICAL, 3 UNKNOWN or not to be found out.");
}

void AddMetrics(CLI::App& app, Options& options) {
    CLI::App* metrics = AddCommand(app, options, kMetrics, "Everything as metrics for Prometheus");
    metrics
        ->add_option("--rules", options.metrics.rules, "Verdicts that replace those of the table")
        ->type_name("FILE");
    metrics->add_option("--output", options.metrics.output, "Replace this file, in one step")
        ->type_name("FILE");
    metrics->add_flag("--no-pci", options.metrics.isWithoutPci,
                      "Leave out the PCI functions, whose scan takes the most time");
    metrics->final_callback([&options] {
        if (options.format == Format::kJson) throw CLI::ExcludesError(kMetrics, "--json");
    });
    metrics->footer("A source that cannot be read is a metric, and the exit status is 0.");
}

void AddGet(CLI::App& app, Options& options) {
    CLI::App* get = AddCommand(app, options, kGet, "One value: get board.serial-number");
    get->add_option("PATH", options.path,
                    "The way through the JSON output, its names joined by '.'")
        ->type_name("")
        ->required();
    get->footer(
        "In a list, elements are counted from 0, or named: get sensors.sensors.fan-1.reading");
}

void AddCapture(CLI::App& app, Options& options) {
    CLI::App* capture =
        AddCommand(app, options, kCapture, "Take this machine along as one file, for --machine");
    capture->add_option("FILE", options.capture.file, "The archive to write, a .tar.gz")
        ->type_name("")
        ->required()
        ->check(CLI::Validator(
            [](const std::string& name) {
                if (name == "-") return "an archive goes into a file";
                return name.empty() ? "an empty name" : "";
            },
            ""));
    capture->add_flag("--redact", options.capture.isRedacted,
                      "Replace serial numbers, UUIDs, asset tags and service tags by marks");
    capture->final_callback([&options] {
        if (options.format == Format::kJson) throw CLI::ExcludesError(kCapture, "--json");
    });
    capture->footer(
        "The file can be read by its owner alone. Of disks it holds partition tables, and none\n"
        "of their files. A source that cannot be read is left out and named.");
}

void AddReport(CLI::App& app, Options& options) {
    CLI::App* report = AddCommand(app, options, kReport, "Everything that the commands below show");
    CLI::Option* page = report
                            ->add_option("--html", options.page.file,
                                         "Write a page for browsers to this file instead")
                            ->type_name("FILE");
    report
        ->add_option("--rules", options.page.rules,
                     "Verdicts on the page that replace those of the table")
        ->type_name("FILE")
        ->needs(page);
    report->final_callback([&options] {
        if (!options.page.file.empty() && options.format == Format::kJson)
            throw CLI::ExcludesError("--html", "--json");
    });
}

void AddCommands(CLI::App& app, Options& options) {
    AddReport(app, options);
    for (const Command& row : Commands()) {
        CLI::App* command = AddCommand(app, options, row.name, row.help);
        const std::string_view name = row.name;
        if (name == "sensors") AddSensorOptions(*command, options);
        if (name == "watchdog") AddWatchdogChanges(*command, options);
        if (name == "load")
            command
                ->add_option("--interval", options.settings.loadInterval,
                             "Watch the processors for so long; 1 when not given")
                ->type_name("SECONDS")
                ->transform(WholeWithin(1, kMaxSeconds));
    }
    AddHealth(app, options);
    AddMetrics(app, options);
    AddGet(app, options);
    AddCapture(app, options);
    AddCommand(app, options, kDoctor, "What stands in the way of reading this machine")
        ->footer("Exit status: 0 when nothing stops this tool, 1 when something does.");
    AddThresholdChange(app, options);
}

// CLI11 lists arguments that it did not expect from the last to the first.
std::string ProblemText(const CLI::App& whole, const CLI::Error& error) {
    if (dynamic_cast<const CLI::ExtrasError*>(&error) == nullptr) return error.what();
    const std::vector<std::string> extras = whole.remaining(true);
    return std::string(extras.size() == 1 ? "The following argument was not expected: "
                                          : "The following arguments were not expected: ") +
           CLI::detail::join(extras, " ");
}

std::vector<std::string> WithoutMachine(int argc, const char* const argv[]) {
    std::vector<std::string> arguments;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument == kMachineOption)
            ++i;
        else if (!argument.starts_with(std::string(kMachineOption) + '='))
            arguments.emplace_back(argument);
    }
    return arguments;
}

}  // namespace

std::variant<Options, int> ParseCommandLine(int argc, const char* const argv[]) {
    Options options;
    CLI::App app("Shows what hardware this server holds and how it is doing.", "talvane");
    app.set_version_flag("--version", "talvane " TALVANE_VERSION);
    app.footer(
        "Reading the machine takes root.\n"
        "Exit status: 0 all done, 1 a source could not be read or a change was not made,\n"
        "2 usage or output error.");
    AddOptions(app, options);
    AddCommands(app, options);
    // That one is given is checked below. If it were checked here, a mistyped command would be
    // reported as a missing one.
    app.require_subcommand(0, 1);
    app.get_formatter()->label("SUBCOMMAND", "COMMAND");
    app.failure_message([](const CLI::App* whole, const CLI::Error& error) {
        std::string command = "talvane";
        for (auto given = whole->get_subcommands(); !given.empty();
             given = given.front()->get_subcommands())
            command += ' ' + given.front()->get_name();
        const bool isWhole = whole->get_subcommands().empty();
        return "talvane: " + ProblemText(*whole, error) + "\nRun " + command +
               (isWhole ? " --help for the commands.\n" : " --help for its options.\n");
    });
    try {
        app.parse(argc, argv);
        if (options.command.empty()) throw CLI::RequiredError("A command");
        CheckReading(options);
    } catch (const CLI::ParseError& error) {
        const int failure = app.got_subcommand(kHealth) ? kHealthUnknown : kFailure;
        if (app.exit(error) != 0) return failure;
        if (std::cout.flush()) return kAllDone;
        std::cerr << "talvane: cannot write to standard output\n";
        return failure;
    }
    options.arguments = WithoutMachine(argc, argv);
    return options;
}

}  // namespace tool
