// SPDX-License-Identifier: MIT
//
// What the texts of PCI functions, drives, partitions, load and watchdog say beyond their fields.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tools/records/Drives.h"
#include "tools/records/Load.h"
#include "tools/records/Partitions.h"
#include "tools/records/Pci.h"
#include "tools/records/Watchdog.h"

namespace tool {
namespace {

TEST(PciAddressTest, ALocationBecomesBusDeviceFunctionInHexadecimal) {
    EXPECT_EQ(PciAddress("bus:0, dev:31, func:1"), "00:1f.1");
    EXPECT_EQ(PciAddress("bus:10, dev:2, func:0"), "0a:02.0");
    EXPECT_EQ(PciAddress("somewhere"), "somewhere");
}

TEST(PciTextTest, TellsPortsFromMemoryAndDropsTheFlags) {
    PciFunction ide{
        "bus:0, dev:31, func:1",       "Mass storage controller", "IDE controller", 14, 0xF001, 2,
        "66 MHz Capable;Speed=Medium;"};
    PciFunction display{"bus:1, dev:0, func:0", "Display controller", "", 0, 0xFD000008, 0x27, ""};
    PciFunction bridge{"bus:0, dev:0, func:0", "Bridge device", "Host bridge", 0, 0, 0, ""};
    EXPECT_EQ(ToText(PciFunctions{ide, display, bridge}),
              "PCI functions\n"
              "-------------\n"
              "  Address  ID  Class                    Sub-class       IRQ  Base            Rev.\n"
              "  00:1f.1  -   Mass storage controller  IDE controller   14  I/O 0xF000      02\n"
              "  01:00.0  -   Display controller       -                 -  mem 0xFD000000  27\n"
              "  00:00.0  -   Bridge device            Host bridge       -  -               00\n"
              "\n"
              "  Address  Status\n"
              "  00:1f.1  66 MHz Capable; Speed=Medium\n");
    EXPECT_EQ(ToJson(PciFunctions{ide}).dump(),
              R"([{"address":"00:1f.1","location":"bus:0, dev:31, func:1",)"
              R"("vendor":null,"device":null,)"
              R"("class":"Mass storage controller","subClass":"IDE controller","irq":14,)"
              R"("baseAddress":61441,"revision":2,"status":"66 MHz Capable;Speed=Medium;",)"
              R"("secondaryBus":null}])");
}

TEST(PciTextTest, NamesVendorsAndDevicesInATableOfTheirOwn) {
    PciFunction bridge{"bus:0, dev:2, func:0", "Bridge device", "PCI-to-PCI bridge", 0, 0, 3, ""};
    bridge.id = PciId{0x8086, 0x00AB};
    bridge.name = {"Intel Corporation", ""};
    bridge.secondaryBus = 2;
    PciFunction other{"bus:2, dev:0, func:0", "Network controller", "", 0, 0, 0, ""};
    other.id = PciId{0x1, 0x2};
    EXPECT_EQ(ToText(PciFunctions{bridge, other}),
              "PCI functions\n"
              "-------------\n"
              "  Address  ID         Class               Sub-class          IRQ  Base  Rev.\n"
              "  00:02.0  8086:00ab  Bridge device       PCI-to-PCI bridge    -  -     03\n"
              "  02:00.0  0001:0002  Network controller  -                    -  -     00\n"
              "\n"
              "  Address  Vendor             Device\n"
              "  00:02.0  Intel Corporation  -\n");
    const Json json = ToJson(PciFunctions{bridge, other});
    EXPECT_EQ(json[0]["vendor"].dump(), R"({"code":32902,"name":"Intel Corporation"})");
    EXPECT_EQ(json[0]["device"].dump(), R"({"code":171,"name":null})");
    EXPECT_EQ(json[0]["secondaryBus"], 2);
    EXPECT_EQ(json[1]["vendor"].dump(), R"({"code":1,"name":null})");
}

const Drive kDrive{"ide", "Secondry Slave", "EXAMPLE 40", "40020664320",
                   "  EX123456          and what follows"};

TEST(DriveTextTest, ShowsASizeForPeopleAndTheSerialNumberWithoutWhatFollowsIt) {
    EXPECT_EQ(ToText(Drives{kDrive}),
              "Drives\n"
              "------\n"
              "  Device    Controller  Position        Model          Size  Serial number\n"
              "  /dev/hdd  ide         Secondry Slave  EXAMPLE 40  40.0 GB  EX123456\n");
}

TEST(DriveJsonTest, KeepsTheExactTextsBesideThem) {
    const Json json = ToJson(Drives{kDrive});
    EXPECT_EQ(json[0]["size"].dump(), R"({"value":40020664320,"unit":"B","text":"40020664320"})");
    EXPECT_EQ(json[0]["serialNumber"], "EX123456") << "without padding";
    EXPECT_EQ(json[0]["serialNumberRead"], "EX123456          and what follows");
}

Drive DriveAt(const char* position) {
    Drive drive = kDrive;
    drive.position = position;
    return drive;
}

TEST(DevicePathTest, FollowsFromThePosition) {
    EXPECT_EQ(DevicePath(DriveAt("Primary Master")), "/dev/hda");
    EXPECT_EQ(DevicePath(DriveAt("Secondry Slave")), "/dev/hdd");
    EXPECT_EQ(DevicePath(DriveAt("Nowhere")), "");
}

TEST(PartitionTextTest, ShowsASizeForPeople) {
    EXPECT_EQ(ToText(Partitions{{{"/dev/hda1", "Linux", "10737418240"}}, {}}),
              "Partitions\n"
              "----------\n"
              "  Partition  Type      Size\n"
              "  /dev/hda1  Linux  10.7 GB\n");
}

TEST(LoadTextTest, HasALineForEachProcessorAndTheMemory) {
    EXPECT_EQ(ToText(Load{1, std::vector<int>{7, 100}, 63, {}}),
              "Load\n"
              "----\n"
              "  Part           Use\n"
              "  Processor 1    7 %\n"
              "  Processor 2  100 %\n"
              "  Memory        63 %\n"
              "\n"
              "  Processors: not idle, within 1 s. Memory: as the command free counts it.\n");
}

TEST(LoadTextTest, SaysThatNoMoreThanEightProcessorsAreWatched) {
    const std::string note = "first eight processors";
    EXPECT_EQ(ToText(Load{1, std::vector<int>(7), 0, {}}).find(note), std::string::npos);
    EXPECT_NE(ToText(Load{1, std::vector<int>(8), 0, {}}).find(note), std::string::npos);
}

TEST(LoadTextTest, ShowsADashForWhatCouldNotBeRead) {
    const Load load{5, std::nullopt, std::nullopt, {}};
    EXPECT_NE(ToText(load).find("  Processors    -\n  Memory        -\n"), std::string::npos);
    EXPECT_EQ(
        ToJson(load).dump(),
        R"({"interval":{"value":5,"unit":"s","text":"5 s"},"processors":null,"memory":null})");
}

TEST(WatchdogTextTest, NamesTheActionAndCountsInSeconds) {
    EXPECT_EQ(ToText(Watchdog{1, 180000, 12300}),
              "Watchdog\n"
              "--------\n"
              "  Action   hard-reset\n"
              "  Timeout  180.0 s\n"
              "  Left     12.3 s\n");
    EXPECT_EQ(ActionText(3), "power-cycle");
    EXPECT_EQ(ActionText(7), "7") << "reserved by the standard";
}

}  // namespace
}  // namespace tool
