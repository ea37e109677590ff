// SPDX-License-Identifier: MIT
//
// Reads the records one after the other, and writes the page.

#include "tools/HtmlReport.h"

#include <algorithm>
#include <string>

#include "tools/AtomicFile.h"
#include "tools/Report.h"
#include "tools/RulesFile.h"
#include "tools/base/SourceProblem.h"
#include "tools/html/Page.h"
#include "tools/records/Sensors.h"

namespace tool {
namespace {

// Each source once, however many records miss it.
class UnreadSources {
public:
    explicit UnreadSources(const std::vector<Way>& ways) : ways_(ways) {}

    // What was read; notes the source when that is nothing.
    template <class Record>
    std::optional<Record> Note(std::optional<Record> record, const Source& source) {
        if (!record) Add(source);
        return record;
    }

    void Add(const Source& source) {
        const SourceProblem problem = ProblemOf(source, ways_);
        const auto isNamed = [&](const UnreadSource& known) {
            return known.name == problem.source;
        };
        if (std::none_of(sources_.begin(), sources_.end(), isNamed))
            sources_.push_back({problem.source, problem.message});
    }

    const std::vector<UnreadSource>& All() const { return sources_; }

private:
    const std::vector<Way>& ways_;
    std::vector<UnreadSource> sources_;
};

MachineReport ReadMachine(const Settings& settings, const Rules& rules) {
    UnreadSources unread(settings.ways);
    MachineReport report;
    report.time = TimeNow();
    report.version = TALVANE_VERSION;
    report.system = unread.Note(ReadSystem(), kPhysicalMemory);
    report.board = unread.Note(ReadBoard(), kPhysicalMemory);
    report.processors = unread.Note(ReadProcessors(), kPhysicalMemory);
    report.memory = unread.Note(ReadMemory(), kPhysicalMemory);
    report.ports = unread.Note(ReadPorts(), kPhysicalMemory);
    report.power = unread.Note(ReadPower(), kPhysicalMemory);
    report.fans = unread.Note(ReadFans(), kPhysicalMemory);
    if (const auto sensors = unread.Note(ReadSensors(), kBmc))
        report.health = Judge(*sensors, rules);
    report.watchdog = unread.Note(ReadWatchdog(), kBmc);
    report.bmc = unread.Note(ReadBmc(), kBmc);
    report.pci = unread.Note(ReadPci(), kPciPorts);
    report.drives = unread.Note(ReadDrives(), kIdeDrives);
    report.partitions = unread.Note(ReadPartitions(), kIdeDrives);
    if (report.partitions)
        for (const Source* source : report.partitions->notRead) unread.Add(*source);
    report.load = ReadLoad(settings);
    for (const Source* source : report.load->notRead) unread.Add(*source);
    report.notRead = unread.All();
    report.ways = settings.ways;
    return report;
}

}  // namespace

bool WriteHtmlReport(const PageOrder& order, const Settings& settings, std::ostream& err) {
    RequireReplaceable(order.file);  // before the machine is read, which takes its time
    const MachineReport report = ReadMachine(settings, RulesIn(order.rules));
    WriteAtomically(order.file, HtmlPage(report));
    for (const UnreadSource& source : report.notRead) err << "talvane: " << source.message << '\n';
    return report.notRead.empty();
}

}  // namespace tool
