// SPDX-License-Identifier: MIT
//
// One write per message, so that those of several threads do not mix.

#include "Log.h"

#include <cstdio>
#include <cstdlib>
#include <system_error>

namespace bridge {
namespace {

bool everything = false;

// Set by systemd when standard error is the journal (systemd.exec(5)).
bool ForJournal() {
    static const bool journal = std::getenv("JOURNAL_STREAM") != nullptr;
    return journal;
}

}  // namespace

void LogEverything() {
    everything = true;
}

void Log(Priority priority, const std::string& message) {
    if (priority == Priority::kDebug && !everything) return;
    const std::string prefix = ForJournal() ? '<' + std::to_string(static_cast<int>(priority)) + '>'
                                            : std::string("talvane-ipmi-bridge: ");
    // Result not used: there is nowhere else to complain.
    (void)std::fputs((prefix + message + '\n').c_str(), stderr);
}

std::string WithReason(const std::string& text, int error) {
    return text + ": " + std::generic_category().message(error);
}

}  // namespace bridge
