// SPDX-License-Identifier: MIT
//
// The metrics of parts other than sensors, and what is said of the collection itself.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "MetricFormat.h"
#include "tools/metrics/InventoryMetrics.h"
#include "tools/metrics/MachineMetrics.h"

namespace tool {
namespace {

using testing::IsEmpty;

MetricFile Parse(const std::string& text) {
    const MetricFile file = ParseMetrics(text);
    EXPECT_THAT(file.problems, IsEmpty()) << text;
    return file;
}

template <class Part>
MetricFile Metrics(const Part& part) {
    MetricPage page;
    AddInventory(page, part);
    return Parse(page.Text());
}

TEST(InventoryMetricsTest, ProcessorsHaveTheirClockInHertz) {
    const Processors processors = {
        {"Intel Xeon",
         "Intel",
         "2800 MHZ",
         "3600 MHZ",
         "133 MHZ",
         false,
         false,
         {{1, "L1", "8 KB", "8 KB", ""}, {2, "L2", "512 KB", "512 KB", ""}}},
        {"Intel Xeon", "Intel", "0 MHZ", "Unknown", "", true, false, {}},
        {"", "", "", "", "", false, true, {}}};
    const MetricFile file = Metrics(processors);
    EXPECT_EQ(file.Value("talvane_processor_speed_hertz"), "2800000000") << "0 is not known";
    EXPECT_EQ(file.Value("talvane_processor_maximum_speed_hertz"), "3600000000");
    EXPECT_EQ(file.Value("talvane_processor_enabled", {{"processor", "1"}}), "1");
    EXPECT_EQ(file.Value("talvane_processor_enabled", {{"processor", "2"}}), "0");
    EXPECT_EQ(file.Value("talvane_processor_enabled", {{"processor", "3"}}), "");
    EXPECT_EQ(
        file.Value("talvane_processor_cache_size_bytes", {{"processor", "1"}, {"level", "2"}}),
        "524288");
    EXPECT_EQ(file.Value("talvane_processor_info", {{"processor", "3"}}), "1");
}

TEST(InventoryMetricsTest, MemoryIsInBytesAndUnknownSizesAreLeftOut) {
    const Memory memory = {1536,
                           {{5, "1024 MB", "DDR", "Synchronous", "266 MHZ", "Samsung"},
                            {6, "512 MB", "DDR", "", "", ""},
                            {7, "32767 KB", "DDR", "", "", ""},
                            {0, "", "", "", "", ""}}};
    const MetricFile file = Metrics(memory);
    EXPECT_EQ(file.Value("talvane_memory_size_bytes"), "1610612736");
    EXPECT_EQ(file.Value("talvane_memory_module_size_bytes", {{"module", "1"}, {"slot", "5"}}),
              "1073741824");
    EXPECT_EQ(file.Value("talvane_memory_module_size_bytes", {{"module", "3"}}), "");
    EXPECT_EQ(file.Value("talvane_memory_module_size_bytes", {{"module", "4"}}), "");
    EXPECT_EQ(file.Value("talvane_memory_module_info", {{"module", "1"}, {"speed", "266 MHZ"}}),
              "1");
}

TEST(InventoryMetricsTest, MemoryBeyondTheLibrarysTotalIsTheSumOfItsModules) {
    const Bank bank = {1, "32768 MB", "DDR", "", "", ""};
    EXPECT_EQ(Metrics(Memory{0, {bank, bank}}).Value("talvane_memory_size_bytes"), "68719476736");
    EXPECT_EQ(Metrics(Memory{32768, {bank, bank, bank}}).Value("talvane_memory_size_bytes"),
              "103079215104");
    MetricPage page;
    AddInventory(page, Memory{0, {}});
    EXPECT_EQ(page.Text(), "") << "not described";
}

TEST(InventoryMetricsTest, DrivesAndPartitionsHaveTheirSizeInBytes) {
    const MetricFile drives = Metrics(
        Drives{{"ide", "Primary Master", "MARROW DISK 40", "40020664320", "MD40-0012283 rest"},
               {"ide", "Primary Slave", "OTHER", "", ""}});
    EXPECT_EQ(drives.Value("talvane_drive_size_bytes"), "40020664320");
    EXPECT_EQ(drives.Value("talvane_drive_info", {{"device", "/dev/hdb"}}), "1");
    const MetricFile partitions =
        Metrics(Partitions{{{"/dev/hda1", "Linux", "255984640"}, {"/dev/hda2", "Swap", ""}}, {}});
    EXPECT_EQ(partitions.Value("talvane_partition_size_bytes", {{"type", "Linux"}}), "255984640");
}

TEST(InventoryMetricsTest, SuppliesAndPciFunctionsAreInformation) {
    const MetricFile supplies = Metrics(Power{2, {{"PSU 1", "Maker", "P1", "present"}, {}}, {}});
    EXPECT_EQ(supplies.Value("talvane_power_supply_info",
                             {{"supply", "1"}, {"name", "PSU 1"}, {"status", "present"}}),
              "1");
    EXPECT_EQ(supplies.Value("talvane_power_supply_info", {{"supply", "2"}}), "1");
    const MetricFile pci = Metrics(PciFunctions{
        {"bus:0, dev:31, func:1", "Mass storage", "IDE", 14, 0, 2, "", PciId{0x8086, 0x4DB}},
        {"bus:0, dev:31, func:2", "Mass storage", "SATA", 14, 0, 2, ""}});
    EXPECT_EQ(pci.Value("talvane_pci_function_info", {{"address", "00:1f.1"},
                                                      {"class", "Mass storage"},
                                                      {"vendor_id", "0x8086"},
                                                      {"device_id", "0x04db"},
                                                      {"revision", "0x02"}}),
              "1");
    EXPECT_EQ(pci.Value("talvane_pci_function_info", {{"address", "00:1f.2"},
                                                      {"class", "Mass storage"},
                                                      {"sub_class", "SATA"},
                                                      {"revision", "0x02"}}),
              "1");
}

TEST(InventoryMetricsTest, TheBmcHasItsFirmwareAndAnInventoryOnlyWhereThereIsOne) {
    Bmc bmc;
    bmc.firmware = "2.07";
    EXPECT_EQ(Metrics(bmc).Value("ipmi_bmc_info", {{"firmware_revision", "2.07"}}), "1");
    EXPECT_EQ(Metrics(bmc).Value("talvane_bmc_inventory_info"), "");
    bmc.productName = "Ketch";
    EXPECT_EQ(Metrics(bmc).Value("talvane_bmc_inventory_info", {{"product_name", "Ketch"}}), "1");
}

MachineState BareMachine() {
    MachineState machine;
    machine.load = {1, std::nullopt, std::nullopt, {}};
    machine.version = "1.0.0";
    machine.collectedAt = 1795342448;
    machine.bmcSeconds = 0.25;
    machine.seconds = 1.5;
    return machine;
}

TEST(MachineMetricsTest, AMachineOfWhichNothingCouldBeReadSaysSo) {
    MachineState machine = BareMachine();
    machine.sources = {{"/dev/mem", "cannot open /dev/mem: \"why\""}, {"/proc/stat", ""}};
    const MetricFile file = Parse(ToMetrics(machine));
    EXPECT_EQ(file.Value("ipmi_up", {{"collector", "ipmi"}}), "0");
    EXPECT_EQ(file.Value("ipmi_up", {{"collector", "bmc"}}), "0");
    EXPECT_EQ(file.Value("ipmi_scrape_duration_seconds"), "0.25");
    EXPECT_EQ(file.Value("talvane_collection_duration_seconds"), "1.5");
    EXPECT_EQ(file.Value("talvane_collection_timestamp_seconds"), "1795342448");
    EXPECT_EQ(file.Value("talvane_build_info", {{"version", "1.0.0"}}), "1");
    EXPECT_EQ(file.Value("talvane_source_up", {{"source", "/dev/mem"}}), "0");
    EXPECT_EQ(file.Value("talvane_source_up", {{"source", "/proc/stat"}}), "1");
    EXPECT_EQ(file.Value("talvane_source_problem_info"), "1");
    EXPECT_EQ(
        file.Value("talvane_source_problem_info", {{"reason", "cannot open /dev/mem: \"why\""}}),
        "1");
    EXPECT_EQ(file.samples.size(), 9u) << "nothing else is said";
}

TEST(MachineMetricsTest, TheBmcIsUpOnceItsSensorsAreKnown) {
    MachineState machine = BareMachine();
    machine.health = Health{};
    EXPECT_EQ(Parse(ToMetrics(machine)).Value("ipmi_up", {{"collector", "ipmi"}}), "1");
    machine.health->isComplete = false;
    EXPECT_EQ(Parse(ToMetrics(machine)).Value("ipmi_up", {{"collector", "ipmi"}}), "0")
        << "a repository that ends before its first sensor";
    machine.health->sensors.emplace_back();
    EXPECT_EQ(Parse(ToMetrics(machine)).Value("ipmi_up", {{"collector", "ipmi"}}), "1")
        << "one that ends after it";
}

TEST(MachineMetricsTest, LoadIsAShare) {
    MachineState machine = BareMachine();
    machine.load = {1, std::vector<int>{32, 100}, 60, {}};
    const MetricFile file = Parse(ToMetrics(machine));
    EXPECT_EQ(file.Value("talvane_processor_busy_ratio", {{"processor", "1"}}), "0.32");
    EXPECT_EQ(file.Value("talvane_processor_busy_ratio", {{"processor", "2"}}), "1");
    EXPECT_EQ(file.Value("talvane_memory_used_ratio"), "0.6");
}

}  // namespace
}  // namespace tool
