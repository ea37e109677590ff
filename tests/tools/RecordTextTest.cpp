// SPDX-License-Identifier: MIT
//
// What the text of a record says beyond its fields.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "TextSearch.h"
#include "tools/records/Memory.h"
#include "tools/records/Probes.h"
#include "tools/records/Processors.h"

namespace tool {
namespace {

Bank BankOf(const std::string& size) {
    return {
        .slot = 1, .size = size, .type = "DDR", .typeDetail = "", .speed = "", .manufacturer = ""};
}

TEST(MemoryTextTest, GivesTheTotalInGigabytesFromOneGigabyteOn) {
    EXPECT_TRUE(Shows(ToText(Memory{1023, {}}), "Total  1023 MB\n"));
    EXPECT_TRUE(Shows(ToText(Memory{1024, {}}), "Total  1024 MB (1 GB)\n"));
    EXPECT_TRUE(Shows(ToText(Memory{3968, {}}), "Total  3968 MB (3.875 GB)\n"));
    EXPECT_TRUE(Shows(ToText(Memory{65535, {}}), "Total  65535 MB (64 GB)\n"));
}

TEST(MemoryTextTest, SaysThatTheTotalWrappedWhenTheBanksAddUpToMore) {
    const std::vector<Bank> banks(4, BankOf("32767 MB"));
    EXPECT_TRUE(Shows(ToText(Memory{65532, banks}),
                      "The total counts modulo 65536 MB; the banks below add up to 131068 MB."));
    EXPECT_FALSE(Shows(ToText(Memory{65534, {banks[0], banks[1]}}), "modulo"));
    EXPECT_TRUE(Shows(ToText(Memory{0, {banks[0], banks[1], BankOf("2 MB")}}), "65536 MB."));
}

TEST(MemoryTextTest, AddsUpNoBankWhoseSizeIsNotInMegabytes) {
    const std::vector<Bank> banks{BankOf("32767 MB"),       BankOf("32767 MB"), BankOf("32767 KB"),
                                  BankOf("-2147483648 MB"), BankOf("Unknown"),  BankOf("")};
    EXPECT_FALSE(Shows(ToText(Memory{65534, banks}), "modulo"));
}

TEST(MemoryTextTest, GivesNoTotalWhereTheFirmwareDescribesNoMemory) {
    EXPECT_EQ(ToText(Memory{0, {}}),
              "Memory\n"
              "------\n"
              "  Total  -\n"
              "\n"
              "  The firmware describes no memory in a way that can be read.\n"
              "\n"
              "  none\n");
}

Processor WithStatus(bool disabled, bool statusUnknown) {
    Processor processor{};
    processor.family = "Family";
    processor.disabled = disabled;
    processor.statusUnknown = statusUnknown;
    return processor;
}

TEST(ProcessorTextTest, TellsADisabledProcessorFromOneOfUnknownStatus) {
    EXPECT_EQ(ToText(Processors{WithStatus(false, false), WithStatus(true, false),
                                WithStatus(false, true)}),
              "Processors\n"
              "----------\n"
              "  No.  Family  Manufacturer  Speed  Maximum  Ext. clock  Disabled\n"
              "    1  Family  -                 -        -           -  no\n"
              "    2  Family  -                 -        -           -  yes\n"
              "    3  Family  -                 -        -           -  unknown\n"
              "\n"
              "Caches\n"
              "------\n"
              "  none\n");
}

TEST(ProbeTextTest, SaysWhereReadingsComeFrom) {
    EXPECT_EQ(ToText(Voltages{12}),
              "Voltages\n"
              "--------\n"
              "  Probes  12\n"
              "\n"
              "  SMBIOS counts the probes only. Readings come from the BMC: talvane sensors.\n");
    EXPECT_TRUE(Shows(ToText(Temperatures{0}), "Probes  none\n"));
}

TEST(ProbeJsonTest, IsAnObject) {
    EXPECT_EQ(ToJson(Voltages{12}).dump(), R"({"quantity":12})");
    EXPECT_EQ(ToJson(Temperatures{0}).dump(), R"({"quantity":0})");
}

}  // namespace
}  // namespace tool
