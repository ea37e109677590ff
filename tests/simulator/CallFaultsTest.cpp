// SPDX-License-Identifier: MIT
//
// Calls that fail on demand, allocations, and entering the library from within a call.

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <stdexcept>

#include "ProbedServer.h"
#include "simulator/machine/Machine.h"

namespace {

using testing::ElementsAre;

class CallFaultsTest : public ProbedServer {
protected:
    char buffer[16] = {};
};

TEST_F(CallFaultsTest, OnlyTheNthCallFails) {
    server.Fail("open", 2, ENOMEM);
    EXPECT_GE(probe::Open("/dev/mem", O_RDONLY), 0);
    EXPECT_EQ(probe::Open("/dev/mem", O_RDONLY), -1);
    EXPECT_EQ(errno, ENOMEM);
    EXPECT_GE(probe::Open("/dev/mem", O_RDONLY), 0);
}

TEST_F(CallFaultsTest, FaultCountsCallsFromTheMomentItIsSet) {
    const int memory = probe::Open("/dev/mem", O_RDONLY);
    probe::Read(memory, buffer, 1);
    server.Fail("read", 1);
    EXPECT_EQ(probe::Read(memory, buffer, 1), -1);
    EXPECT_EQ(errno, EIO);
}

TEST_F(CallFaultsTest, EachCallCanFail) {
    const int memory = probe::Open("/dev/mem", O_RDONLY);
    server.Fail("lseek", 1, ESPIPE);
    EXPECT_EQ(probe::Lseek(memory, 16, SEEK_SET), -1);
    EXPECT_EQ(errno, ESPIPE);
    server.Fail("ioctl", 1, ENODEV);
    EXPECT_EQ(probe::Ioctl(memory, 0x30D, nullptr), -1);
    EXPECT_EQ(errno, ENODEV);
    server.Fail("iopl", 1, EPERM);
    EXPECT_EQ(probe::Iopl(3), -1);
    EXPECT_EQ(errno, EPERM);
    server.Fail("opendir", 1, EMFILE);
    EXPECT_FALSE(probe::Opendir("/proc/ide"));
    EXPECT_EQ(errno, EMFILE);
    server.Fail("close", 1, EINTR);
    EXPECT_EQ(probe::Close(memory), -1);
    EXPECT_EQ(errno, EINTR);
    EXPECT_EQ(fcntl(memory, F_GETFD), -1) << "Linux frees the descriptor all the same";
}

TEST_F(CallFaultsTest, InterruptedSleepReturnsTheSecondsLeft) {
    server.Fail("sleep", 1, EINTR);
    EXPECT_EQ(probe::Sleep(5), 5u);
    EXPECT_EQ(server.Clock().count(), 0);
}

TEST_F(CallFaultsTest, SleepInRealTimeMovesTheClockByTheTimeItTook) {
    server.GetMachine().SleepBy([](unsigned seconds) { return seconds / 5; });
    EXPECT_EQ(probe::Sleep(10), 2u);
    EXPECT_EQ(server.Clock().count(), 8);
}

TEST_F(CallFaultsTest, TwoFaultsOfOneCallCountIndependently) {
    server.Fail("open", 1, EACCES);
    server.Fail("open", 2, EMFILE);
    EXPECT_EQ(probe::Open("/dev/mem", O_RDONLY), -1);
    EXPECT_EQ(errno, EACCES);
    EXPECT_EQ(probe::Open("/dev/mem", O_RDONLY), -1);
    EXPECT_EQ(errno, EMFILE);
}

TEST_F(CallFaultsTest, FirstOfTwoFaultsOfOneCallIsItsErrorAndBothAreSpent) {
    server.Fail("open", 1, EACCES);
    server.Fail("open", 1, EMFILE);
    EXPECT_EQ(probe::Open("/dev/mem", O_RDONLY), -1);
    EXPECT_EQ(errno, EACCES);
    EXPECT_GE(probe::Open("/dev/mem", O_RDONLY), 0);
}

TEST_F(CallFaultsTest, CommandThatFailsIsNotRun) {
    server.GetFreeProgram().SetText("memory\n");
    server.Fail("system", 1, ENOMEM);
    testing::internal::CaptureStdout();
    EXPECT_EQ(probe::System("free"), -1);
    EXPECT_EQ(errno, ENOMEM);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(server.GetLog().Lines().back(), "system free -> -1 ENOMEM");
}

TEST_F(CallFaultsTest, FaultForEverFailsTheNthCallAndAllLaterOnesUntilItIsCleared) {
    sim::CallFaults& faults = server.GetMachine().GetFaults();
    faults.Fail("open", 2, EMFILE, sim::Strikes::kForEver);
    EXPECT_GE(probe::Open("/dev/mem", O_RDONLY), 0);
    EXPECT_EQ(probe::Open("/dev/mem", O_RDONLY), -1);
    EXPECT_EQ(probe::Open("/dev/mem", O_RDONLY), -1);
    EXPECT_EQ(errno, EMFILE);
    faults.Clear();
    EXPECT_GE(probe::Open("/dev/mem", O_RDONLY), 0);
}

TEST_F(CallFaultsTest, ShortReadsAndRefusedAllocationsForEverEndWhenTheyAreCleared) {
    sim::CallFaults& faults = server.GetMachine().GetFaults();
    const int memory = probe::Open("/dev/mem", O_RDONLY);
    faults.ShortRead(2, 0, sim::Strikes::kForEver);
    faults.FailAllocation(2, sim::Strikes::kForEver);
    EXPECT_EQ(probe::Read(memory, buffer, 16), 16);
    EXPECT_EQ(probe::Read(memory, buffer, 16), 0);
    EXPECT_EQ(probe::Read(memory, buffer, 16), 0);
    EXPECT_TRUE(probe::AllocateQuietly());
    EXPECT_FALSE(probe::AllocateQuietly());
    EXPECT_FALSE(probe::AllocateQuietly());
    EXPECT_EQ(faults.RefusedAllocations(), 2u);
    faults.Clear();
    EXPECT_EQ(probe::Read(memory, buffer, 16), 16);
    EXPECT_TRUE(probe::AllocateQuietly());
}

TEST_F(CallFaultsTest, ShortReadDeliversAndMovesByTheGivenBytes) {
    const int memory = probe::Open("/dev/mem", O_RDONLY);
    server.ShortRead(1, 3);
    EXPECT_EQ(probe::Read(memory, buffer, 16), 3);
    EXPECT_EQ(probe::Lseek(memory, 0, SEEK_CUR), 3);
    EXPECT_EQ(probe::Read(memory, buffer, 16), 16);
}

TEST_F(CallFaultsTest, AllocationsOfOtherModulesAreNotCounted) {
    probe::Allocate();
    probe::AllocateArray();
    probe::AllocateQuietly();
    probe::AllocateArrayQuietly();
    operator delete(operator new(16));
    EXPECT_EQ(server.Allocations(), 4u);
}

TEST_F(CallFaultsTest, FailingAllocationThrowsOrReturnsNullAsItsFormDoes) {
    server.FailAllocation(1);
    EXPECT_THROW(probe::Allocate(), std::bad_alloc);
    server.FailAllocation(1);
    EXPECT_THROW(probe::AllocateArray(), std::bad_alloc);
    server.FailAllocation(2);
    EXPECT_TRUE(probe::AllocateQuietly());
    EXPECT_FALSE(probe::AllocateQuietly());
    server.FailAllocation(1);
    EXPECT_FALSE(probe::AllocateArrayQuietly());
    EXPECT_TRUE(probe::AllocateArrayQuietly());
}

int openedInside = -1;
void OpenInside() {
    openedInside = probe::Open("/dev/mem", O_RDONLY);
}

TEST_F(CallFaultsTest, ActionRunsOnceInsideTheNextCallBeforeItsAnswer) {
    const int memory = probe::Open("/dev/mem", O_RDONLY);
    server.GetLog().Clear();
    server.During("read", OpenInside);
    probe::Read(memory, buffer, 2);
    probe::Read(memory, buffer, 2);
    EXPECT_GE(openedInside, 0);
    EXPECT_THAT(server.GetLog().Lines(),
                ElementsAre("open /dev/mem O_RDONLY -> ok", "read /dev/mem 0x0 2 -> 2",
                            "read /dev/mem 0x2 2 -> 2"));
}

std::uint32_t readInside = 0;
void InInside() {
    readInside = probe::In8(0xCAA, 0);
}

TEST_F(CallFaultsTest, ActionInsideAPortInstructionMayUsePorts) {
    probe::Iopl(3);
    server.GetLog().Clear();
    server.During("in", InInside);
    EXPECT_EQ(probe::In8(0xCA3, 0), 0xFFu);
    EXPECT_EQ(readInside, 0xFFu);
    EXPECT_THAT(server.GetLog().Lines(), ElementsAre("in 0xCAA 1 -> 0xFF", "in 0xCA3 1 -> 0xFF"));
}

int closedInside = -1;
void CloseInside() {
    probe::Close(closedInside);
}

TEST_F(CallFaultsTest, CallFailsWhenAnActionInsideItClosesItsFile) {
    using Call = long (*)(int file, char* buffer);
    const std::pair<const char*, Call> calls[] = {
        {"read", [](int file, char* bytes) { return probe::Read(file, bytes, 1); }},
        {"lseek", [](int file, char*) { return probe::Lseek(file, 0, SEEK_SET); }},
        {"ioctl", [](int file, char* bytes) { return long{probe::Ioctl(file, 0x30D, bytes)}; }},
        {"close", [](int file, char*) { return long{probe::Close(file)}; }}};
    for (const auto& [name, call] : calls) {
        closedInside = probe::Open("/dev/mem", O_RDONLY);
        server.During(name, CloseInside);
        errno = 0;
        EXPECT_EQ(call(closedInside, buffer), -1) << name;
        EXPECT_EQ(errno, EBADF) << name;
    }
}

TEST_F(CallFaultsTest, UnknownCallOrCountBelowOneIsRefused) {
    EXPECT_THROW(server.Fail("write", 1), std::invalid_argument);
    EXPECT_THROW(server.Fail("in", 1), std::invalid_argument) << "instructions cannot fail";
    EXPECT_THROW(server.Fail("open", 0), std::invalid_argument);
    EXPECT_THROW(server.ShortRead(0, 1), std::invalid_argument);
    EXPECT_THROW(server.FailAllocation(0), std::invalid_argument);
    EXPECT_THROW(server.During("write", OpenInside), std::invalid_argument);
}

}  // namespace
