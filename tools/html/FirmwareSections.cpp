// SPDX-License-Identifier: MIT
//
// What the firmware's table says.

#include "tools/html/InventorySections.h"
#include "tools/html/MemoryPicture.h"

namespace tool {
namespace {

constexpr auto kRightAligned = Column::Align::kRight;

std::string BoardMarkup(const MachineReport& report) {
    std::vector<Fact> facts;
    if (report.system)
        facts = {{"System manufacturer", report.system->manufacturer},
                 {"System", report.system->product},
                 {"System version", report.system->version}};
    if (const auto& board = report.board)
        facts.insert(facts.end(), {{"Board manufacturer", board->manufacturer},
                                   {"Board", board->product},
                                   {"Board serial number", board->serialNumber},
                                   {"BIOS vendor", board->biosVendor},
                                   {"BIOS version", board->biosVersion},
                                   {"BIOS date", board->biosReleaseDate}});
    return facts.empty() ? "" : HtmlFacts(facts);
}

std::string ProcessorMarkup(const Processors& processors) {
    std::vector<Row> rows;
    for (const Processor& processor : processors) {
        std::string caches;
        for (const Cache& cache : processor.caches)
            caches += (caches.empty() ? "L" : ", L") + std::to_string(cache.level) + ' ' +
                      cache.installedSize;
        rows.push_back({"Processor " + std::to_string(rows.size() + 1), processor.family,
                        processor.manufacturer, processor.currentSpeed, processor.maximumSpeed,
                        processor.externalClock, caches, DisabledText(processor)});
    }
    return HtmlTable("Processors and their caches",
                     {{"No."},
                      {"Family"},
                      {"Manufacturer"},
                      {"Speed", kRightAligned},
                      {"Maximum", kRightAligned},
                      {"External clock", kRightAligned},
                      {"Caches"},
                      {"Disabled"}},
                     rows);
}

std::string MemoryMarkup(const Memory& memory) {
    std::string markup = HtmlFacts({{"Total", TotalText(memory)}});
    markup += MemoryPicture(memory);
    for (const std::string& note : MemoryNotes(memory)) markup += HtmlNote(note);
    return markup;
}

std::string PowerMarkup(const Power& power) {
    std::vector<Row> rows;
    for (const PowerSupply& supply : power.supplies)
        rows.push_back({"Supply " + std::to_string(rows.size() + 1), supply.name,
                        supply.manufacturer, supply.serialNumber, supply.status});
    std::string markup =
        HtmlTable("Power supplies",
                  {{"No."}, {"Name"}, {"Manufacturer"}, {"Serial number"}, {"Status"}}, rows);
    if (power.redundant != 0)
        markup += HtmlNote("Supplies in redundant units: " + std::to_string(power.redundant) + '.');
    return markup;
}

std::string FanMarkup(const Fans& fans) {
    std::vector<Row> rows;
    for (const Fan& fan : fans)
        rows.push_back({"Fan " + std::to_string(rows.size() + 1), fan.speed});
    return HtmlTable("Cooling devices with their nominal speed", {{"No."}, {"Nominal speed"}},
                     rows);
}

std::string PortMarkup(const Ports& ports) {
    std::vector<Row> rows;
    for (const Port& port : ports) rows.push_back({port.designation, port.type});
    return HtmlTable("Port connectors", {{"Designation"}, {"Type"}}, rows);
}

}  // namespace

std::vector<HtmlSection> FirmwareSections(const MachineReport& report) {
    std::vector<HtmlSection> sections;
    const std::string board = BoardMarkup(report);
    if (!board.empty()) sections.push_back({"board", "System and board", board});
    if (report.processors)
        sections.push_back({"processors", "Processors", ProcessorMarkup(*report.processors)});
    if (report.memory) sections.push_back({"memory", "Memory", MemoryMarkup(*report.memory)});
    if (report.power) sections.push_back({"power", "Power supplies", PowerMarkup(*report.power)});
    if (report.fans) sections.push_back({"fans", "Fans", FanMarkup(*report.fans)});
    if (report.ports) sections.push_back({"ports", "Ports", PortMarkup(*report.ports)});
    return sections;
}

}  // namespace tool
