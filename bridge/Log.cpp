// SPDX-License-Identifier: MIT
//
// Each message is one write, so that the messages of several threads do not mix.

#include "bridge/Log.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <system_error>

namespace bridge {
namespace {

constexpr std::size_t kMaxMessage = 400;

std::atomic<bool> everything = false;

// Whether standard error is the journal. The variable names the journal by device and inode.
// Programs that a service starts inherit it, though their standard error may differ
// (systemd.exec(5)).
bool ToJournal() {
    const char* const stream = std::getenv("JOURNAL_STREAM");
    struct stat error {};
    if (stream == nullptr || fstat(STDERR_FILENO, &error) != 0) return false;
    std::array<char, 48> own;
    (void)std::snprintf(own.data(), own.size(), "%llu:%llu",
                        static_cast<unsigned long long>(error.st_dev),
                        static_cast<unsigned long long>(error.st_ino));
    return std::strcmp(own.data(), stream) == 0;
}

}  // namespace

void LogEverything(bool wanted) {
    everything = wanted;
}

void Log(Priority priority, std::string_view message) noexcept {
    if (priority == Priority::kDebug && !everything) return;
    std::array<char, 32> prefix{"talvane-ipmi-bridge: "};
    if (ToJournal())
        (void)std::snprintf(prefix.data(), prefix.size(), "<%d>", static_cast<int>(priority));
    std::array<char, prefix.size() + kMaxMessage + 2> line;
    const int length =
        std::snprintf(line.data(), line.size(), "%s%.*s\n", prefix.data(),
                      static_cast<int>(std::min(message.size(), kMaxMessage)), message.data());
    // Result not used: there is nowhere else to complain.
    if (length > 0) (void)!write(STDERR_FILENO, line.data(), static_cast<std::size_t>(length));
}

std::string WithReason(const std::string& text, int error) {
    return text + ": " + std::generic_category().message(error);
}

}  // namespace bridge
