// SPDX-License-Identifier: MIT
//
// Calls of the system that fail while gzip is run. The linker gives the archive these definitions
// in place of the C library's (--wrap).

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <string_view>
#include <system_error>

#include "archive/Gzip.h"
#include "tests/support/ErrorText.h"

namespace {

// The call that fails next, the number of its uses that succeed first, and the error.
std::string_view failing;
int succeeding = 0;
int failure = 0;

bool Fails(std::string_view call) {
    if (call != failing || succeeding-- > 0) return false;
    failing = {};
    return true;
}

int FailWithErrno() {
    errno = failure;
    return -1;
}

}  // namespace

extern "C" {

int RealAccess(const char* path, int mode) asm("__real_access");
int Access(const char* path, int mode) asm("__wrap_access");
int Access(const char* path, int mode) {
    return Fails("access") ? FailWithErrno() : RealAccess(path, mode);
}

ssize_t RealRead(int file, void* bytes, std::size_t size) asm("__real_read");
ssize_t Read(int file, void* bytes, std::size_t size) asm("__wrap_read");
ssize_t Read(int file, void* bytes, std::size_t size) {
    return Fails("read") ? FailWithErrno() : RealRead(file, bytes, size);
}

pid_t RealWaitpid(pid_t child, int* status, int options) asm("__real_waitpid");
pid_t Waitpid(pid_t child, int* status, int options) asm("__wrap_waitpid");
pid_t Waitpid(pid_t child, int* status, int options) {
    return Fails("waitpid") ? FailWithErrno() : RealWaitpid(child, status, options);
}

using Actions = posix_spawn_file_actions_t;

int RealSpawn(pid_t* child, const char* path, const Actions* actions,
              const posix_spawnattr_t* attributes, char* const* arguments,
              char* const* environment) asm("__real_posix_spawn");
int Spawn(pid_t* child, const char* path, const Actions* actions,
          const posix_spawnattr_t* attributes, char* const* arguments,
          char* const* environment) asm("__wrap_posix_spawn");
int Spawn(pid_t* child, const char* path, const Actions* actions,
          const posix_spawnattr_t* attributes, char* const* arguments, char* const* environment) {
    return Fails("posix_spawn")
               ? failure
               : RealSpawn(child, path, actions, attributes, arguments, environment);
}

int RealAddDup2(Actions* actions, int from, int to) asm("__real_posix_spawn_file_actions_adddup2");
int AddDup2(Actions* actions, int from, int to) asm("__wrap_posix_spawn_file_actions_adddup2");
int AddDup2(Actions* actions, int from, int to) {
    return Fails("adddup2") ? failure : RealAddDup2(actions, from, to);
}

int RealAddOpen(Actions* actions, int descriptor, const char* path, int flags,
                mode_t mode) asm("__real_posix_spawn_file_actions_addopen");
int AddOpen(Actions* actions, int descriptor, const char* path, int flags,
            mode_t mode) asm("__wrap_posix_spawn_file_actions_addopen");
int AddOpen(Actions* actions, int descriptor, const char* path, int flags, mode_t mode) {
    return Fails("addopen") ? failure : RealAddOpen(actions, descriptor, path, flags, mode);
}

int RealSigaction(int signal, const struct sigaction* action,
                  struct sigaction* before) asm("__real_sigaction");
int Sigaction(int signal, const struct sigaction* action,
              struct sigaction* before) asm("__wrap_sigaction");
int Sigaction(int signal, const struct sigaction* action, struct sigaction* before) {
    return Fails("sigaction") ? FailWithErrno() : RealSigaction(signal, action, before);
}

}  // extern "C"

namespace {

using archive::Bytes;

void LetFail(std::string_view call, int error, int after = 0) {
    failing = call;
    failure = error;
    succeeding = after;
}

int OpenDescriptors() {
    int count = 0;
    for (int descriptor = 0; descriptor < 100; ++descriptor)
        count += fcntl(descriptor, F_GETFD) >= 0;
    return count;
}

// What compression says when the call fails. Afterwards no file is open, no child is left, and the
// next compression succeeds.
std::string Refusal(std::string_view call, int error, int after = 0) {
    const int before = OpenDescriptors();
    LetFail(call, error, after);
    const std::string text = ErrorText<std::runtime_error>([] {
        return archive::Compress(Bytes{1, 2, 3});
    });
    EXPECT_EQ(failing, "") << call << " was not called";
    EXPECT_EQ(OpenDescriptors(), before);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(archive::Decompress(archive::Compress(Bytes{1, 2, 3})), (Bytes{1, 2, 3}));
    return text;
}

// Compression and its inverse succeed although the call fails.
void ExpectSuccessAlthough(std::string_view call, int error) {
    LetFail(call, error);
    EXPECT_EQ(archive::Decompress(archive::Compress(Bytes{1})), Bytes{1});
    EXPECT_EQ(failing, "") << call << " was not called";
}

// Compression has no result when the call fails.
void ExpectFailureAfter(std::string_view call, int error, int after = 0) {
    LetFail(call, error, after);
    EXPECT_EQ(ErrorText<std::runtime_error>([] { return archive::Compress(Bytes{1}); }),
              "gzip has failed");
}

TEST(GzipFaultsTest, ErrorNamesTheProgramThatCannotBeStarted) {
    EXPECT_EQ(Refusal("posix_spawn", EAGAIN), "/usr/bin/gzip: Resource temporarily unavailable");
}

TEST(GzipFaultsTest, WithoutMemoryForTheFilesOfTheChildNothingIsStarted) {
    EXPECT_EQ(Refusal("adddup2", ENOMEM), "gzip: Cannot allocate memory");
    EXPECT_EQ(Refusal("adddup2", ENOMEM, 1), "gzip: Cannot allocate memory");
    EXPECT_EQ(Refusal("addopen", ENOMEM), "gzip: Cannot allocate memory");
}

TEST(GzipFaultsTest, ProgramIsTakenFromItsOtherPlace) {
    ExpectSuccessAlthough("access", ENOENT);
}

TEST(GzipFaultsTest, OutputThatCannotBeReadIsAnErrorAndEndsTheChild) {
    EXPECT_EQ(Refusal("read", EIO), "gzip: Input/output error");
}

TEST(GzipFaultsTest, InterruptedReadIsRepeated) {
    ExpectSuccessAlthough("read", EINTR);
}

TEST(GzipFaultsTest, InterruptedWaitIsRepeated) {
    ExpectSuccessAlthough("waitpid", EINTR);
}

TEST(GzipFaultsTest, ChildWhoseEndIsNotKnownHasFailed) {
    ExpectFailureAfter("waitpid", ECHILD);
    while (waitpid(-1, nullptr, 0) > 0) continue;
}

TEST(GzipFaultsTest, WhereTheSignalOfChildrenCannotBeAskedForItStaysAsItIs) {
    ExpectSuccessAlthough("sigaction", EINVAL);
    ASSERT_NE(std::signal(SIGCHLD, SIG_IGN), SIG_ERR);
    ExpectFailureAfter("sigaction", EINVAL, 1);
    EXPECT_EQ(std::signal(SIGCHLD, SIG_DFL), SIG_IGN);
}

}  // namespace
