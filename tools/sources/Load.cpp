// SPDX-License-Identifier: MIT
//
// Why processor and memory load could not be measured.

#include <fcntl.h>

#include <cerrno>

#include "tools/base/Descriptor.h"
#include "tools/base/Source.h"
#include "tools/sources/ErrorText.h"

namespace tool {
namespace {

std::string WhyProcessorTimesNotRead() {
    const Descriptor file("/proc/stat", O_RDONLY);
    if (!file.IsOpen())
        return "cannot open /proc/stat: " + ErrorText(errno, "/proc is not mounted");
    return "the counters of a processor in /proc/stat stood still or went away";
}

std::string WhyMemoryUseNotRead() {
    return "the commands free and awk did not tell how much memory is in use";
}

}  // namespace

const Source kProcessorTimes{"/proc/stat", WhyProcessorTimesNotRead, "load"};
const Source kMemoryUse{"free", WhyMemoryUseNotRead, "load"};

}  // namespace tool
