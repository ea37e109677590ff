// SPDX-License-Identifier: MIT
//
// Names out of a list of the form of pci.ids.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "tools/library/PciNames.h"

namespace tool {
namespace {

constexpr const char* kList =
    "# a comment\n"
    "\n"
    "0001  First Maker\n"
    "\t0002  Its Adapter\n"
    "\t\t0001 0002  A subsystem\n"
    "\t0003  Its Bridge\r\n"
    "8086  Intel Corporation\n"
    "\t0002  Another Adapter\n"
    "C 01  Mass storage controller\n"
    "\t0003  No device, but a class\n";

std::map<PciId, PciName> NamesOf(const char* list, const std::set<PciId>& ids) {
    std::istringstream stream(list);
    return PciNamesIn(stream, ids);
}

PciName NameOf(const char* list, PciId id) {
    const auto names = NamesOf(list, {id});
    return names.empty() ? PciName{} : names.begin()->second;
}

TEST(PciNamesTest, ADeviceIsNamedByTheLineBelowItsOwnVendor) {
    EXPECT_EQ(NameOf(kList, {0x0001, 0x0002}), (PciName{"First Maker", "Its Adapter"}));
    EXPECT_EQ(NameOf(kList, {0x8086, 0x0002}), (PciName{"Intel Corporation", "Another Adapter"}));
    EXPECT_EQ(NameOf(kList, {0x0001, 0x0003}), (PciName{"First Maker", "Its Bridge"}));
}

TEST(PciNamesTest, AnUnknownDeviceHasItsVendorsNameAndAnUnknownVendorNone) {
    EXPECT_EQ(NameOf(kList, {0x8086, 0x0003}), (PciName{"Intel Corporation", ""}));
    EXPECT_EQ(NameOf(kList, {0x0002, 0x0002}), PciName{});
}

TEST(PciNamesTest, AllFunctionsOfAListAreNamedInOneReading) {
    const auto names = NamesOf(kList, {{0x0001, 0x0002}, {0x0001, 0x0003}, {0x0003, 0x0001}});
    EXPECT_EQ(names.size(), 2U);
}

TEST(PciNamesTest, LinesOfAnotherFormArePassedOver) {
    EXPECT_EQ(NameOf("000\n0001\n0001\tx\n00g1  x\n\t\n\t0002\n", {0x0001, 0x0002}), PciName{});
    EXPECT_EQ(NameOf("\t0002  Before any vendor\n", {0x0000, 0x0002}), PciName{});
    EXPECT_EQ(NameOf("", {0x0001, 0x0002}), PciName{});
}

TEST(KnownPciNamesTest, AreThoseOfTheFileThatTheEnvironmentNames) {
    const std::string list = testing::TempDir() + "pci.ids-" + std::to_string(getpid());
    std::ofstream(list) << kList;
    setenv("TALVANE_PCI_IDS", list.c_str(), 1);
    EXPECT_EQ(KnownPciNames({{0x0001, 0x0002}}).at({0x0001, 0x0002}).device, "Its Adapter");
    for (const char* const file : {"", "/nowhere/pci.ids", "/"}) {
        setenv("TALVANE_PCI_IDS", file, 1);
        EXPECT_TRUE(KnownPciNames({{0x0001, 0x0002}}).empty()) << file;
    }
    EXPECT_EQ(std::remove(list.c_str()), 0);
}

}  // namespace
}  // namespace tool
