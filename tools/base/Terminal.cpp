// SPDX-License-Identifier: MIT
//
// Asks the terminal and the environment.

#include "tools/base/Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace tool {
namespace {

Look& LookOfProcess() {
    static Look look;
    return look;
}

std::string_view VariableText(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

}  // namespace

Look LookFor(int descriptor, ColorChoice choice) {
    const bool isTerminal = isatty(descriptor) != 0;
    Look look;
    winsize size{};
    // Result not used: where it fails, any width will do.
    if (isTerminal) (void)ioctl(descriptor, TIOCGWINSZ, &size);
    look.width = size.ws_col;
    const std::string_view terminal = VariableText("TERM");
    const bool isAsked =
        isTerminal && VariableText("NO_COLOR").empty() && !terminal.empty() && terminal != "dumb";
    look.isColored = choice == ColorChoice::kAlways || (choice == ColorChoice::kAuto && isAsked);
    return look;
}

void UseLook(const Look& look) {
    LookOfProcess() = look;
}

const Look& CurrentLook() {
    return LookOfProcess();
}

}  // namespace tool
