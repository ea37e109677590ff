// SPDX-License-Identifier: MIT
//
// What the devices and the kernel say.

#include <algorithm>

#include "tools/base/ByteSize.h"
#include "tools/html/Escape.h"
#include "tools/html/InventorySections.h"
#include "tools/html/PciTree.h"

namespace tool {
namespace {

std::string PciMarkup(const PciFunctions& functions) {
    if (functions.empty()) return HtmlNote("None.");
    std::vector<Row> rows;
    for (const PciFunction& function : functions)
        rows.push_back({PciAddress(function.location), function.className, function.subClass,
                        function.irq == 0 ? "" : std::to_string(function.irq),
                        PciBaseText(function), PciStatusText(function)});
    return PciTreePicture(functions) + HtmlTable("Resources of the PCI functions",
                                                 {{"Address"},
                                                  {"Class"},
                                                  {"Sub-class"},
                                                  {"IRQ", Column::Align::kRight},
                                                  {"Base"},
                                                  {"Status"}},
                                                 rows);
}

std::string DriveMarkup(const Drives& drives) {
    std::vector<Row> rows;
    for (const Drive& drive : drives)
        rows.push_back({DevicePath(drive), drive.model, SizeText(drive.size), SerialText(drive),
                        drive.position});
    return HtmlTable(
        "IDE disks",
        {{"Device"}, {"Model"}, {"Size", Column::Align::kRight}, {"Serial number"}, {"Position"}},
        rows);
}

std::string PartitionMarkup(const Partitions& partitions) {
    std::vector<Row> rows;
    for (const Partition& partition : partitions.list)
        rows.push_back({partition.device, partition.fileSystem, SizeText(partition.size)});
    return HtmlTable("Partitions of the IDE disks",
                     {{"Partition"}, {"Type"}, {"Size", Column::Align::kRight}}, rows);
}

std::string ShareMarkup(const std::string& name, int percent) {
    const std::string text = std::to_string(percent) + " %";
    return "<li><span>" + name +
           "</span><svg class=\"share\" role=\"img\" viewBox=\"0 0 100 4\" "
           "preserveAspectRatio=\"none\" aria-label=\"" +
           name + ": " + text +
           "\"><rect class=\"all\" width=\"100\" height=\"4\"/><rect class=\"used\" width=\"" +
           std::to_string(std::clamp(percent, 0, 100)) +
           "\" height=\"4\"/></svg>"
           "<span class=\"number\">" +
           text + "</span></li>\n";
}

std::string LoadMarkup(const Load& load) {
    std::string shares;
    int number = 0;
    for (const int percent : load.processors.value_or(std::vector<int>{}))
        shares += ShareMarkup("Processor " + std::to_string(++number), percent);
    if (load.memory) shares += ShareMarkup("Memory", *load.memory);
    if (shares.empty()) return "";
    return "<ul class=\"shares\">\n" + shares + "</ul>\n" + HtmlNote(LoadNote(load));
}

std::string BmcMarkup(const MachineReport& report) {
    std::vector<Fact> facts;
    if (report.bmc) facts = BmcFacts(*report.bmc);
    if (report.watchdog)
        for (const Fact& fact : WatchdogFacts(*report.watchdog))
            facts.push_back({"Watchdog: " + fact.name, fact.value});
    return facts.empty() ? "" : HtmlFacts(facts);
}

}  // namespace

std::vector<HtmlSection> DeviceSections(const MachineReport& report) {
    std::vector<HtmlSection> sections;
    const auto add = [&](const char* id, const char* title, const std::string& markup) {
        if (!markup.empty()) sections.push_back({id, title, markup});
    };
    if (report.pci) add("pci", "PCI", PciMarkup(*report.pci));
    if (report.drives)
        add("drives", "Drives",
            DriveMarkup(*report.drives) +
                (report.partitions ? PartitionMarkup(*report.partitions) : ""));
    if (report.load) add("load", "Load", LoadMarkup(*report.load));
    add("controller", "Management controller", BmcMarkup(report));
    return sections;
}

}  // namespace tool
