// SPDX-License-Identifier: MIT
//
// The parts of the page: texts that are hostile, gauges, memory slots and the PCI tree.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/html/Escape.h"
#include "tools/html/Gauge.h"
#include "tools/html/InventorySections.h"
#include "tools/html/MemoryPicture.h"
#include "tools/html/Page.h"
#include "tools/html/PciTree.h"
#include "tools/html/SensorSections.h"

namespace tool {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

TEST(EscapedTest, MarkupCharactersBecomeReferences) {
    EXPECT_EQ(Escaped("<script>alert('x' & \"y\")</script>"),
              "&lt;script&gt;alert(&#39;x&#39; &amp; &quot;y&quot;)&lt;/script&gt;");
    EXPECT_EQ(Escaped("]]>"), "]]&gt;");
    EXPECT_EQ(Escaped("<!--"), "&lt;!--");
}

TEST(EscapedTest, CharactersStayAndOtherBytesAreShown) {
    EXPECT_EQ(Escaped("  Zoë 漢字 😀 "), "Zoë 漢字 😀");
    EXPECT_EQ(Escaped("a\nb\x1B[31m\x7F"), "a\\x0Ab\\x1B[31m\\x7F");
    EXPECT_EQ(Escaped("\xC3(\xFF\xE2\x82"), "\\xC3(\\xFF\\xE2\\x82") << "broken UTF-8";
    EXPECT_EQ(Escaped("\xC0\xBC"), "\\xC0\\xBC") << "an overlong <";
    EXPECT_EQ(Escaped("a\u202Eb"), "a\\xE2\\x80\\xAEb") << "turns the text around";
    EXPECT_EQ(Escaped("\uFFFE"), "\\xEF\\xBF\\xBE");
    EXPECT_EQ(Escaped(std::string_view("a\0b", 3)), "a\\x00b");
    EXPECT_EQ(EscapedOrDash("  "), "–");
}

Limits TemperatureLimits() {
    Limits limits;
    limits[3] = 75;
    limits[4] = 85;
    return limits;
}

TEST(GaugeZonesTest, UpperLimitsLeaveWhatIsBelowThemGood) {
    EXPECT_THAT(GaugeZones(TemperatureLimits(), 54.0),
                ElementsAre(GaugeZone{0, 75, Verdict::kOk}, GaugeZone{75, 85, Verdict::kWarning},
                            GaugeZone{85, 97.75, Verdict::kCritical}));
}

TEST(GaugeZonesTest, LimitsOnBothSidesHaveZonesOnBothSides) {
    Limits limits;
    limits[1] = 10;
    limits[0] = 11;
    limits[3] = 13;
    limits[4] = 14;
    const auto zones = GaugeZones(limits, std::nullopt);
    ASSERT_EQ(zones.size(), 5U);
    EXPECT_EQ(zones[0].verdict, Verdict::kCritical);
    EXPECT_EQ(zones[1], (GaugeZone{10, 11, Verdict::kWarning}));
    EXPECT_EQ(zones[2], (GaugeZone{11, 13, Verdict::kOk}));
    EXPECT_LT(zones[0].from, 10);
    EXPECT_GT(zones[4].to, 14);
}

TEST(GaugeZonesTest, TheScaleReachesAReadingBeyondTheLimits) {
    EXPECT_GT(GaugeZones(TemperatureLimits(), 200.0).back().to, 200);
    EXPECT_LT(GaugeZones(TemperatureLimits(), -20.0).front().from, -20);
}

TEST(GaugeZonesTest, OneLimitOfZeroStillHasAScale) {
    Limits limits;
    limits[1] = 0;
    const auto zones = GaugeZones(limits, 0.0);
    EXPECT_LT(zones.front().from, zones.back().to);
}

JudgedSensor JudgedOf(const std::string& name, std::optional<double> value, const Limits& limits) {
    JudgedSensor judged;
    judged.sensor.record.name = name;
    judged.sensor.record.eventType = kThresholdEventType;
    judged.sensor.answer.status = SensorAnswer::Status::kRead;
    judged.sensor.value = value;
    judged.sensor.limits = limits;
    judged.verdict = Verdict::kWarning;
    judged.reason = "upper non-critical threshold is 75";
    return judged;
}

TEST(GaugePictureTest, SaysInWordsWhatItShows) {
    const std::string picture =
        GaugePicture(JudgedOf("CPU \"2\" <b>", 79, TemperatureLimits()), "gauge-3");
    EXPECT_THAT(picture,
                HasSubstr("<title id=\"gauge-3-title\">CPU &quot;2&quot; &lt;b&gt;</title>"));
    EXPECT_THAT(picture, HasSubstr("Reading: 79. upper non-critical: 75. upper critical: 85. "
                                   "Verdict: WARNING."));
    EXPECT_THAT(picture, HasSubstr("class=\"pointer\""));
}

TEST(GaugePictureTest, HasNoPointerWithoutAReading) {
    EXPECT_THAT(GaugePicture(JudgedOf("CPU", std::nullopt, TemperatureLimits()), "gauge-1"),
                Not(HasSubstr("class=\"pointer\"")));
}

TEST(GaugePictureTest, OfASensorThatIsNotJudgedNamesNoVerdict) {
    JudgedSensor judged = JudgedOf("CPU", 79, TemperatureLimits());
    judged.verdict.reset();
    EXPECT_THAT(GaugePicture(judged, "gauge-1"), HasSubstr("upper critical: 85.</desc>"));
}

TEST(SensorSectionsTest, SensorThatIsNotJudgedHasAGaugeWithAPlainMark) {
    JudgedSensor judged = JudgedOf("CPU", 79, TemperatureLimits());
    judged.verdict.reset();
    judged.reason = "left out by a rule";
    const auto sections = SensorSections({Verdict::kUnknown, {judged}, true});
    ASSERT_EQ(sections.size(), 1U);
    EXPECT_EQ(sections[0].id, "sensors");
    EXPECT_THAT(sections[0].markup, HasSubstr("<li class=\"plain\">"));
    EXPECT_THAT(sections[0].markup,
                HasSubstr("<span class=\"mark plain\"><span aria-hidden=\"true\"></span> not "
                          "judged</span>"));
}

TEST(SensorSectionsTest, WithoutThresholdsThereAreNoGauges) {
    const auto sections =
        SensorSections({Verdict::kOk, {JudgedOf("Intrusion", std::nullopt, {})}, true});
    ASSERT_EQ(sections.size(), 1U);
    EXPECT_EQ(sections[0].id, "states");
}

TEST(VerdictMarkupTest, SaysThatTheRepositoryHasNotBeenReadToItsEnd) {
    const std::string note = "<p>The BMC's sensor repository could not be read to its end.</p>\n";
    EXPECT_THAT(VerdictMarkup(Health{Verdict::kUnknown, {}, false}), HasSubstr(note));
    EXPECT_THAT(VerdictMarkup(Health{Verdict::kUnknown, {}, true}), Not(HasSubstr(note)));
}

TEST(VerdictMarkupTest, ListsFaultsOnlyWhereThereAreSome) {
    Health health{Verdict::kWarning, {JudgedOf("CPU", 79, TemperatureLimits())}, true};
    EXPECT_THAT(VerdictMarkup(health), HasSubstr("<ul class=\"faults\">\n<li>"));
    health.sensors[0].verdict = Verdict::kOk;
    EXPECT_THAT(VerdictMarkup(health), Not(HasSubstr("faults")));
}

TEST(DeviceSectionsTest, PartsOfTheLoadThatAreMissingHaveNoShare) {
    MachineReport report;
    report.load = Load{1, std::vector<int>{5}, std::nullopt, {}};
    const auto sections = DeviceSections(report);
    ASSERT_EQ(sections.size(), 1U);
    EXPECT_THAT(sections[0].markup, HasSubstr("Processor 1: 5 %"));
    EXPECT_THAT(sections[0].markup, Not(HasSubstr("aria-label=\"Memory")));
    report.load = Load{1, std::nullopt, std::nullopt, {}};
    EXPECT_TRUE(DeviceSections(report).empty());
}

TEST(DeviceSectionsTest, DrivesAreShownWithoutPartitionsThatCouldNotBeRead) {
    MachineReport report;
    report.drives = Drives{};
    const auto sections = DeviceSections(report);
    ASSERT_EQ(sections.size(), 1U);
    EXPECT_EQ(sections[0].markup, "<p class=\"note\">IDE disks: none.</p>\n");
}

TEST(MemoryPictureTest, ShowsAModuleOrAnEmptySlotForEachBank) {
    const std::string picture = MemoryPicture(
        {1024, {{1, "1024 MB", "DDR", "", "266 MHZ", "A & B"}, {2, "", "", "", "", ""}}});
    EXPECT_THAT(picture, HasSubstr("aria-label=\"Slot 1: a module of 1024 MB\""));
    EXPECT_THAT(picture, HasSubstr("DDR, 266 MHZ, A &amp; B"));
    EXPECT_THAT(picture, HasSubstr("aria-label=\"Slot 2: empty\""));
    EXPECT_EQ(MemoryPicture({0, {}}), "");
}

PciFunction FunctionAt(int bus, int device, std::optional<int> secondaryBus = {}) {
    PciFunction function{};
    function.location =
        "bus:" + std::to_string(bus) + ", dev:" + std::to_string(device) + ", func:0";
    function.secondaryBus = secondaryBus;
    return function;
}

TEST(PciTreeTest, ABridgesBusIsBelowTheBridge) {
    const PciFunctions functions{FunctionAt(0, 0), FunctionAt(0, 2, 2), FunctionAt(2, 3),
                                 FunctionAt(2, 4, 5), FunctionAt(5, 0)};
    const auto roots = PciTreeOf(functions);
    ASSERT_EQ(roots.size(), 1U);
    EXPECT_EQ(roots[0].bus, 0);
    ASSERT_EQ(roots[0].functions.size(), 2U);
    ASSERT_EQ(roots[0].functions[1].below.size(), 2U);
    EXPECT_EQ(roots[0].functions[1].below[1].below.size(), 1U);
}

TEST(PciTreeTest, ABusThatNoBridgeLeadsToIsARoot) {
    const PciFunctions functions{FunctionAt(0, 0), FunctionAt(3, 1)};
    const auto roots = PciTreeOf(functions);
    ASSERT_EQ(roots.size(), 2U);
    EXPECT_EQ(roots[1].bus, 3);
}

TEST(PciTreeTest, AFunctionIsShownByWhatIsKnownOfIt) {
    PciFunction function = FunctionAt(0, 0);
    function.className = "Bridge";
    function.id = PciId{0x8086, 0x2540};
    EXPECT_THAT(PciTreePicture({function}),
                HasSubstr("<strong>Bridge</strong> <code class=\"id\">8086:2540</code></span>\n"))
        << "the class, and no names";
    function.subClass = "Host bridge";
    function.name.vendor = "A Maker";
    EXPECT_THAT(PciTreePicture({function}),
                HasSubstr("<strong>Host bridge</strong> <code class=\"id\">8086:2540</code> <span "
                          "class=\"names\">A Maker</span></span>\n"))
        << "the sub-class, and the vendor alone";
}

int CountNodes(const std::vector<PciNode>& nodes) {
    int count = 0;
    for (const PciNode& node : nodes) count += 1 + CountNodes(node.below);
    return count;
}

TEST(PciTreeTest, BridgesThatLeadInACircleAreShownOnceEach) {
    const PciFunctions functions{FunctionAt(0, 1, 0), FunctionAt(1, 0, 2), FunctionAt(2, 0, 1)};
    int count = 0;
    for (const PciRoot& root : PciTreeOf(functions)) count += CountNodes(root.functions);
    EXPECT_EQ(count, 3);
}

// A report in which every text of the machine is this one.
MachineReport ReportOf(const std::string& text) {
    MachineReport report;
    report.time = "2026-11-22T10:00:00Z";
    report.version = "1.0.0";
    report.health = Health{Verdict::kWarning, {JudgedOf(text, 79, TemperatureLimits())}, true};
    report.health->sensors.push_back(JudgedOf(text, std::nullopt, {}));
    report.system = System{text, text, text};
    report.board = Board{text, text, text, text, text, text};
    report.processors = {
        {text, text, text, text, text, false, false, {{1, text, text, text, text}}}};
    report.memory = Memory{512, {{1, '5' + text, text, text, text, text}}};
    report.ports = Ports{{text, text}};
    report.power = Power{1, {{text, text, text, text}}, {}};
    report.fans = Fans{{text}};
    report.watchdog = Watchdog{0, 0, 0};
    report.bmc = Bmc{text, text, text, text, text, text, text, text, text, text, text, text};
    PciFunction function{text, text, text, 0, 0, 0, text};
    function.id = PciId{1, 2};
    function.name = {text, text};
    report.pci = PciFunctions{function};
    report.drives = Drives{{text, text, text, text, text}};
    report.partitions = Partitions{{{text, text, text}}, {}};
    report.load = Load{1, std::vector<int>{5}, 10, {}};
    report.notRead = {{text, text}};
    report.ways = {{text, true, text, text, ""}, {text, false, text, "", text}};
    return report;
}

// The tags of a page with the names of their attributes, and neither values nor texts.
std::string TagsOf(const std::string& page) {
    std::string tags;
    bool isTag = false;
    bool isValue = false;
    for (const char c : page) {
        if (c == '<') isTag = true;
        if (isTag && c == '"') isValue = !isValue;
        if (isTag && !isValue) tags += c;
        if (c == '>' && !isValue) isTag = false;
    }
    return tags;
}

TEST(HtmlPageTest, NoTextOfTheMachineBecomesMarkup) {
    const std::string harmless = TagsOf(HtmlPage(ReportOf("plain")));
    for (const char* const hostile :
         {"</title><script>alert(1)</script>", "\" onload=\"alert(1)", "' onload='x", "]]>", "<!--",
          "\x01\x1B\x7F", "\xC3\x28\xFF", "&lt;script&gt;", "</style>", "a\nb", "--><b>"}) {
        const std::string page = HtmlPage(ReportOf(hostile));
        EXPECT_EQ(TagsOf(page), harmless) << hostile;
        EXPECT_EQ(page.find("<script"), std::string::npos) << hostile;
    }
}

TEST(HtmlPageTest, ThePageNeedsNothingFromOutside) {
    const std::string page = HtmlPage(ReportOf("plain"));
    for (const char* const outside : {"http:", "https:", "//", "src=", "@import", "url(", "<script",
                                      "<link", "<iframe", "onclick"})
        EXPECT_THAT(page, Not(HasSubstr(outside)));
}

TEST(HtmlPageTest, TheVerdictComesFirst) {
    const std::string page = HtmlPage(ReportOf("plain"));
    const std::size_t main = page.find("<main>");
    EXPECT_EQ(page.find("<section", main), page.find("<section id=\"health\""));
    EXPECT_THAT(page, HasSubstr("Health: WARNING"));
}

TEST(HtmlPageTest, TheLastSectionSaysHowEachAreaWasRead) {
    MachineReport report;
    EXPECT_THAT(HtmlPage(report), Not(HasSubstr("Read from")));
    report.ways = {{"pci", false, "/sys/bus/pci/devices", "buses 0 to 10", ""},
                   {"bmc", true, "/dev/ipmi", "", "there is none"}};
    const std::string page = HtmlPage(report);
    EXPECT_THAT(page, HasSubstr("<section id=\"read-from\""));
    EXPECT_THAT(page, HasSubstr("/sys/bus/pci/devices, through the kernel (buses 0 to 10)"));
    EXPECT_THAT(page, HasSubstr("nothing, /dev/ipmi cannot be read"));
}

TEST(HtmlPageTest, WithoutAnythingReadTheVerdictIsUnknown) {
    MachineReport report;
    report.notRead = {{"/dev/ipmi", "cannot open /dev/ipmi"}};
    const std::string page = HtmlPage(report);
    EXPECT_THAT(page, HasSubstr("Health: UNKNOWN"));
    EXPECT_THAT(page, HasSubstr("<h1>Server without a name</h1>"));
    EXPECT_THAT(page, HasSubstr("<strong>/dev/ipmi</strong>: cannot open /dev/ipmi"));
}

}  // namespace
}  // namespace tool
