// SPDX-License-Identifier: MIT
//
// A file is replaced whole or not at all.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "tests/tools/RunTool.h"
#include "tools/AtomicFile.h"

namespace {

// The error of the next call, which then is none again.
int writeError = 0;
int fsyncError = 0;

int Taken(int& error) {
    errno = error;
    error = 0;
    return -1;
}

}  // namespace

// In place of the C library's, as the system may fail in them.
ssize_t write(int file, const void* bytes, size_t size) {
    if (writeError != 0) return Taken(writeError);
    return syscall(SYS_write, file, bytes, size);
}
int fsync(int file) {
    if (fsyncError != 0) return Taken(fsyncError);
    return static_cast<int>(syscall(SYS_fsync, file));
}

namespace tool {
namespace {

using testing::StartsWith;

int FilesIn(const std::filesystem::path& folder) {
    return static_cast<int>(std::distance(std::filesystem::directory_iterator(folder),
                                          std::filesystem::directory_iterator()));
}

unsigned ModeOf(const std::filesystem::path& file) {
    struct stat status {};
    EXPECT_EQ(stat(file.c_str(), &status), 0);
    return status.st_mode & 07777u;
}

std::string ErrorOf(const std::filesystem::path& file, const std::string& text = "new") {
    try {
        WriteAtomically(file, text);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "";
}

TEST(AtomicFileTest, MakesAndReplacesAFileThatAllCanRead) {
    const TemporaryFolder folder;
    const auto file = folder.Path() / "talvane.prom";
    umask(0077);
    WriteAtomically(file, "first\n");
    EXPECT_EQ(ReadFile(file), "first\n");
    EXPECT_EQ(ModeOf(file), 0644u);
    WriteAtomically(file, "");
    EXPECT_EQ(ReadFile(file), "");
    EXPECT_EQ(FilesIn(folder.Path()), 1);
}

TEST(AtomicFileTest, ReadersOfTheOldFileGoOnReadingIt) {
    const TemporaryFolder folder;
    const auto file = folder.Path() / "talvane.prom";
    WriteAtomically(file, "old");
    std::ifstream reader(file);
    WriteAtomically(file, "new");
    std::string seen;
    reader >> seen;
    EXPECT_EQ(seen, "old");
    EXPECT_EQ(ReadFile(file), "new");
}

TEST(AtomicFileTest, NamesTheFileThatCannotBeWritten) {
    const TemporaryFolder folder;
    EXPECT_EQ(ErrorOf(folder.Path() / "nowhere" / "talvane.prom"),
              "cannot write " + (folder.Path() / "nowhere" / "talvane.prom").string() +
                  ": No such file or directory");
    std::filesystem::create_directory(folder.Path() / "folder");
    EXPECT_THAT(ErrorOf(folder.Path() / "folder"),
                StartsWith("cannot write " + (folder.Path() / "folder").string() + ": "));
    EXPECT_EQ(FilesIn(folder.Path()), 1) << "no temporary file is left";
}

TEST(AtomicFileTest, RefusesADeviceOrFifoWhichTheRenameWouldReplace) {
    const TemporaryFolder folder;
    const auto fifo = folder.Path() / "fifo";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_EQ(ErrorOf(fifo), "cannot write " + fifo.string() + ": not a regular file");
    EXPECT_TRUE(std::filesystem::is_fifo(fifo));
    EXPECT_EQ(FilesIn(folder.Path()), 1);
}

TEST(AtomicFileTest, KeepsTheOldFileWhenTheDiskIsFull) {
    const TemporaryFolder folder;
    const auto file = folder.Path() / "talvane.prom";
    WriteAtomically(file, "old");
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {4096, 4096};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    EXPECT_THAT(ErrorOf(file, std::string(10000, 'x')),
                StartsWith("cannot write " + file.string() + ": "));
    EXPECT_EQ(ReadFile(file), "old");
    EXPECT_EQ(FilesIn(folder.Path()), 1);
}

TEST(AtomicFileTest, WritesOnAfterASignal) {
    const TemporaryFolder folder;
    const auto file = folder.Path() / "talvane.prom";
    writeError = EINTR;
    WriteAtomically(file, "new");
    EXPECT_EQ(writeError, 0) << "a call was interrupted";
    EXPECT_EQ(ReadFile(file), "new");
}

TEST(AtomicFileTest, KeepsTheOldFileWhenTheNewOneDoesNotReachTheDisk) {
    const TemporaryFolder folder;
    const auto file = folder.Path() / "talvane.prom";
    WriteAtomically(file, "old");
    fsyncError = EIO;
    EXPECT_EQ(ErrorOf(file), "cannot write " + file.string() + ": Input/output error");
    EXPECT_EQ(ReadFile(file), "old");
    EXPECT_EQ(FilesIn(folder.Path()), 1);
}

}  // namespace
}  // namespace tool
