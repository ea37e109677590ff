// SPDX-License-Identifier: MIT
//
// talvane-ipmi-bridge: its command line.

#include <unistd.h>

#include <CLI/CLI.hpp>

#include "bridge/CharacterDevice.h"
#include "bridge/Log.h"

int main(int argc, char** argv) {
    CLI::App app{
        "Provides /dev/ipmi for agents and carries their requests to the kernel's IPMI device."};
    bridge::DeviceNames names{"/dev/ipmi0", "ipmi"};
    std::string user = "talvane-ipmi";
    bool verbose = false;
    app.add_option("--device", names.kernel, "The kernel's device")->capture_default_str();
    app.add_option("--name", names.provided, "Name of the provided device below /dev")
        ->capture_default_str()
        ->check([](const std::string& name) {
            const bool fine = !name.empty() && name.find('/') == std::string::npos;
            return fine ? std::string() : std::string("a name, not a path");
        });
    const CLI::Option* const userOption =
        app.add_option("--user", user, "User to serve as, when root starts the bridge")
            ->capture_default_str();
    app.add_flag("--verbose", verbose, "Log every request");
    app.set_version_flag("--version", TALVANE_VERSION);
    CLI11_PARSE(app, argc, argv);

    // The service manager starts the bridge as that user, or whoever tries it out is another one.
    if (userOption->count() == 0 && geteuid() != 0) user.clear();
    bridge::LogEverything(verbose);
    return bridge::ServeDevice(names, user);
}
