// SPDX-License-Identifier: MIT
//
// The report by the processor's own port instructions, from the first to the last function.
#include <dlfcn.h>
#include <sys/io.h>

#include "PCI/PCIscan.h"
#include "PCI/PciTest.h"

// The simulated server answers these two as plain calls. The definitions here come before the
// server's and call the library's own, so that its instructions are executed.
void PCIscan::out(unsigned short port, unsigned long value) {
    using Function = void(PCIscan*, unsigned short, unsigned long);
    static auto* const real = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, "_ZN7PCIscan3outEtm"));
    real(this, port, value);
}

unsigned long PCIscan::in(unsigned short port) {
    using Function = unsigned long(PCIscan*, unsigned short);
    static auto* const real = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, "_ZN7PCIscan2inEt"));
    return real(this, port);
}

namespace {

using PortsTest = PciTest;

TEST_F(PortsTest, ReportFindsFunctionsByPortInstructions) {
    Put({0, 0, 0}, PciHeader().BaseAddress(0xDEADBEEF).Revision(0xA7));
    Put({10, 31, 7}, PciHeader().InterruptLine(9));
    EXPECT_EQ(Report().quantity, 2);
    EXPECT_EQ(static_cast<unsigned long>(record.dev[0].IOBase), 0xDEADBEEF);
    EXPECT_EQ(record.dev[0].revision, 0xA7);
    EXPECT_STREQ(record.dev[1].desc, "bus:10, dev:31, func:7");
    EXPECT_EQ(record.dev[1].IRQ, 9);

    const std::vector<sim::Access>& accesses = server.GetLog().Accesses();
    ASSERT_EQ(accesses.size(), 2 + 2 * 45056u);
    EXPECT_EQ(accesses[0].Text(), "iopl 3 -> 0");
    EXPECT_EQ(accesses[1].Text(), "out 0xCF8 4 0x80000000 -> ok");
    EXPECT_EQ(accesses[2].Text(), "in 0xCFC 4 -> 0x100E8086");
    EXPECT_EQ(accesses[2 * 45056 - 1].Text(), "out 0xCF8 4 0x800AFF3C -> ok");
    EXPECT_EQ(accesses[2 * 45056].Text(), "in 0xCFC 4 -> 0x9");
    EXPECT_EQ(accesses.back().Text(), "iopl 0 -> 0");
}

TEST_F(PortsTest, RegisterIsReadByPortInstructionsOfTheFullWidth) {
    Put({0, 0, 0}, PciHeader().Id(0x8001, 0xFEDC));
    ASSERT_EQ(iopl(3), 0);
    PCIscan scan;
    scan.m_InitOK = 1;
    EXPECT_EQ(scan.readPCIDeviceRegister(0, 0, 0, 0), 0xFEDC8001u);
    scan.out(0xCF8, 0x80FFFFFC);
    EXPECT_EQ(scan.in(0xCF8), 0x80FFFFFCu);
}

}  // namespace
