// SPDX-License-Identifier: MIT
//
// The statements about the management controller itself: its interfaces, inventory, channels and
// watchdog; and how all that was said of it becomes one.

#include <exception>

#include "simulator/description/BmcControlFile.h"
#include "simulator/description/MachineDraft.h"
#include "simulator/machine/Machine.h"

namespace sim {
namespace {

std::uint8_t bcd(unsigned value) {
    return static_cast<std::uint8_t>(value / 10 << 4 | value % 10);
}

void readFirmware(MachineLine& line, BmcDraft& bmc) {
    constexpr std::uint8_t kMostMajor = 127;
    constexpr std::uint32_t kMostMinor = 99;
    bmc.major = line.byte("the major firmware revision", kMostMajor);
    bmc.minorBcd = bcd(line.number("the minor firmware revision", kMostMinor));
}

void readBmc(MachineLine& line, MachineDraft& draft) {
    BmcDraft& bmc = controllerOf(line, draft);
    if (bmc.line)
        line.fail("the controller was given in line " + std::to_string(bmc.line->number()));
    bmc.line = line;
    const std::string interface = line.word("the interface");
    bmc.kcs = interface == "kcs" || interface == "both";
    bmc.smic = interface == "smic" || interface == "both";
    if (!bmc.kcs && !bmc.smic && interface != "none")
        line.fail("the interface \"" + interface + "\" is none of kcs, smic, both, none");
    if (!line.more()) return;
    line.expect("firmware");
    readFirmware(line, bmc);
}

void readInventory(MachineLine& line, MachineDraft& draft) {
    Bytes image = draft.capture(line);
    BmcDraft& bmc = controllerOf(line, draft);
    if (!bmc.inventory.empty()) line.fail("the controller has an inventory already");
    constexpr std::size_t kMost = 0xFFFF;
    if (image.size() > kMost) line.fail("an inventory has at most 65535 bytes");
    bmc.inventory = std::move(image);
}

void readChannel(MachineLine& line, MachineDraft& draft) {
    constexpr std::uint8_t kMostChannel = 0x0F;
    const std::uint8_t number = line.byte("the channel", kMostChannel);
    const std::uint8_t medium = line.byte("the medium");
    const std::uint8_t protocol = line.byte("the protocol");
    if (!controllerOf(line, draft)
             .channels.try_emplace(number, BmcChannel{medium, protocol})
             .second)
        line.fail("the controller has this channel already");
}

// A timer that something else than the program set, at the machine's start.
void readWatchdog(MachineLine& line, MachineDraft& draft) {
    constexpr std::uint8_t kMostAction = 3;
    constexpr std::uint32_t kMostSeconds = 6553;
    BmcDraft& bmc = controllerOf(line, draft);
    if (bmc.watchdog) line.fail("the watchdog was given already");
    WatchdogDraft& watchdog = bmc.watchdog.emplace();
    if (line.takeIf("action")) {
        watchdog.action = line.byte("the action", kMostAction);
        line.expect("seconds");
        watchdog.seconds = static_cast<std::uint16_t>(line.number("the seconds", kMostSeconds));
        watchdog.runs = true;
    }
    watchdog.stops = !line.takeIf("unstoppable");
    if (!watchdog.runs && watchdog.stops) line.expect("unstoppable");
}

constexpr MachineStatement kStatements[] = {
    {"bmc", readBmc},
    {"inventory", readInventory},
    {"channel", readChannel},
    {"watchdog", readWatchdog},
};

void buildRecord(const RecordDraft& record, Bmc& bmc) {
    try {
        if (record.isDump)
            bmc.loadRepository(record.bytes);
        else
            bmc.addRecord(record.sensor ? record.sensor->bytes() : record.bytes, false,
                          record.quirks);
    } catch (const std::exception& error) {
        record.line.fail(error.what());
    }
}

void buildWatchdog(const WatchdogDraft& watchdog, Bmc& bmc) {
    if (!watchdog.stops) bmc.makeWatchdogUnstoppable();
    if (watchdog.runs) bmc.startWatchdog(watchdog.action, watchdog.seconds);
}

}  // namespace

BmcDraft& controllerOf(const MachineLine& line, MachineDraft& draft) {
    if (!draft.bmc) draft.bmc.emplace(line);
    return *draft.bmc;
}

std::span<const MachineStatement> bmcStatements() {
    return kStatements;
}

void buildBmc(const BmcDraft& draft, Machine& machine) {
    if (!draft.line) draft.first.fail("this belongs to a controller, and no line begins with bmc");
    machine.giveBmc(draft.kcs, draft.smic);
    Bmc& bmc = machine.bmc();
    bmc.setFirmware(draft.major, draft.minorBcd);
    for (const RecordDraft& record : draft.records) buildRecord(record, bmc);
    if (draft.recordCount) bmc.setRepositoryCount(*draft.recordCount);
    for (const auto& [id, row] : draft.nextRecords) {
        if (!bmc.hasRecord(id)) row.line.fail("the repository has no such record");
        bmc.setNextRecord(id, row.next);
    }
    for (const auto& [number, timeline] : draft.timelines) bmc.setTimeline(number, timeline);
    for (const auto& [number, thresholds] : draft.thresholds) bmc.setThresholds(number, thresholds);
    if (!draft.controlFile.empty()) FollowControlFile(draft.controlFile, bmc);
    bmc.setInventory(draft.inventory);
    for (const auto& [number, channel] : draft.channels) bmc.setChannel(number, channel);
    if (draft.watchdog) buildWatchdog(*draft.watchdog, bmc);
    for (const FaultDraft& row : draft.faults) {
        try {
            bmc.inject(row.command, row.fault.kind, row.fault.value, row.fault.nth);
        } catch (const std::exception& error) {
            row.line.fail(error.what());
        }
    }
}

}  // namespace sim
