// SPDX-License-Identifier: MIT
//
// The statements about the management controller itself: bmc, inventory, channel, watchdog. Also
// builds the controller from everything that a description says about it.

#include <exception>

#include "simulator/description/BmcControlFile.h"
#include "simulator/description/MachineDraft.h"
#include "simulator/machine/Machine.h"

namespace sim {
namespace {

std::uint8_t Bcd(unsigned value) {
    return static_cast<std::uint8_t>(value / 10 << 4 | value % 10);
}

void ReadFirmware(MachineLine& line, BmcDraft& bmc) {
    constexpr std::uint8_t kMaxMajor = 127;
    constexpr std::uint32_t kMaxMinor = 99;
    bmc.major = line.TakeByte("the major firmware revision", kMaxMajor);
    bmc.minorBcd = Bcd(line.TakeNumber("the minor firmware revision", kMaxMinor));
}

void ReadBmc(MachineLine& line, MachineDraft& draft) {
    BmcDraft& bmc = ControllerOf(line, draft);
    if (bmc.line)
        line.Fail("the controller was given in line " + std::to_string(bmc.line->LineNumber()));
    bmc.line = line;
    const std::string interface = line.TakeWord("the interface");
    bmc.kcs = interface == "kcs" || interface == "both";
    bmc.smic = interface == "smic" || interface == "both";
    if (!bmc.kcs && !bmc.smic && interface != "none")
        line.Fail("the interface \"" + interface + "\" is none of kcs, smic, both, none");
    if (!line.HasMore()) return;
    line.ExpectWord("firmware");
    ReadFirmware(line, bmc);
}

void ReadInventory(MachineLine& line, MachineDraft& draft) {
    Bytes image = draft.Capture(line);
    BmcDraft& bmc = ControllerOf(line, draft);
    if (!bmc.inventory.empty()) line.Fail("the controller has an inventory already");
    constexpr std::size_t kMax = 0xFFFF;
    if (image.size() > kMax) line.Fail("an inventory has at most 65535 bytes");
    bmc.inventory = std::move(image);
}

void ReadChannel(MachineLine& line, MachineDraft& draft) {
    constexpr std::uint8_t kMaxChannel = 0x0F;
    const std::uint8_t number = line.TakeByte("the channel", kMaxChannel);
    const std::uint8_t medium = line.TakeByte("the medium");
    const std::uint8_t protocol = line.TakeByte("the protocol");
    if (!ControllerOf(line, draft)
             .channels.try_emplace(number, BmcChannel{medium, protocol})
             .second)
        line.Fail("the controller has this channel already");
}

// A watchdog that firmware sets when the machine starts, or that cannot be stopped.
void ReadWatchdog(MachineLine& line, MachineDraft& draft) {
    constexpr std::uint8_t kMaxAction = 3;
    constexpr std::uint32_t kMaxSeconds = 6553;
    BmcDraft& bmc = ControllerOf(line, draft);
    if (bmc.watchdog) line.Fail("the watchdog was given already");
    WatchdogDraft& watchdog = bmc.watchdog.emplace();
    if (line.TakeIf("action")) {
        watchdog.action = line.TakeByte("the action", kMaxAction);
        line.ExpectWord("seconds");
        watchdog.seconds = static_cast<std::uint16_t>(line.TakeNumber("the seconds", kMaxSeconds));
        watchdog.runs = true;
    }
    watchdog.stops = !line.TakeIf("unstoppable");
    if (!watchdog.runs && watchdog.stops) line.ExpectWord("unstoppable");
}

constexpr MachineStatement kBmcStatements[] = {
    {"bmc", ReadBmc},
    {"inventory", ReadInventory},
    {"channel", ReadChannel},
    {"watchdog", ReadWatchdog},
};

void BuildRecord(const RecordDraft& record, Bmc& bmc) {
    try {
        if (record.isDump)
            bmc.LoadRepository(record.bytes);
        else
            bmc.AddRecord(record.sensor ? record.sensor->Image() : record.bytes, false,
                          record.quirks);
    } catch (const std::exception& error) {
        record.line.Fail(error.what());
    }
}

void BuildWatchdog(const WatchdogDraft& watchdog, Bmc& bmc) {
    if (!watchdog.stops) bmc.MakeWatchdogUnstoppable();
    if (watchdog.runs) bmc.StartWatchdog(watchdog.action, watchdog.seconds);
}

}  // namespace

BmcDraft& ControllerOf(const MachineLine& line, MachineDraft& draft) {
    if (!draft.bmc) draft.bmc.emplace(line);
    return *draft.bmc;
}

std::span<const MachineStatement> BmcStatements() {
    return kBmcStatements;
}

void BuildBmc(const BmcDraft& draft, Machine& machine) {
    if (!draft.line) draft.first.Fail("this belongs to a controller, and no line begins with bmc");
    machine.GiveBmc(draft.kcs, draft.smic);
    Bmc& bmc = machine.GetBmc();
    bmc.SetFirmware(draft.major, draft.minorBcd);
    for (const RecordDraft& record : draft.records) BuildRecord(record, bmc);
    if (draft.recordCount) bmc.SetRepositoryCount(*draft.recordCount);
    for (const auto& [id, row] : draft.nextRecords) {
        if (!bmc.HasRecord(id)) row.line.Fail("the repository has no such record");
        bmc.SetNextRecord(id, row.next);
    }
    for (const auto& [number, timeline] : draft.timelines) bmc.SetTimeline(number, timeline);
    for (const auto& [number, thresholds] : draft.thresholds) bmc.SetThresholds(number, thresholds);
    if (!draft.controlFile.empty()) FollowControlFile(draft.controlFile, bmc);
    bmc.SetInventory(draft.inventory);
    for (const auto& [number, channel] : draft.channels) bmc.SetChannel(number, channel);
    if (draft.watchdog) BuildWatchdog(*draft.watchdog, bmc);
    for (const AnswerDraft& row : draft.answers) {
        try {
            bmc.SetAnswer(row.command, row.lun, row.data, row.answer);
        } catch (const std::exception& error) {
            row.line.Fail(error.what());
        }
    }
    for (const FaultDraft& row : draft.faults) {
        try {
            bmc.Inject(row.command, row.fault.kind, row.fault.value, row.fault.nth);
        } catch (const std::exception& error) {
            row.line.Fail(error.what());
        }
    }
}

}  // namespace sim
