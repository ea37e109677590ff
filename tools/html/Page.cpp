// SPDX-License-Identifier: MIT
//
// Puts the sections together, the verdict first.

#include "tools/html/Page.h"

#include <algorithm>

#include "tools/base/WayFacts.h"
#include "tools/html/Escape.h"
#include "tools/html/InventorySections.h"
#include "tools/html/SensorSections.h"
#include "tools/html/Style.h"

namespace tool {
namespace {

// Forbids whatever the page does not need, should a text of the machine ever be taken for markup.
constexpr const char* kPolicy = "default-src 'none'; style-src 'unsafe-inline'";

// The system's name, else the board's.
std::string ServerName(const MachineReport& report) {
    std::string name;
    if (report.system)
        name = Escaped(Escaped(report.system->manufacturer).empty()
                           ? report.system->product
                           : report.system->manufacturer + ' ' + report.system->product);
    if (name.empty() && report.board)
        name = Escaped(report.board->manufacturer + ' ' + report.board->product);
    return name.empty() ? "Server without a name" : name;
}

// "2026-11-22 10:35:00 UTC" of "2026-11-22T10:35:00Z".
std::string ReadableTime(std::string time) {
    std::replace(time.begin(), time.end(), 'T', ' ');
    if (time.ends_with('Z')) time.replace(time.size() - 1, 1, " UTC");
    return time;
}

std::string HeadMarkup(const std::string& name) {
    return std::string(
               "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
               "<meta http-equiv=\"Content-Security-Policy\" content=\"") +
           kPolicy +
           "\">\n<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
           "<meta name=\"color-scheme\" content=\"light dark\">\n<title>" +
           name + ": server report</title>\n<style>" + kHtmlStyle + "</style>\n</head>\n";
}

std::string NavigationMarkup(const std::vector<HtmlSection>& sections) {
    std::string markup =
        "<nav aria-label=\"Sections\">\n<ul>\n<li><a href=\"#health\">Health</a></li>\n";
    for (const HtmlSection& section : sections)
        markup += "<li><a href=\"#" + section.id + "\">" + Escaped(section.title) + "</a></li>\n";
    return markup + "</ul>\n</nav>\n";
}

std::string UnreadMarkup(const std::vector<UnreadSource>& sources) {
    std::string markup = "<ul>\n";
    for (const UnreadSource& source : sources)
        markup += "<li><strong>" + Escaped(source.name) + "</strong>: " + Escaped(source.message) +
                  "</li>\n";
    return markup + "</ul>\n";
}

std::vector<HtmlSection> AllSections(const MachineReport& report) {
    std::vector<HtmlSection> sections;
    const auto append = [&](const std::vector<HtmlSection>& more) {
        sections.insert(sections.end(), more.begin(), more.end());
    };
    if (report.health) append(SensorSections(*report.health));
    append(FirmwareSections(report));
    append(DeviceSections(report));
    if (!report.notRead.empty())
        sections.push_back({"not-read", "Not read", UnreadMarkup(report.notRead)});
    if (!report.ways.empty())
        sections.push_back({"read-from", "Read from", HtmlFacts(WayFacts(report.ways))});
    return sections;
}

}  // namespace

std::string HtmlPage(const MachineReport& report) {
    const std::string name = ServerName(report);
    const std::vector<HtmlSection> sections = AllSections(report);
    std::string markup = HeadMarkup(name) + "<body>\n<header>\n<h1>" + name +
                         "</h1>\n<p>Server report, read <time datetime=\"" + report.time + "\">" +
                         ReadableTime(report.time) + "</time></p>\n</header>\n" +
                         NavigationMarkup(sections) + "<main>\n" + VerdictMarkup(report.health);
    for (const HtmlSection& section : sections) markup += HtmlOf(section);
    return markup + "</main>\n<footer>\n<p>Written by talvane " + report.version +
           ".</p>\n</footer>\n</body>\n</html>\n";
}

}  // namespace tool
