// SPDX-License-Identifier: MIT
//
// open, lseek, read, close and their variants on /dev/mem.

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <string>

#include "ProbedServer.h"
#include "simulator/machine/Machine.h"
#include "tests/support/DescriptorLimit.h"

// What read becomes with _FORTIFY_SOURCE.
extern "C" ssize_t __read_chk(int descriptor, void* out, size_t size, size_t room);

namespace {

using testing::ElementsAre;

class FileCallsTest : public ProbedServer {
protected:
    FileCallsTest() {
        const std::array<std::uint8_t, 4> bytes{0x11, 0x22, 0x33, 0x44};
        server.GetMemory().Write(0xF0000, bytes);
    }
    int memory = probe::Open("/dev/mem", O_RDONLY);
    std::array<std::uint8_t, 4> buffer{};
};

TEST_F(FileCallsTest, MemoryReadsWhatWasWritten) {
    EXPECT_EQ(probe::Lseek(memory, 0xF0000, SEEK_SET), 0xF0000);
    EXPECT_EQ(probe::Read(memory, buffer.data(), 4), 4);
    EXPECT_THAT(buffer, ElementsAre(0x11, 0x22, 0x33, 0x44));
    EXPECT_EQ(probe::Close(memory), 0);
}

TEST_F(FileCallsTest, ReadMovesThePosition) {
    probe::Lseek(memory, 0xF0000, SEEK_SET);
    probe::Read(memory, buffer.data(), 2);
    EXPECT_EQ(probe::Lseek(memory, 0, SEEK_CUR), 0xF0002);
    probe::Read(memory, buffer.data(), 1);
    EXPECT_EQ(buffer[0], 0x33);
}

TEST_F(FileCallsTest, EachOpenHasItsOwnPosition) {
    const int other = probe::Open("/dev/mem", O_RDONLY);
    probe::Lseek(memory, 0xF0000, SEEK_SET);
    EXPECT_EQ(probe::Lseek(other, 0, SEEK_CUR), 0);
    EXPECT_NE(other, memory);
}

TEST_F(FileCallsTest, EveryVariantOfOpenReachesTheServer) {
    server.GetLog().Clear();
    for (const auto open : {probe::Open, probe::Open64, probe::OpenChecked, probe::Open64Checked,
                            probe::Openat, probe::Openat64})
        EXPECT_GE(open("/dev/mem", O_RDONLY), 0);
    EXPECT_EQ(server.GetLog().Count("open"), 6u);
}

TEST_F(FileCallsTest, VariantsOfSeekAndReadReachTheServer) {
    EXPECT_EQ(probe::Lseek64(memory, 0xF0001, SEEK_SET), 0xF0001);
    EXPECT_EQ(probe::ReadChecked(memory, buffer.data(), 1), 1);
    EXPECT_EQ(buffer[0], 0x22);
}

TEST_F(FileCallsTest, ReadPastTheLastByteFailsAsAWhole) {
    server.GetMemory().Resize(0x100000);
    probe::Lseek(memory, 0xFFFFC, SEEK_SET);
    EXPECT_EQ(probe::Read(memory, buffer.data(), 4), 4);
    probe::Lseek(memory, 0xFFFFD, SEEK_SET);
    errno = 0;
    EXPECT_EQ(probe::Read(memory, buffer.data(), 4), -1);
    EXPECT_EQ(errno, EFAULT);
    EXPECT_EQ(probe::Lseek(memory, 0, SEEK_CUR), 0xFFFFD);
}

TEST_F(FileCallsTest, OffsetPastTwoGibibytesMeansTheUpperHalf) {
    server.GetMemory().Resize(std::uint64_t{4} << 30);
    const std::array<std::uint8_t, 1> byte{0x5A};
    server.GetMemory().Write(0xDAA90000, byte);
    EXPECT_EQ(probe::Lseek(memory, static_cast<long>(0xDAA90000), SEEK_SET),
              static_cast<long>(0xDAA90000));
    EXPECT_EQ(probe::Read(memory, buffer.data(), 1), 1);
    EXPECT_EQ(buffer[0], 0x5A);
}

TEST_F(FileCallsTest, SeekFromTheEndOrToANegativeOffsetFails) {
    EXPECT_EQ(probe::Lseek(memory, 0, SEEK_END), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(probe::Lseek(memory, -1, SEEK_SET), -1);
    EXPECT_EQ(errno, EOVERFLOW);
}

TEST_F(FileCallsTest, OpeningMemoryForWritingIsRefused) {
    EXPECT_EQ(probe::Open("/dev/mem", O_RDWR), -1);
    EXPECT_EQ(errno, EACCES);
}

TEST_F(FileCallsTest, DeviceThatTheServerLacksCannotBeOpened) {
    for (const char* path : {"/dev/ipmi", "/dev/hda", "/proc/ide/ide0/hda/media", "/proc/stat"}) {
        errno = 0;
        EXPECT_EQ(probe::Open(path, O_RDONLY), -1) << path;
        EXPECT_EQ(errno, ENOENT) << path;
    }
    EXPECT_FALSE(probe::Opendir("/proc/ide"));
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(probe::Opendir("/dev/mem/"));
    EXPECT_EQ(errno, ENOTDIR);
}

TEST_F(FileCallsTest, SuccessLeavesErrnoAlone) {
    errno = ERANGE;
    probe::Close(probe::Open("/dev/mem", O_RDONLY));
    EXPECT_EQ(errno, ERANGE);
}

TEST_F(FileCallsTest, DescriptorIsARealOneUntilItIsClosed) {
    EXPECT_EQ(fcntl(memory, F_GETFD), FD_CLOEXEC);
    probe::Close(memory);
    EXPECT_EQ(fcntl(memory, F_GETFD), -1);
    EXPECT_EQ(errno, EBADF);
}

TEST_F(FileCallsTest, DescriptorClosedByASystemCallIsForgotten) {
    (void)syscall(SYS_close, memory);
    const int file = open("/proc/self/status", O_RDONLY);
    ASSERT_EQ(file, memory);
    char text[5] = "";
    EXPECT_EQ(read(file, text, 4), 4);
    EXPECT_STREQ(text, "Name");
    EXPECT_EQ(close(file), 0);
}

TEST_F(FileCallsTest, DescriptorClosedByASystemCallIsNotOpenToTheLibrary) {
    (void)syscall(SYS_close, memory);
    EXPECT_EQ(probe::Read(memory, buffer.data(), 4), -1);
    EXPECT_EQ(errno, EBADF);
}

TEST_F(FileCallsTest, AnotherAnonymousFileIsNotTakenForMemory) {
    (void)syscall(SYS_close, memory);
    const int file = memfd_create("of the test", 0);
    ASSERT_EQ(file, memory);
    EXPECT_EQ(read(file, buffer.data(), 4), 0) << "an empty file, not memory";
    EXPECT_EQ(close(file), 0);
}

TEST_F(FileCallsTest, DescriptorOfAnotherModuleIsNotOpenToTheLibrary) {
    const int file = open("/proc/self/status", O_RDONLY);
    EXPECT_EQ(probe::Read(file, buffer.data(), 4), -1);
    EXPECT_EQ(errno, EBADF);
    EXPECT_EQ(probe::Close(file), -1);
    EXPECT_EQ(errno, EBADF);
    EXPECT_EQ(close(file), 0);
    EXPECT_EQ(probe::Lseek(-1, 0, SEEK_SET), -1);
    EXPECT_EQ(errno, EBADF);
    EXPECT_EQ(probe::Ioctl(-1, 1, nullptr), -1);
    EXPECT_EQ(errno, EBADF);
}

TEST_F(FileCallsTest, OtherModulesReachTheServersDevices) {
    const int mine = open("/dev/mem", O_RDONLY);
    EXPECT_EQ(lseek(mine, 0xF0000, SEEK_SET), 0xF0000);
    EXPECT_EQ(read(mine, buffer.data(), 1), 1);
    EXPECT_EQ(buffer[0], 0x11);
}

TEST_F(FileCallsTest, LogShowsEachAccess) {
    probe::Lseek(memory, 0xF0000, SEEK_SET);
    probe::Lseek(memory, 2, SEEK_CUR);
    probe::Read(memory, buffer.data(), 2);
    probe::Close(memory);
    probe::Open("/dev/ipmi", O_RDWR | O_NONBLOCK);
    EXPECT_THAT(
        server.GetLog().Lines(),
        ElementsAre("open /dev/mem O_RDONLY -> ok", "lseek /dev/mem 0xF0000 -> 0xF0000",
                    "lseek /dev/mem +2 -> 0xF0002", "read /dev/mem 0xF0002 2 -> 2",
                    "close /dev/mem -> 0", "open /dev/ipmi O_RDWR|O_NONBLOCK -> -1 ENOENT"));
}

TEST_F(FileCallsTest, FolderAboveAFolderThatTheServerHasCanBeOpened) {
    server.GetMachine().InstallDirectory("/proc/ide/ide1/hdc");
    EXPECT_TRUE(probe::Opendir("/proc/ide"));
    EXPECT_TRUE(probe::Opendir("/proc/ide/ide1"));
    EXPECT_FALSE(probe::Opendir("/proc/ide/ide0"));
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(FileCallsTest, FolderOpenedWithoutAFreeDescriptorFails) {
    if (kChecksNeedDescriptors) GTEST_SKIP() << "the sanitizer would end the program";
    server.GetMachine().InstallDirectory("/proc/ide");
    bool isOpen = true;
    int error = 0;
    {
        const DescriptorLimit none(0);
        isOpen = probe::Opendir("/proc/ide");
        error = errno;
    }
    EXPECT_FALSE(isOpen);
    EXPECT_EQ(error, EMFILE);
}

TEST_F(FileCallsTest, UnnamedFileOfAnotherModuleHasTheModeThatItAskedFor) {
    const std::string folder = std::filesystem::temp_directory_path().string();
    const mode_t mask = umask(0);
    const int file = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0640);
    (void)umask(mask);
    if (file < 0) GTEST_SKIP() << folder << " has no unnamed files";
    struct stat64 status {};
    EXPECT_EQ(fstat64(file, &status), 0);
    EXPECT_EQ(status.st_mode & 07777u, 0640u);
    EXPECT_EQ(close(file), 0);
}

TEST_F(FileCallsTest, CheckedReadOfMoreThanThereIsRoomForEndsTheProcess) {
    EXPECT_EXIT((void)__read_chk(memory, buffer.data(), buffer.size() + 1, buffer.size()),
                testing::KilledBySignal(SIGABRT), "buffer overflow detected");
}

TEST_F(FileCallsTest, RefusedDeviceFailsWithTheGivenError) {
    server.Refuse("/dev/mem");
    EXPECT_EQ(probe::Open("/dev/mem", O_RDONLY), -1);
    EXPECT_EQ(errno, EACCES);
    EXPECT_EQ(probe::Read(memory, buffer.data(), 1), 1) << "what is open stays open";
    EXPECT_THROW(server.Refuse("/etc/passwd"), std::invalid_argument);
}

TEST(SimulatedServerTest, CallsWithoutAServerReachTheRealMachine) {
    const int file = probe::Open("/proc/self/status", O_RDONLY);
    char text[5] = "";
    EXPECT_EQ(probe::Read(file, text, 4), 4);
    EXPECT_STREQ(text, "Name");
    EXPECT_EQ(probe::ReadChecked(file, text, 2), 2);
    EXPECT_STREQ(text, ":\tme");
    EXPECT_EQ(probe::Close(file), 0);
}

TEST(SimulatedServerTest, SecondServerIsRefused) {
    sim::SimulatedServer first;
    EXPECT_THROW(sim::SimulatedServer(), std::logic_error);
    EXPECT_GE(probe::Open("/dev/mem", O_RDONLY), 0) << "the first one goes on";
}

TEST(SimulatedServerTest, ServerAfterAnotherAnswersCalls) {
    { const sim::SimulatedServer first; }
    sim::SimulatedServer second;
    probe::Open("/dev/mem", O_RDONLY);
    EXPECT_EQ(second.GetLog().Count("open"), 1u);
}

}  // namespace
