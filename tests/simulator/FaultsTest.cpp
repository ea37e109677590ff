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

class Faults : public ProbedServer {
protected:
    char buffer[16] = {};
};

TEST_F(Faults, TheNthCallFailsAndNoOther) {
    server.fail("open", 2, ENOMEM);
    EXPECT_GE(probe::open("/dev/mem", O_RDONLY), 0);
    EXPECT_EQ(probe::open("/dev/mem", O_RDONLY), -1);
    EXPECT_EQ(errno, ENOMEM);
    EXPECT_GE(probe::open("/dev/mem", O_RDONLY), 0);
}

TEST_F(Faults, CountFromTheMomentTheyAreAskedFor) {
    const int memory = probe::open("/dev/mem", O_RDONLY);
    probe::read(memory, buffer, 1);
    server.fail("read", 1);
    EXPECT_EQ(probe::read(memory, buffer, 1), -1);
    EXPECT_EQ(errno, EIO);
}

TEST_F(Faults, StrikeEveryCallTheyAreFor) {
    const int memory = probe::open("/dev/mem", O_RDONLY);
    server.fail("lseek", 1, ESPIPE);
    EXPECT_EQ(probe::lseek(memory, 16, SEEK_SET), -1);
    EXPECT_EQ(errno, ESPIPE);
    server.fail("ioctl", 1, ENODEV);
    EXPECT_EQ(probe::ioctl(memory, 0x30D, nullptr), -1);
    EXPECT_EQ(errno, ENODEV);
    server.fail("iopl", 1, EPERM);
    EXPECT_EQ(probe::iopl(3), -1);
    EXPECT_EQ(errno, EPERM);
    server.fail("opendir", 1, EMFILE);
    EXPECT_FALSE(probe::opendir("/proc/ide"));
    EXPECT_EQ(errno, EMFILE);
    server.fail("close", 1, EINTR);
    EXPECT_EQ(probe::close(memory), -1);
    EXPECT_EQ(errno, EINTR);
    EXPECT_EQ(fcntl(memory, F_GETFD), -1) << "Linux frees the descriptor all the same";
}

TEST_F(Faults, AnInterruptedSleepAnswersTheSecondsLeft) {
    server.fail("sleep", 1, EINTR);
    EXPECT_EQ(probe::sleep(5), 5u);
    EXPECT_EQ(server.clock().count(), 0);
}

TEST_F(Faults, ASleepThatTakesItsTimeMovesTheClockAsFarAsItLasted) {
    server.machine().sleepBy([](unsigned seconds) { return seconds / 5; });
    EXPECT_EQ(probe::sleep(10), 2u);
    EXPECT_EQ(server.clock().count(), 8);
}

TEST_F(Faults, SeveralCountAlongside) {
    server.fail("open", 1, EACCES);
    server.fail("open", 2, EMFILE);
    EXPECT_EQ(probe::open("/dev/mem", O_RDONLY), -1);
    EXPECT_EQ(errno, EACCES);
    EXPECT_EQ(probe::open("/dev/mem", O_RDONLY), -1);
    EXPECT_EQ(errno, EMFILE);
}

TEST_F(Faults, AShortReadDeliversNoMoreThanToldAndMovesAsFar) {
    const int memory = probe::open("/dev/mem", O_RDONLY);
    server.shortRead(1, 3);
    EXPECT_EQ(probe::read(memory, buffer, 16), 3);
    EXPECT_EQ(probe::lseek(memory, 0, SEEK_CUR), 3);
    EXPECT_EQ(probe::read(memory, buffer, 16), 16);
}

TEST_F(Faults, OnlyTheLibrarysAllocationsAreCounted) {
    probe::allocate();
    probe::allocateArray();
    probe::allocateQuietly();
    probe::allocateArrayQuietly();
    operator delete(operator new(16));
    EXPECT_EQ(server.allocations(), 4u);
}

TEST_F(Faults, AnAllocationFailsAsItsFormDoes) {
    server.failAllocation(1);
    EXPECT_THROW(probe::allocate(), std::bad_alloc);
    server.failAllocation(1);
    EXPECT_THROW(probe::allocateArray(), std::bad_alloc);
    server.failAllocation(2);
    EXPECT_TRUE(probe::allocateQuietly());
    EXPECT_FALSE(probe::allocateQuietly());
    server.failAllocation(1);
    EXPECT_FALSE(probe::allocateArrayQuietly());
    EXPECT_TRUE(probe::allocateArrayQuietly());
}

int openedInside = -1;
void openInside() {
    openedInside = probe::open("/dev/mem", O_RDONLY);
}

TEST_F(Faults, AnActionRunsInsideTheNextCallOnceAndBeforeItsAnswer) {
    const int memory = probe::open("/dev/mem", O_RDONLY);
    server.log().clear();
    server.during("read", openInside);
    probe::read(memory, buffer, 2);
    probe::read(memory, buffer, 2);
    EXPECT_GE(openedInside, 0);
    EXPECT_THAT(server.log().lines(),
                ElementsAre("open /dev/mem O_RDONLY -> ok", "read /dev/mem 0x0 2 -> 2",
                            "read /dev/mem 0x2 2 -> 2"));
}

std::uint32_t readInside = 0;
void inInside() {
    readInside = probe::in8(0xCAA, 0);
}

TEST_F(Faults, AnActionInsideAPortInstructionMayUsePorts) {
    probe::iopl(3);
    server.log().clear();
    server.during("in", inInside);
    EXPECT_EQ(probe::in8(0xCA3, 0), 0xFFu);
    EXPECT_EQ(readInside, 0xFFu);
    EXPECT_THAT(server.log().lines(), ElementsAre("in 0xCAA 1 -> 0xFF", "in 0xCA3 1 -> 0xFF"));
}

int closedInside = -1;
void closeInside() {
    probe::close(closedInside);
}

TEST_F(Faults, ACallWhoseFileIsClosedInsideItFails) {
    closedInside = probe::open("/dev/mem", O_RDONLY);
    server.during("read", closeInside);
    EXPECT_EQ(probe::read(closedInside, buffer, 1), -1);
    EXPECT_EQ(errno, EBADF);
}

TEST_F(Faults, NamesAndCountsAreChecked) {
    EXPECT_THROW(server.fail("write", 1), std::invalid_argument);
    EXPECT_THROW(server.fail("in", 1), std::invalid_argument) << "instructions cannot fail";
    EXPECT_THROW(server.fail("open", 0), std::invalid_argument);
    EXPECT_THROW(server.shortRead(0, 1), std::invalid_argument);
    EXPECT_THROW(server.failAllocation(0), std::invalid_argument);
    EXPECT_THROW(server.during("write", openInside), std::invalid_argument);
}

}  // namespace
