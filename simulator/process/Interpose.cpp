// SPDX-License-Identifier: MIT
//
// Files, directories, privilege, time and the shell. Every function has the same three lines: the
// machine's answer; the real function where it has none. The variants (64-bit offsets, fortified
// forms) are other doors to the same room.

#include "simulator/process/Interpose.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/io.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <optional>
#include <stdexcept>

#include "simulator/machine/Machine.h"
#include "simulator/process/Callers.h"
#include "simulator/process/RealFunction.h"

namespace {

using sim::Answer;
using sim::Interposition;
using sim::Machine;

Machine* active = nullptr;

// errno as libc leaves it: set by a failure, untouched by success.
class ErrnoGuard {
public:
    ErrnoGuard() : before_(errno) {}
    ~ErrnoGuard() { errno = before_; }
    ErrnoGuard(const ErrnoGuard&) = delete;
    ErrnoGuard& operator=(const ErrnoGuard&) = delete;

    template <typename Result>
    Result finish(const Answer& answer) {
        if (!answer.ok()) before_ = answer.error;
        return static_cast<Result>(answer.value);
    }

private:
    int before_;
};

// Asks the machine; without a machine or an answer of it, the real function.
template <typename Result, typename Ask, typename Real>
Result answerOr(Ask ask, Real real) {
    if (active != nullptr) {
        ErrnoGuard guard;
        if (const std::optional<Answer> answer = ask(*active); answer.has_value())
            return guard.finish<Result>(*answer);
    }
    return real();
}

// The third argument of open, which is there only when a file may be created.
mode_t modeOf(int flags, std::va_list arguments) {
    const bool creates = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
    return creates ? va_arg(arguments, mode_t) : 0;
}

int openAs(const char* name, const void* caller, const char* path, int flags, mode_t mode) {
    return answerOr<int>(
        [&](Machine& machine) { return machine.open(sim::observedCaller(caller), path, flags); },
        [&] { return sim::realFunction<int(const char*, int, ...)>(name)(path, flags, mode); });
}

int openCheckedAs(const char* name, const void* caller, const char* path, int flags) {
    return answerOr<int>(
        [&](Machine& machine) { return machine.open(sim::observedCaller(caller), path, flags); },
        [&] { return sim::realFunction<int(const char*, int)>(name)(path, flags); });
}

// Relative to a directory only for a relative path, and no machine path is relative.
int openAtAs(const char* name, const void* caller, int directory, const char* path, int flags,
             mode_t mode) {
    return answerOr<int>(
        [&](Machine& machine) { return machine.open(sim::observedCaller(caller), path, flags); },
        [&] {
            return sim::realFunction<int(int, const char*, int, ...)>(name)(directory, path, flags,
                                                                            mode);
        });
}

template <typename Offset>
Offset seekAs(const char* name, const void* caller, int descriptor, Offset offset, int whence) {
    return answerOr<Offset>(
        [&](Machine& machine) {
            return machine.seek(sim::observedCaller(caller), descriptor, offset, whence);
        },
        [&] {
            return sim::realFunction<Offset(int, Offset, int)>(name)(descriptor, offset, whence);
        });
}

int ioctlAs(const char* name, const void* caller, int descriptor, unsigned long request,
            void* argument) {
    return answerOr<int>(
        [&](Machine& machine) {
            return machine.ioctl(sim::observedCaller(caller), descriptor, request, argument);
        },
        [&] {
            return sim::realFunction<int(int, unsigned long, ...)>(name)(descriptor, request,
                                                                         argument);
        });
}

// A handle without entries: of a directory that is no longer there. Names below a simulated
// directory are known to those who open them only.
DIR* emptyDirectory() {
    char name[] = "/tmp/talvane-directory-XXXXXX";
    if (mkdtemp(name) == nullptr) return nullptr;
    DIR* const handle = sim::realFunction<DIR*(const char*)>("opendir")(name);
    (void)rmdir(name);
    return handle;
}

}  // namespace

namespace sim {

Interposition::Interposition(Machine& machine) {
    if (active != nullptr) throw std::logic_error("one simulated server at a time");
    linkInterposedAllocations();
    active = &machine;
}

Interposition::~Interposition() {
    active = nullptr;
}

Machine* Interposition::machine() {
    return active;
}

}  // namespace sim

#define CALLER __builtin_return_address(0)

extern "C" {

int open(const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openAs("open", CALLER, path, flags, mode);
}

int open64(const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openAs("open64", CALLER, path, flags, mode);
}

int openat(int directory, const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openAtAs("openat", CALLER, directory, path, flags, mode);
}

int openat64(int directory, const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openAtAs("openat64", CALLER, directory, path, flags, mode);
}

int __open_2(const char* path, int flags) {
    return openCheckedAs("__open_2", CALLER, path, flags);
}

int __open64_2(const char* path, int flags) {
    return openCheckedAs("__open64_2", CALLER, path, flags);
}

off_t lseek(int descriptor, off_t offset, int whence) noexcept {
    return seekAs<off_t>("lseek", CALLER, descriptor, offset, whence);
}

off64_t lseek64(int descriptor, off64_t offset, int whence) noexcept {
    return seekAs<off64_t>("lseek64", CALLER, descriptor, offset, whence);
}

ssize_t read(int descriptor, void* out, size_t size) {
    const void* const caller = CALLER;
    return answerOr<ssize_t>(
        [&](Machine& machine) {
            return machine.read(sim::observedCaller(caller), descriptor, out, size);
        },
        [&] {
            return sim::realFunction<ssize_t(int, void*, size_t)>("read")(descriptor, out, size);
        });
}

ssize_t __read_chk(int descriptor, void* out, size_t size, size_t room) {
    const void* const caller = CALLER;
    return answerOr<ssize_t>(
        [&](Machine& machine) -> std::optional<Answer> {
            if (size > room) return std::nullopt;  // libc ends the program, with its own message
            return machine.read(sim::observedCaller(caller), descriptor, out, size);
        },
        [&] {
            return sim::realFunction<ssize_t(int, void*, size_t, size_t)>("__read_chk")(
                descriptor, out, size, room);
        });
}

int close(int descriptor) {
    const void* const caller = CALLER;
    return answerOr<int>(
        [&](Machine& machine) { return machine.close(sim::observedCaller(caller), descriptor); },
        [&] { return sim::realFunction<int(int)>("close")(descriptor); });
}

int ioctl(int descriptor, unsigned long request, ...) noexcept {
    std::va_list arguments;
    va_start(arguments, request);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    return ioctlAs("ioctl", CALLER, descriptor, request, argument);
}

// The door that ioctl is with 64-bit time stamps.
int __ioctl_time64(int descriptor, unsigned long request, ...) {
    std::va_list arguments;
    va_start(arguments, request);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    return ioctlAs("__ioctl_time64", CALLER, descriptor, request, argument);
}

DIR* opendir(const char* path) {
    const void* const caller = CALLER;
    if (active != nullptr) {
        ErrnoGuard guard;
        const std::optional<Answer> answer =
            active->openDirectory(sim::observedCaller(caller), path);
        if (answer && !answer->ok()) {
            (void)guard.finish<int>(*answer);
            return nullptr;
        }
        if (answer) {
            DIR* const handle = emptyDirectory();
            if (handle == nullptr)
                (void)guard.finish<int>(Answer::failed(errno));
            else
                active->directoryOpened(handle, path);
            return handle;
        }
    }
    return sim::realFunction<DIR*(const char*)>("opendir")(path);
}

int closedir(DIR* directory) {
    const void* const caller = CALLER;
    return answerOr<int>(
        [&](Machine& machine) {
            const std::optional<Answer> answer =
                machine.closeDirectory(sim::observedCaller(caller), directory);
            if (answer) (void)sim::realFunction<int(DIR*)>("closedir")(directory);
            return answer;
        },
        [&] { return sim::realFunction<int(DIR*)>("closedir")(directory); });
}

int iopl(int level) noexcept {
    return answerOr<int>(
        [&](Machine& machine) { return std::optional(machine.setPrivilege(level)); },
        [&] { return sim::realFunction<int(int)>("iopl")(level); });
}

unsigned sleep(unsigned seconds) {
    return answerOr<unsigned>(
        [&](Machine& machine) { return std::optional(machine.sleep(seconds)); },
        [&] { return sim::realFunction<unsigned(unsigned)>("sleep")(seconds); });
}

int system(const char* command) {
    const void* const caller = CALLER;
    return answerOr<int>(
        [&](Machine& machine) {
            return machine.system(sim::observedCaller(caller), command,
                                  sim::realFunction<int(const char*)>("system"));
        },
        [&] { return sim::realFunction<int(const char*)>("system")(command); });
}

}  // extern "C"
