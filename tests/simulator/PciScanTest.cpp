// SPDX-License-Identifier: MIT
//
// A PCI scan by the library costs no fault, and the log shows it as if it were made of
// instructions.

#include <sys/io.h>

#include <cerrno>
#include <csignal>
#include <list>

#include "PCI/PCIscan.h"
#include "ProbedServer.h"

namespace {

using testing::ElementsAre;
using testing::KilledBySignal;

constexpr unsigned kFunctionsOfScan = 11 * 32 * 8;  // of buses 0 to 10
constexpr unsigned kRegistersOfHeader = 16;

int faults = 0;
struct sigaction serversHandler;

void CountFault(int signal, siginfo_t* info, void* context) {
    ++faults;
    serversHandler.sa_sigaction(signal, info, context);
}

class PciScanTest : public ProbedServer {
protected:
    PciScanTest() {
        server.GetPci().Set({0, 3, 0}, {0x86, 0x80, 0x34, 0x12});
        faults = 0;
        struct sigaction counting {};
        counting.sa_sigaction = CountFault;
        counting.sa_flags = SA_SIGINFO | SA_NODEFER | SA_ONSTACK;
        (void)sigaction(SIGSEGV, &counting, &serversHandler);
    }
    ~PciScanTest() override { (void)sigaction(SIGSEGV, &serversHandler, nullptr); }

    PCIscan scan;
};

TEST_F(PciScanTest, RegisterReadByTheLibraryIsLoggedLikeInstructionsWithoutAFault) {
    EXPECT_EQ(iopl(3), 0);
    server.GetLog().Clear();
    probe::Out32(0xCF8, 0x80001800);
    EXPECT_EQ(probe::In32(0xCFC, 0), 0x12348086u);
    EXPECT_EQ(faults, 2) << "one for each instruction";
    const std::vector<std::string> ofInstructions = server.GetLog().Lines();

    server.GetLog().Clear();
    scan.m_InitOK = 1;
    EXPECT_EQ(scan.readPCIDeviceRegister(0, 3, 0, 0), 0x12348086u);
    EXPECT_EQ(faults, 2) << "none for the library";
    EXPECT_EQ(server.GetLog().Lines(), ofInstructions);
    EXPECT_THAT(ofInstructions,
                ElementsAre("out 0xCF8 4 0x80001800 -> ok", "in 0xCFC 4 -> 0x12348086"));
}

TEST_F(PciScanTest, ScanOfAllBusesLogsEveryAccessWithoutAFault) {
    EXPECT_EQ(iopl(3), 0);
    server.GetLog().Clear();
    scan.m_InitOK = 1;
    std::list<PCIdevice> found;
    EXPECT_EQ(scan.getAllDevice(found), 0);
    EXPECT_EQ(found.size(), 1u);
    EXPECT_EQ(server.GetLog().Count("out"), kFunctionsOfScan * kRegistersOfHeader);
    EXPECT_EQ(server.GetLog().Count("in"), kFunctionsOfScan * kRegistersOfHeader);
    EXPECT_EQ(faults, 0);
}

TEST_F(PciScanTest, AccessLeavesErrnoAlone) {
    EXPECT_EQ(iopl(3), 0);
    errno = ERANGE;
    scan.out(0xCF8, 0x80000000);
    (void)scan.in(0xCFC);
    EXPECT_EQ(errno, ERANGE);
}

TEST_F(PciScanTest, AccessWithoutPrivilegeEndsTheProcess) {
    EXPECT_EXIT((void)scan.in(0xCFC), KilledBySignal(SIGABRT),
                "simulated server: in of 4 bytes from port 0xCFC at I/O privilege level 0, which "
                "needs iopl\\(3\\)");
    EXPECT_EXIT(scan.out(0xCF8, 0x80000000), KilledBySignal(SIGABRT),
                "simulated server: out of 0x80000000, 4 bytes, to port 0xCF8 at I/O privilege "
                "level 0");
}

TEST(PciScanWithoutServerTest, AccessIsTheLibrarysOwnInstruction) {
    std::signal(SIGSEGV, SIG_DFL);
    PCIscan scan;
    EXPECT_EXIT((void)scan.in(0xCFC), KilledBySignal(SIGSEGV), "");
    EXPECT_EXIT(scan.out(0xCF8, 0x80000000), KilledBySignal(SIGSEGV), "");
}

}  // namespace
