// SPDX-License-Identifier: MIT
//
// What the load functions read. Input: the text of /proc/stat up to a zero byte, then the numbers
// of total and used memory, one a line, as `free` and `awk` write them.

#include "Talvane.h"
#include "fuzz/Input.h"
#include "fuzz/machine/FedMachine.h"
#include "load/CpuTimeText.h"
#include "load/UsageShare.h"

namespace {

using namespace talvane;

// The one division that ends the process is stated: that by no tick at all. Counters have 32 bits.
bool HasTicks(const long (&times)[kCpuCounters]) {
    std::uint32_t sum = 0;
    for (const long ticks : times) sum += static_cast<std::uint32_t>(ticks);
    return sum != 0 && sizeof(long) == sizeof(std::uint32_t);
}

void AskForShares(const std::string& text) {
    constexpr int kProcessors = 8;
    for (int processor = 0; processor < kProcessors; ++processor) {
        long times[kCpuCounters] = {};
        if (ScanCpuTimes(text.c_str(), processor, times) < 0 || !HasTicks(times)) continue;
        (void)BusyPercent(times[kIdleTicks], times[kUserTicks], times[kNiceTicks],
                          times[kSystemTicks]);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FedMachine machine;
    fuzz::Input input(data, size);
    AskForShares(input.TakeText());
    machine.freeOutput = input.TakeText();
    if (!machine.freeOutput.empty()) (void)GetMemUsageRate();
    return 0;
}
