// SPDX-License-Identifier: MIT
//
// An agent, or a library preloaded to it, may define a function that the library exports: the
// library then calls that one. This program defines two.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstring>

#include "SmBios/SmBios.h"
#include "Talvane.h"
#include "simulator/SimulatedServer.h"
#include "simulator/machine/SmbiosTable.h"

// Stands for SmBios::GetItem, which is private: a method takes its object as first argument.
extern "C" BiosDataItem* AgentsGetItem(SmBios* bios, unsigned char type,
                                       unsigned char index) asm("_ZN6SmBios7GetItemEhh");

// Gives the system structure a manufacturer, hides ports and caches and leaves all others to the
// library.
extern "C" BiosDataItem* AgentsGetItem(SmBios* bios, unsigned char type, unsigned char index) {
    if (type == SmBios::TYPE_SYSTEM_INFO) {
        static unsigned char structure[] = "\1\5\0\1\1Agent Inc.\0";
        return new BiosDataItem(structure);
    }
    if (type == SmBios::TYPE_PORT_CONNECTOR_INFO || type == SmBios::TYPE_CACHE_INFO) return nullptr;
    const auto getItemOfTheLibrary =
        reinterpret_cast<decltype(&AgentsGetItem)>(dlsym(RTLD_NEXT, "_ZN6SmBios7GetItemEhh"));
    return getItemOfTheLibrary(bios, type, index);
}

void itoa(int, char* out, int) {
    std::strcpy(out, "forty-two");
}

namespace {

class InterpositionTest : public ::testing::Test {
protected:
    // The reader is the process's; each test starts without one.
    void TearDown() override { release(); }

    void Place() { server.GetMemory().PlaceSmbios(table.Image()); }

    sim::SimulatedServer server;
    sim::SmbiosTable table;
};

TEST_F(InterpositionTest, TheGettersWriteNumbersWithTheAgentsItoa) {
    table.Add(SmBios::TYPE_PROCESSOR_INFO, 0x0400, 35).Byte(24, 0x41).Word(20, 3600);
    Place();

    ProcessorInformation processors{};
    ASSERT_EQ(GetInfo(TALVANE_PROCESSORS, &processors), 0);
    EXPECT_EQ(processors.quantity, 1);
    EXPECT_STREQ(processors.cpu[0].MaxSpeed, "forty-two MHZ");
}

TEST_F(InterpositionTest, GettersThatFetchAStructureByItsIndexDoSoWithTheAgentsGetItem) {
    table.Add(SmBios::TYPE_SYSTEM_INFO, 0x0100, 8).String(4, "Acme");
    Place();

    SysInformation system{};
    ASSERT_EQ(GetInfo(TALVANE_SYSTEM, &system), 0);
    EXPECT_STREQ(system.manufacturer, "Agent Inc.");
}

TEST_F(InterpositionTest, GettersThatCountGoThroughTheTableByThemselves) {
    table.Add(SmBios::TYPE_PORT_CONNECTOR_INFO, 0x0800, 9).Byte(8, 16);
    Place();

    IOInformation ports{};
    ASSERT_EQ(GetInfo(TALVANE_PORTS, &ports), 0);
    EXPECT_EQ(ports.quantity, 1);
    EXPECT_STREQ(ports.port[0].type, "");
}

TEST_F(InterpositionTest, GettersThatSearchGoThroughTheTableByThemselves) {
    table.Add(SmBios::TYPE_PROCESSOR_INFO, 0x0400, 35).Word(26, 0x0700);
    table.Add(SmBios::TYPE_CACHE_INFO, 0x0700, 19).Byte(15, 5);
    Place();

    ProcessorInformation processors{};
    ASSERT_EQ(GetInfo(TALVANE_PROCESSORS, &processors), 0);
    EXPECT_STREQ(processors.cpu[0].cache[0].speed, "forty-twons");
}

}  // namespace
