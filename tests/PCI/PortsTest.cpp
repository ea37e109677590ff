// SPDX-License-Identifier: MIT
//
// The report by the processor's own port instructions, from the first to the last function.
#include <dlfcn.h>
#include <sys/io.h>

#include "PCI/OwnIn.h"
#include "PCI/PCIscan.h"
#include "PCI/PciTest.h"

// Of the two definitions below.
static int replacedCalls = 0;

// The simulated server answers these two as plain calls. The definitions here come before the
// server's and call the library's own, so that its instructions are executed.
void PCIscan::out(unsigned short port, unsigned long value) {
    ++replacedCalls;
    using Function = void(PCIscan*, unsigned short, unsigned long);
    static auto* const real = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, "_ZN7PCIscan3outEtm"));
    real(this, port, value);
}

unsigned long PCIscan::in(unsigned short port) {
    ++replacedCalls;
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

    const std::vector<sim::Access> accesses = server.GetLog().Accesses();
    ASSERT_EQ(accesses.size(), 2 + 2 * 45056u);
    EXPECT_EQ(replacedCalls, 2 * 45056);
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

// The library in a namespace of its own, where it finds none of the definitions above.
TEST_F(PortsTest, WithoutReplacementEachRegisterIsReadOnceByItsOwnInstructions) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "AddressSanitizer works in the first namespace only";
#endif
    Put({3, 4, 5}, PciHeader().Id(0x8001, 0xFEDC).InterruptLine(9));
    Dl_info loaded{};
    ASSERT_NE(dladdr(reinterpret_cast<void*>(&GetPciInfo), &loaded), 0);
    void* const library = dlmopen(LM_ID_NEWLM, loaded.dli_fname, RTLD_NOW);
    ASSERT_NE(library, nullptr) << dlerror();
    using Function = int(PCIscan*, unsigned char, unsigned char, unsigned char);
    auto* const read =
        reinterpret_cast<Function*>(dlsym(library, "_ZN7PCIscan13readPCIheaderEhhh"));
    ASSERT_NE(read, nullptr);

    ASSERT_EQ(iopl(3), 0);
    PCIscan scan;
    scan.m_InitOK = 1;
    const std::size_t before = server.GetLog().Accesses().size();
    EXPECT_EQ(read(&scan, 3, 4, 5), 0);
    EXPECT_EQ(scan.m_dev.getVendorID(), 0x8001);
    EXPECT_EQ(scan.m_dev.getIntLine(), 9);
    EXPECT_EQ(replacedCalls, 0);

    EXPECT_EQ(server.GetLog().Accesses().size(), before + 2 * 16u);
    scan.m_InitOK = 0;
    EXPECT_EQ(read(&scan, 3, 4, 5), -1);
    const std::vector<sim::Access> accesses = server.GetLog().Accesses();
    ASSERT_EQ(accesses.size(), before + 2 * 16u) << "none before the scan is ready";
    EXPECT_EQ(accesses[before].Text(), "out 0xCF8 4 0x80032500 -> ok");
    EXPECT_EQ(accesses[before + 1].Text(), "in 0xCFC 4 -> 0xFEDC8001");
    EXPECT_EQ(accesses.back().Text(), "in 0xCFC 4 -> 0x9");
    EXPECT_EQ(dlclose(library), 0);
}

// The library in a namespace where one of the two methods is an agent's.
TEST_F(PortsTest, WithOneMethodReplacedBothAreCalledForEachRegister) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "AddressSanitizer works in the first namespace only";
#endif
    void* const agent = dlmopen(LM_ID_NEWLM, TALVANE_OWN_IN, RTLD_NOW);
    ASSERT_NE(agent, nullptr) << dlerror();
    using Function = int(PCIscan&);
    auto* const read = reinterpret_cast<Function*>(dlsym(agent, "ReadHeaderAsAgent"));
    ASSERT_NE(read, nullptr);

    ASSERT_EQ(iopl(3), 0);
    PCIscan scan;
    scan.m_InitOK = 1;
    const std::size_t before = server.GetLog().Accesses().size();
    EXPECT_EQ(read(scan), 0);
    EXPECT_EQ(scan.m_dev.getVendorID(), kOwnAnswer & 0xFFFF);

    const std::vector<sim::Access> accesses = server.GetLog().Accesses();
    ASSERT_EQ(accesses.size(), before + 16);
    EXPECT_EQ(accesses[before].Text(), "out 0xCF8 4 0x80032500 -> ok");
    EXPECT_EQ(accesses.back().Text(), "out 0xCF8 4 0x8003253C -> ok");
    EXPECT_EQ(dlclose(agent), 0);
}

}  // namespace
