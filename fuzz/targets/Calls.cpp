// SPDX-License-Identifier: MIT
//
// An agent's calls in any order. Input: the number of calls, a byte for each, and the machine that
// AddWholeMachine makes of the rest.

#include <iterator>
#include <memory>
#include <vector>

#include "Talvane.h"
#include "fuzz/machine/WholeMachine.h"

namespace {

// Room for every record, with as many elements as a machine can state.
constexpr std::size_t kRecordSize = 0x8000;

void Ask(unsigned long command) {
    const auto record = std::make_unique<unsigned char[]>(kRecordSize);
    (void)GetInfo(command, record.get());
}

void AskBmc(unsigned long command) {
    const auto record = std::make_unique<unsigned char[]>(kRecordSize);
    (void)GetIpmiInfo(command, record.get());
}

void AskThresholds() {
    const auto record = std::make_unique<SensorThresholdInformation>();
    (void)GetAllThresholdInfo(record.get());
}

void AskWatchdog() {
    unsigned char action = 0;
    int timeOut = 0;
    int left = 0;
    (void)GetWatchDogTimer(&action, &timeOut, &left);
}

void AskVersion() {
    unsigned char major = 0;
    unsigned char minor = 0;
    (void)GetBMCVersion(&major, &minor);
}

using Call = void (*)();
constexpr Call kCalls[] = {
    [] { Ask(TALVANE_BOARD); },
    [] { Ask(TALVANE_PROCESSORS); },
    [] { Ask(TALVANE_MEMORY); },
    [] { Ask(TALVANE_PORTS); },
    [] { Ask(TALVANE_DRIVES); },
    [] { Ask(TALVANE_PARTITIONS); },
    [] { Ask(TALVANE_POWER); },
    [] { Ask(TALVANE_UPS); },
    [] { Ask(TALVANE_FANS); },
    [] { Ask(TALVANE_VOLTAGES); },
    [] { Ask(TALVANE_TEMPERATURES); },
    [] { Ask(TALVANE_SYSTEM); },
    [] { Ask(0); },
    [] { AskBmc(TALVANE_FANS); },
    [] { AskBmc(TALVANE_VOLTAGES); },
    [] { AskBmc(TALVANE_TEMPERATURES); },
    [] { AskBmc(TALVANE_BOARD); },
    AskThresholds,
    [] { (void)SetThresholdInfo(7, 1, THRESHOLD_LOWER_WARNING, -1e9); },
    [] { (void)SetThresholdInfo(7, 2, THRESHOLD_UPPER_NON_RECOVERABLE, 12.5); },
    AskWatchdog,
    [] { (void)SetWatchDogTimer(3, TALVANE_WATCHDOG_LONGEST); },
    [] { (void)ResetWatchDogTimer(); },
    [] { (void)StopWatchDogTimer(); },
    AskVersion,
    [] { (void)IsSmBiosSupport(); },
    [] { (void)IsIpmiSupport(); },
    [] { (void)release(); },
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kMaxCalls = 32;
    fuzz::Input input(data, size);
    const talvane::ByteView calls = input.Take(input.TakeByte() % (kMaxCalls + 1));
    fuzz::FedMachine machine;
    fuzz::AddWholeMachine(machine, input);
    for (const unsigned char call : calls) kCalls[call % std::size(kCalls)]();
    return 0;
}
