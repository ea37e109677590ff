// SPDX-License-Identifier: MIT
//
// The child's output goes to a file in memory, so that it cannot fill a pipe and block.

#include "tools/library/ChildProcess.h"

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "tools/base/Descriptor.h"

namespace tool {
namespace {

[[noreturn]] void ThrowErrno(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

std::filesystem::path TemporaryFiles() {
    std::error_code error;
    const auto folder = std::filesystem::temp_directory_path(error);
    if (error) throw std::runtime_error("there is no folder for temporary files: TMPDIR is wrong");
    return folder;
}

class EmptyFolder {
public:
    EmptyFolder() : path_(TemporaryFiles() / "talvane-XXXXXX") {
        if (mkdtemp(path_.data()) == nullptr) ThrowErrno(path_.c_str());
    }
    ~EmptyFolder() {
        std::error_code ignored;  // at worst an empty folder stays among the temporary files
        std::filesystem::remove_all(path_, ignored);
    }
    EmptyFolder(const EmptyFolder&) = delete;
    EmptyFolder& operator=(const EmptyFolder&) = delete;

    const char* Path() const { return path_.c_str(); }

private:
    std::string path_;
};

[[noreturn]] void BeChild(const std::function<void()>& call, const char* folder, int output) {
    constexpr int kNotRun = 1;
    if (chdir(folder) != 0 || dup2(output, STDOUT_FILENO) < 0) _exit(kNotRun);
    call();
    _exit(std::fflush(stdout) == 0 ? 0 : kNotRun);
}

std::string WholeFile(int descriptor) {
    std::string text;
    char buffer[256];
    off_t at = 0;
    for (;;) {
        const ssize_t got = pread(descriptor, buffer, sizeof buffer, at);
        if (got < 0) ThrowErrno("the library's output");
        if (got == 0) return text;
        text.append(buffer, static_cast<std::size_t>(got));
        at += got;
    }
}

}  // namespace

SharedMemory::SharedMemory(std::size_t size)
    : memory_(mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)),
      size_(size) {
    if (memory_ == MAP_FAILED) ThrowErrno("mmap");
}

SharedMemory::~SharedMemory() {
    (void)munmap(memory_, size_);  // result not used: the range is that of the constructor
}

std::optional<std::string> OutputOfChildProcess(const std::function<void()>& call) {
    const EmptyFolder folder;
    const Descriptor output(memfd_create("output", MFD_CLOEXEC));
    if (!output.IsOpen()) ThrowErrno("memfd_create");
    (void)std::fflush(stdout);  // result not used: the last flush of the tool reports lost output
    const pid_t child = fork();
    if (child < 0) ThrowErrno("fork");
    if (child == 0) BeChild(call, folder.Path(), output.Get());
    int status = 0;
    while (waitpid(child, &status, 0) != child)
        if (errno != EINTR) ThrowErrno("waitpid");
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) return std::nullopt;
    return WholeFile(output.Get());
}

}  // namespace tool
