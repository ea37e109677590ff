// SPDX-License-Identifier: MIT
//
// Reads the texts from which the library works out the load.

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "tools/base/Descriptor.h"
#include "tools/capture/MachineCapture.h"
#include "tools/library/ChildProcess.h"

namespace tool {
namespace {

// Far more than the 1024 bytes that the library looks at.
constexpr std::size_t kMaxLoadText = 65536;

// Nothing, with errno set, when the file cannot be opened.
std::optional<std::string> StatText() {
    const Descriptor file("/proc/stat", O_RDONLY);
    if (!file.IsOpen()) return std::nullopt;
    std::string text;
    char part[4096];
    while (text.size() < kMaxLoadText) {
        const ssize_t got = read(file.Get(), part, sizeof part);
        if (got <= 0) break;
        text.append(part, static_cast<std::size_t>(got));
    }
    return text;
}

// In a child process, whose output is caught.
std::string FreeText() {
    const auto text = OutputOfChildProcess([] {
        // Result not used: without the program there is no text.
        if (std::freopen("/dev/null", "w", stderr) != nullptr) (void)std::system("free");
    });
    std::string kept = text.value_or("").substr(0, kMaxLoadText);
    std::erase(kept, '\0');
    return kept;
}

}  // namespace

void CaptureLoad(MachineCapture& capture) {
    capture.load.free = FreeText();
    if (capture.load.free.empty()) capture.notRead.push_back(&kMemoryUse);
    for (std::string& text : capture.load.stat) {
        if (&text != &capture.load.stat.front()) (void)sleep(1);  // a shorter one does no harm
        const auto read = StatText();
        if (!read) {
            capture.unopened.push_back({"/proc/stat", errno});
            capture.notRead.push_back(&kProcessorTimes);
            return;
        }
        text = *read;
    }
}

}  // namespace tool
