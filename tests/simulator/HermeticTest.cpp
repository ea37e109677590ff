// SPDX-License-Identifier: MIT
//
// What the server does not have ends the process with a message that says what was asked.

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "ProbedServer.h"
#include "simulator/process/Callers.h"

namespace {

using testing::KilledBySignal;

class HermeticTest : public ProbedServer {};

#define EXPECT_VIOLATION(call, message) \
    EXPECT_EXIT((void)(call), KilledBySignal(SIGABRT), "simulated server: " message)

TEST_F(HermeticTest, UnknownPathEndsTheProcess) {
    EXPECT_VIOLATION(probe::Open("/etc/passwd", O_RDONLY),
                     "libprobe.so asked for open\\(\"/etc/passwd\"\\), which this machine does not "
                     "have");
    EXPECT_VIOLATION(probe::Openat64("/dev/hda1", O_RDONLY), "libprobe.so asked for open");
    EXPECT_VIOLATION(probe::Open(nullptr, O_RDONLY), "libprobe.so asked for open\\(NULL\\)");
    EXPECT_VIOLATION(probe::Opendir("/proc"), "libprobe.so asked for opendir\\(\"/proc\"\\)");
}

TEST_F(HermeticTest, UnknownPathEndsTheProcessInEveryVariantOfOpen) {
    for (const auto open : {probe::Open, probe::Open64, probe::OpenChecked, probe::Open64Checked,
                            probe::Openat, probe::Openat64})
        EXPECT_VIOLATION(open("/etc/passwd", O_RDONLY), "libprobe.so asked for open");
}

TEST_F(HermeticTest, UnknownRequestEndsTheProcess) {
    const int memory = probe::Open("/dev/mem", O_RDONLY);
    EXPECT_VIOLATION(probe::Ioctl(memory, 0x30D, nullptr),
                     "libprobe.so asked for ioctl\\(\"/dev/mem\", 0x30D\\)");
    EXPECT_VIOLATION(probe::IoctlTime64(memory, 0x30D, nullptr), "libprobe.so asked for ioctl");
}

TEST_F(HermeticTest, CommandThatTheServerLacksEndsTheProcess) {
    EXPECT_VIOLATION(probe::System("free"), "libprobe.so asked for system\\(\"free\"\\)");
    EXPECT_VIOLATION(probe::System(nullptr), "libprobe.so asked for system\\(NULL\\)");
    server.GetFreeProgram().SetText("memory\n");
    EXPECT_VIOLATION(probe::System("df"), "libprobe.so asked for system\\(\"df\"\\)");
}

TEST_F(HermeticTest, ClosingADirectoryThatIsNotOpenEndsTheProcess) {
    EXPECT_VIOLATION(probe::ClosedirNull(), "libprobe.so asked for closedir");
}

TEST_F(HermeticTest, PortAccessWithoutPrivilegeEndsTheProcess) {
    EXPECT_VIOLATION(probe::In8(0xCA3, 0),
                     "in of 1 byte from port 0xCA3 at I/O privilege level 0, which needs "
                     "iopl\\(3\\)");
    EXPECT_VIOLATION(probe::Out32(0xCF8, 0x80000000),
                     "out of 0x80000000, 4 bytes, to port 0xCF8 at I/O privilege level 0");
    probe::Iopl(2);
    EXPECT_VIOLATION(probe::In8(0xCA3, 0), "in of 1 byte from port 0xCA3 at I/O privilege level 2");
}

TEST_F(HermeticTest, PortAccessAfterLoweredPrivilegeEndsTheProcess) {
    probe::Iopl(3);
    probe::In8(0xCA3, 0);
    probe::Iopl(0);
    EXPECT_VIOLATION(probe::In8(0xCA3, 0), "in of 1 byte from port 0xCA3 at I/O privilege level 0");
}

TEST_F(HermeticTest, UnknownPortEndsTheProcess) {
    probe::Iopl(3);
    EXPECT_VIOLATION(probe::In8(0x60, 0),
                     "in of 1 byte from port 0x60, which this machine does not have");
    EXPECT_VIOLATION(probe::Out8(0x60, 1), "out of 0x1, 1 byte, to port 0x60, which");
    EXPECT_VIOLATION(probe::In16(0xCA3, 0), "in of 2 bytes from port 0xCA3, which");
}

TEST_F(HermeticTest, OtherModulesReachTheRealMachine) {
    EXPECT_GE(open("/etc/passwd", O_RDONLY), 0);
    EXPECT_EQ(std::system("exit 3"), 3 << 8);
    EXPECT_NE(std::system(nullptr), 0) << "there is a shell";
}

TEST_F(HermeticTest, OtherModulesRunTheMachinesFree) {
    server.GetFreeProgram().SetText("the machine's\n");
    testing::internal::CaptureStdout();
    EXPECT_EQ(std::system("free"), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "the machine's\n");
    EXPECT_EQ(std::system("free >/dev/null; exit 3"), 3 << 8) << "is the real one";
}

TEST_F(HermeticTest, FreeOfAServerThatHasNoneIsTheRealOneForOtherModules) {
    testing::internal::CaptureStdout();
    EXPECT_NE(std::system("free"), -1) << "which the system need not have";
    (void)testing::internal::GetCapturedStdout();
    EXPECT_EQ(server.GetLog().Count("system"), 0u);
}

// A library can be loaded and unloaded while a server answers.
TEST_F(HermeticTest, LibraryThatIsLoadedLaterIsObservedUntilItIsUnloaded) {
    const std::filesystem::path copy =
        std::filesystem::temp_directory_path() / ("liblater-" + std::to_string(getpid()) + ".so");
    std::filesystem::copy_file(PROBE_LIBRARY, copy,
                               std::filesystem::copy_options::overwrite_existing);
    for (int i = 0; i < 3; ++i) server.Observe("liblater");  // which takes one place of four
    EXPECT_EQ(sim::ObservedCaller(reinterpret_cast<void*>(probe::Sleep)), "libprobe.so");
    void* const library = dlopen(copy.c_str(), RTLD_NOW | RTLD_LOCAL);
    std::filesystem::remove(copy);
    ASSERT_NE(library, nullptr) << dlerror();
    void* const sleep = dlsym(library, "_ZN5probe5SleepEj");
    ASSERT_NE(sleep, nullptr) << dlerror();
    ASSERT_NE(sleep, reinterpret_cast<void*>(probe::Sleep));
    EXPECT_EQ(sim::ObservedCaller(sleep), "liblater");
    EXPECT_EQ(dlclose(library), 0);
    EXPECT_EQ(sim::ObservedCaller(sleep), "");
    EXPECT_EQ(sim::ObservedCaller(reinterpret_cast<void*>(probe::Sleep)), "libprobe.so");
}

TEST_F(HermeticTest, FifthObservedLibraryIsRefused) {
    const auto observe = [this] {
        try {
            for (const char* const name : {"a", "b", "c", "d"}) server.Observe(name);
        } catch (const std::length_error&) {
            _exit(5);
        }
    };
    EXPECT_EXIT(observe(), testing::ExitedWithCode(5), "");
}

// SIGSEGV that no port instruction raised.
void ExitWithSeven(int) {
    _exit(7);
}

TEST(PortFaultTest, PageFaultGoesToThePreviousHandler) {
    const auto fault = [] {
        std::signal(SIGSEGV, ExitWithSeven);
        const sim::SimulatedServer server;
        volatile std::uintptr_t nowhere = 0x10;
        *reinterpret_cast<volatile int*>(nowhere) = 1;
    };
    EXPECT_EXIT(fault(), testing::ExitedWithCode(7), "");
}

void ExitWithEight(int, siginfo_t* info, void* context) {
    _exit(info->si_addr == reinterpret_cast<void*>(0x10) && context != nullptr ? 8 : 1);
}

TEST(PortFaultTest, PreviousHandlerThatAsksWhereTheFaultWasLearnsIt) {
    const auto fault = [] {
        struct sigaction asking {};
        asking.sa_sigaction = ExitWithEight;
        asking.sa_flags = SA_SIGINFO;
        (void)sigaction(SIGSEGV, &asking, nullptr);
        const sim::SimulatedServer server;
        volatile std::uintptr_t nowhere = 0x10;
        *reinterpret_cast<volatile int*>(nowhere) = 1;
    };
    EXPECT_EXIT(fault(), testing::ExitedWithCode(8), "");
}

TEST(PortFaultTest, IgnoredFaultEndsTheProcessAllTheSame) {
    const auto fault = [] {
        std::signal(SIGSEGV, SIG_IGN);
        const sim::SimulatedServer server;
        probe::Halt();
    };
    EXPECT_EXIT(fault(), KilledBySignal(SIGSEGV), "");
}

TEST(PortFaultTest, OtherPrivilegedInstructionGoesToThePreviousHandler) {
    const auto fault = [] {
        std::signal(SIGSEGV, ExitWithSeven);
        const sim::SimulatedServer server;
        probe::Halt();
    };
    EXPECT_EXIT(fault(), testing::ExitedWithCode(7), "");
}

TEST(PortFaultTest, OtherPrivilegedInstructionWithoutAHandlerEndsTheProcess) {
    const auto fault = [] {
        std::signal(SIGSEGV, SIG_DFL);
        const sim::SimulatedServer server;
        probe::Halt();
    };
    EXPECT_EXIT(fault(), KilledBySignal(SIGSEGV), "");
}

}  // namespace
