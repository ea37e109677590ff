// SPDX-License-Identifier: MIT
//
// Taking dmidecode's text apart.

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

#include "DmidecodeText.h"

namespace captures {
namespace {

DmidecodeText Parse(const std::string& text) {
    std::istringstream in(text);
    return ParseDmidecode(in);
}

constexpr char kPlain[] =
    "# dmidecode 3.4\n"
    "SMBIOS 2.3 present.\n"
    "2 structures occupying 70 bytes.\n"
    "\n"
    "Handle 0x0400, DMI type 4, 35 bytes\n"
    "Processor Information\n"
    "\tSocket Designation: Slot: A\n"
    "\tFlags:\n"
    "\t\tFPU (Floating-point unit on-chip)\n"
    "\t\tMMX\n"
    "\tVersion:  \n"
    "\n"
    "Handle 0x7F00, DMI type 127, 4 bytes\n"
    "End Of Table\n"
    "\n";

TEST(DmidecodeTextTest, TakesTheVersionOfAnSmbiosEntryPoint) {
    const DmidecodeText text = Parse(kPlain);
    EXPECT_EQ(text.entryPoint, DmidecodeText::EntryPoint::kSmbios);
    EXPECT_EQ(text.major, 2u);
    EXPECT_EQ(text.minor, 3u);
}

TEST(DmidecodeTextTest, TakesAVersionOfThreeNumbers) {
    const DmidecodeText text = Parse("SMBIOS 3.1.1 present.\n");
    EXPECT_EQ(text.entryPoint, DmidecodeText::EntryPoint::kSmbios);
    EXPECT_EQ(text.major, 3u);
    EXPECT_EQ(text.minor, 1u);
}

TEST(DmidecodeTextTest, TellsALegacyEntryPointFromAnSmbiosOne) {
    EXPECT_EQ(Parse("Legacy DMI 2.3 present.\n").entryPoint, DmidecodeText::EntryPoint::kLegacy);
}

TEST(DmidecodeTextTest, HasNoEntryPointWithoutAVersionLine) {
    EXPECT_EQ(Parse("# No SMBIOS nor DMI entry point found, sorry.\n").entryPoint,
              DmidecodeText::EntryPoint::kNone);
}

TEST(DmidecodeTextTest, TakesHandleTypeAndLengthOfEachStructure) {
    const DmidecodeText text = Parse(kPlain);
    ASSERT_EQ(text.structures.size(), 2u);
    EXPECT_EQ(text.structures[0].handle, 0x400u);
    EXPECT_EQ(text.structures[0].type, 4u);
    EXPECT_EQ(text.structures[0].length, 35u);
    EXPECT_EQ(text.structures[0].title, "Processor Information");
    EXPECT_EQ(text.structures[1].type, 127u);
}

TEST(DmidecodeTextTest, SplitsALineAtItsFirstColon) {
    EXPECT_EQ(Parse(kPlain).structures[0].Value("Socket Designation"), "Slot: A");
}

TEST(DmidecodeTextTest, KeepsBlanksThatBelongToAValue) {
    EXPECT_EQ(Parse(kPlain).structures[0].Value("Version"), " ");
}

TEST(DmidecodeTextTest, GivesDeeperLinesToTheLineAbove) {
    const DmidecodeText text = Parse(kPlain);
    const DmidecodeStructure::Line* flags = text.structures[0].FindLine("Flags");
    ASSERT_NE(flags, nullptr);
    EXPECT_EQ(flags->items, (std::vector<std::string>{"FPU (Floating-point unit on-chip)", "MMX"}));
}

TEST(DmidecodeTextTest, HasNothingUnderAKeyThatIsNotThere) {
    const DmidecodeText text = Parse(kPlain);
    EXPECT_EQ(text.structures[0].Find("Voltage"), std::nullopt);
    EXPECT_EQ(text.structures[0].Value("Voltage"), "");
}

TEST(DmidecodeTextTest, FindsStructuresByTypeAndHandle) {
    const DmidecodeText text = Parse(kPlain);
    EXPECT_EQ(text.OfType(4).size(), 1u);
    EXPECT_EQ(text.First(7), nullptr);
    EXPECT_EQ(text.ByHandle(4, 0x400), &text.structures[0]);
    EXPECT_EQ(text.ByHandle(7, 0x400), nullptr);
}

TEST(DmidecodeTextTest, IgnoresRemarksBetweenStructures) {
    const DmidecodeText text = Parse(std::string(kPlain) + "Wrong DMI structures count.\n");
    EXPECT_EQ(text.structures.size(), 2u);
}

TEST(DmidecodeTextTest, KnowsThatDmidecodeStoppedAtDamage) {
    EXPECT_FALSE(Parse(kPlain).stoppedAtDamage);
    EXPECT_FALSE(Parse("Invalid entry length (16). Fixed up to 11.\n").stoppedAtDamage);
    EXPECT_TRUE(Parse("Invalid entry length (0). DMI table is broken! Stop.\n").stoppedAtDamage);
}

TEST(DmidecodeTextTest, NamesTheLineOfAHeaderThatItCannotRead) {
    try {
        Parse("SMBIOS 2.3 present.\nHandle 0x01, type 4\n");
        FAIL() << "accepted";
    } catch (const std::runtime_error& error) {
        EXPECT_NE(std::string(error.what()).find("line 2"), std::string::npos) << error.what();
    }
}

TEST(DmidecodeTextTest, RefusesAnItemWithoutALineAbove) {
    EXPECT_THROW(Parse("Handle 0x0001, DMI type 4, 35 bytes\n\t\titem\n"), std::runtime_error);
}

TEST(DmidecodeTextTest, KeepsTheFirstOfSeveralTitles) {
    const DmidecodeText text = Parse(
        "Handle 0x0A00, DMI type 10, 8 bytes\n"
        "On Board Device 1 Information\n"
        "\tType: Video\n"
        "On Board Device 2 Information\n"
        "\tType: Sound\n");
    EXPECT_EQ(text.structures[0].title, "On Board Device 1 Information");
    EXPECT_EQ(text.structures[0].lines.size(), 2u);
}

TEST(DmidecodeNumbersTest, ReadTheLeadingNumberOfAValue) {
    EXPECT_EQ(LeadingNumber("100 MHz"), 100u);
    EXPECT_EQ(LeadingNumber("0x002F"), 0x2Fu);
    EXPECT_EQ(LeadingNumber("Unknown"), std::nullopt);
    EXPECT_EQ(LeadingNumber(""), std::nullopt);
}

TEST(DmidecodeNumbersTest, ReadSizesAsKilobytes) {
    EXPECT_EQ(Kilobytes("512 kB"), 512u);
    EXPECT_EQ(Kilobytes("1 MB"), 1024u);
    EXPECT_EQ(Kilobytes("4 GB"), 4u << 20);
    EXPECT_EQ(Kilobytes("512 MB (Double-bank Connection)"), 512u << 10);
    EXPECT_EQ(Kilobytes("No Module Installed"), std::nullopt);
    EXPECT_EQ(Kilobytes("3 ns"), std::nullopt);
}

}  // namespace
}  // namespace captures
