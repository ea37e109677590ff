// SPDX-License-Identifier: MIT
//
// The child reads from a file in memory, so that only one pipe has to be served.

#include "archive/Gzip.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

namespace archive {
namespace {

// Where the program is, whatever PATH says.
constexpr std::array kPrograms = {"/usr/bin/gzip", "/bin/gzip"};

[[noreturn]] void ThrowErrno(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

const char* FindProgram() {
    for (const char* const program : kPrograms)
        if (access(program, X_OK) == 0) return program;
    throw std::runtime_error(std::string(kPrograms[0]) + ": not there");
}

class OwnDescriptor {
public:
    explicit OwnDescriptor(int descriptor) : descriptor_(descriptor) {}
    ~OwnDescriptor() { Close(); }
    OwnDescriptor(const OwnDescriptor&) = delete;
    OwnDescriptor& operator=(const OwnDescriptor&) = delete;

    int Get() const { return descriptor_; }
    void Close() {
        if (descriptor_ >= 0) (void)close(descriptor_);  // result not used: all was said before
        descriptor_ = -1;
    }

private:
    int descriptor_;
};

// A file in memory with these bytes, at its start.
int FileWith(std::span<const std::uint8_t> bytes) {
    const int file = memfd_create("gzip", MFD_CLOEXEC);
    if (file < 0) ThrowErrno("memfd_create");
    for (std::size_t at = 0; at < bytes.size();) {
        const ssize_t got =
            pwrite(file, bytes.data() + at, bytes.size() - at, static_cast<off_t>(at));
        if (got < 0) {
            const int error = errno;
            (void)close(file);
            errno = error;
            ThrowErrno("a file in memory");
        }
        at += static_cast<std::size_t>(got);
    }
    return file;
}

class FileActions {
public:
    FileActions() { (void)posix_spawn_file_actions_init(&actions_); }  // always 0 in this libc
    ~FileActions() { (void)posix_spawn_file_actions_destroy(&actions_); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;

    // The child's descriptor `to` is this one.
    void Put(int from, int to) {
        if (const int error = posix_spawn_file_actions_adddup2(&actions_, from, to)) Fail(error);
    }
    void Silence(int descriptor) {
        if (const int error =
                posix_spawn_file_actions_addopen(&actions_, descriptor, "/dev/null", O_WRONLY, 0))
            Fail(error);
    }
    const posix_spawn_file_actions_t* Get() const { return &actions_; }

private:
    [[noreturn]] static void Fail(int error) {
        throw std::system_error(error, std::generic_category(), "gzip");
    }

    posix_spawn_file_actions_t actions_;
};

// A process whose parent made it ignore SIGCHLD would not learn how its child has ended.
class ReportedChildren {
public:
    ReportedChildren() {
        struct sigaction reported {};
        reported.sa_handler = SIG_DFL;
        if (sigaction(SIGCHLD, nullptr, &before_) == 0 && before_.sa_handler == SIG_IGN)
            isChanged_ = sigaction(SIGCHLD, &reported, nullptr) == 0;
    }
    ~ReportedChildren() {
        if (isChanged_) (void)sigaction(SIGCHLD, &before_, nullptr);
    }
    ReportedChildren(const ReportedChildren&) = delete;
    ReportedChildren& operator=(const ReportedChildren&) = delete;

private:
    struct sigaction before_ {};
    bool isChanged_ = false;
};

// A running gzip. It is ended with the object unless it was waited for.
class GzipProcess {
public:
    GzipProcess(const char* options, int input, int output) {
        FileActions actions;
        actions.Put(input, STDIN_FILENO);
        actions.Put(output, STDOUT_FILENO);
        actions.Silence(STDERR_FILENO);
        std::string name = "gzip";
        std::string words = options;
        std::string locale = "LC_ALL=C";
        char* argv[] = {name.data(), words.data(), nullptr};
        char* environment[] = {locale.data(), nullptr};
        const char* const program = FindProgram();
        if (const int error =
                posix_spawn(&child_, program, actions.Get(), nullptr, argv, environment))
            throw std::system_error(error, std::generic_category(), program);
    }
    ~GzipProcess() {
        if (child_ <= 0) return;
        (void)kill(child_, SIGKILL);  // result not used: it may have ended by itself
        (void)Wait();
    }
    GzipProcess(const GzipProcess&) = delete;
    GzipProcess& operator=(const GzipProcess&) = delete;

    // Whether it has done its work.
    bool Wait() {
        int status = 0;
        pid_t ended = 0;
        while ((ended = waitpid(child_, &status, 0)) < 0 && errno == EINTR) continue;
        const bool isKnown = ended == child_;
        child_ = 0;
        return isKnown && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }

private:
    pid_t child_ = 0;
};

struct Output {
    Bytes bytes;
    bool isWhole;  // whether gzip has written all and was content
};

// Stops as soon as there are more than `limit` bytes.
Output RunGzip(const char* options, std::span<const std::uint8_t> bytes, std::size_t limit) {
    const ReportedChildren children;
    const OwnDescriptor input(FileWith(bytes));
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) ThrowErrno("pipe2");
    const OwnDescriptor readEnd(ends[0]);
    OwnDescriptor writeEnd(ends[1]);
    GzipProcess gzip(options, input.Get(), writeEnd.Get());
    writeEnd.Close();
    Output output{{}, false};
    std::array<std::uint8_t, 65536> part;
    while (output.bytes.size() <= limit) {
        const ssize_t got = read(readEnd.Get(), part.data(), part.size());
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) ThrowErrno("gzip");
        if (got == 0) {
            output.isWhole = gzip.Wait();
            break;
        }
        output.bytes.insert(output.bytes.end(), part.begin(), part.begin() + got);
    }
    return output;
}

}  // namespace

bool IsGzip(std::span<const std::uint8_t> bytes) {
    return bytes.size() >= 2 && bytes[0] == 0x1F && bytes[1] == 0x8B;
}

Bytes Compress(std::span<const std::uint8_t> bytes) {
    Output output = RunGzip("-9cn", bytes, kMaxTarSize);
    if (!output.isWhole) throw std::runtime_error("gzip has failed");
    return std::move(output.bytes);
}

Bytes Decompress(std::span<const std::uint8_t> gzip, std::size_t limit) {
    Output output = RunGzip("-dc", gzip, limit);
    if (output.bytes.size() > limit)
        throw Error("it unpacks to more than " + std::to_string(limit) + " bytes");
    if (!output.isWhole) throw Error("it is no whole gzip file");
    return std::move(output.bytes);
}

}  // namespace archive
