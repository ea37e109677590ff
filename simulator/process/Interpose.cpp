// SPDX-License-Identifier: MIT
//
// The interposed libc functions for files, directories, privilege, time and the shell. Each asks
// the machine first and calls the real function when the machine has no answer. The variants
// (64-bit offsets, fortified forms) all ask the machine the same question.

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

Machine* activeMachine = nullptr;

// Leaves errno as libc does: set by a failure, untouched by success.
class ErrnoGuard {
public:
    ErrnoGuard() : before_(errno) {}
    ~ErrnoGuard() { errno = before_; }
    ErrnoGuard(const ErrnoGuard&) = delete;
    ErrnoGuard& operator=(const ErrnoGuard&) = delete;

    template <typename Result>
    Result Finish(const Answer& answer) {
        if (!answer.Ok()) before_ = answer.error;
        return static_cast<Result>(answer.value);
    }

private:
    int before_;
};

// Asks the machine. Calls the real function when there is no machine or it has no answer.
template <typename Result, typename Ask, typename Real>
Result AskMachineOr(Ask ask, Real real) {
    if (activeMachine != nullptr) {
        ErrnoGuard guard;
        if (const std::optional<Answer> answer = ask(*activeMachine); answer.has_value())
            return guard.Finish<Result>(*answer);
    }
    return real();
}

// The third argument of open, which is present only when a file may be created.
mode_t ModeOf(int flags, std::va_list arguments) {
    const bool creates = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
    return creates ? va_arg(arguments, mode_t) : 0;
}

int OpenAs(const char* name, const void* caller, const char* path, int flags, mode_t mode) {
    return AskMachineOr<int>(
        [&](Machine& machine) { return machine.Open(sim::ObservedCaller(caller), path, flags); },
        [&] { return sim::RealFunction<int(const char*, int, ...)>(name)(path, flags, mode); });
}

int OpenCheckedAs(const char* name, const void* caller, const char* path, int flags) {
    return AskMachineOr<int>(
        [&](Machine& machine) { return machine.Open(sim::ObservedCaller(caller), path, flags); },
        [&] { return sim::RealFunction<int(const char*, int)>(name)(path, flags); });
}

// The directory matters only for relative paths, and no path of a machine is relative.
int OpenAtAs(const char* name, const void* caller, int directory, const char* path, int flags,
             mode_t mode) {
    return AskMachineOr<int>(
        [&](Machine& machine) { return machine.Open(sim::ObservedCaller(caller), path, flags); },
        [&] {
            return sim::RealFunction<int(int, const char*, int, ...)>(name)(directory, path, flags,
                                                                            mode);
        });
}

template <typename Offset>
Offset SeekAs(const char* name, const void* caller, int descriptor, Offset offset, int whence) {
    return AskMachineOr<Offset>(
        [&](Machine& machine) {
            return machine.Seek(sim::ObservedCaller(caller), descriptor, offset, whence);
        },
        [&] {
            return sim::RealFunction<Offset(int, Offset, int)>(name)(descriptor, offset, whence);
        });
}

int IoctlAs(const char* name, const void* caller, int descriptor, unsigned long request,
            void* argument) {
    return AskMachineOr<int>(
        [&](Machine& machine) {
            return machine.Ioctl(sim::ObservedCaller(caller), descriptor, request, argument);
        },
        [&] {
            return sim::RealFunction<int(int, unsigned long, ...)>(name)(descriptor, request,
                                                                         argument);
        });
}

// A handle without entries, of a directory that is already removed. A program cannot list a
// simulated directory; it can only open names that it knows.
DIR* EmptyDirectory() {
    char name[] = "/tmp/talvane-directory-XXXXXX";
    if (mkdtemp(name) == nullptr) return nullptr;
    DIR* const handle = sim::RealFunction<DIR*(const char*)>("opendir")(name);
    (void)rmdir(name);
    return handle;
}

}  // namespace

namespace sim {

Interposition::Interposition(Machine& machine) {
    if (activeMachine != nullptr) throw std::logic_error("one simulated server at a time");
    LinkInterposedAllocations();
    LinkInterposedPorts();
    activeMachine = &machine;
}

Interposition::~Interposition() {
    activeMachine = nullptr;
}

Machine* Interposition::GetMachine() {
    return activeMachine;
}

}  // namespace sim

#define CALLER __builtin_return_address(0)

extern "C" {

int open(const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeOf(flags, arguments);
    va_end(arguments);
    return OpenAs("open", CALLER, path, flags, mode);
}

int open64(const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeOf(flags, arguments);
    va_end(arguments);
    return OpenAs("open64", CALLER, path, flags, mode);
}

int openat(int directory, const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeOf(flags, arguments);
    va_end(arguments);
    return OpenAtAs("openat", CALLER, directory, path, flags, mode);
}

int openat64(int directory, const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeOf(flags, arguments);
    va_end(arguments);
    return OpenAtAs("openat64", CALLER, directory, path, flags, mode);
}

int __open_2(const char* path, int flags) {
    return OpenCheckedAs("__open_2", CALLER, path, flags);
}

int __open64_2(const char* path, int flags) {
    return OpenCheckedAs("__open64_2", CALLER, path, flags);
}

off_t lseek(int descriptor, off_t offset, int whence) noexcept {
    return SeekAs<off_t>("lseek", CALLER, descriptor, offset, whence);
}

off64_t lseek64(int descriptor, off64_t offset, int whence) noexcept {
    return SeekAs<off64_t>("lseek64", CALLER, descriptor, offset, whence);
}

ssize_t read(int descriptor, void* out, size_t size) {
    const void* const caller = CALLER;
    return AskMachineOr<ssize_t>(
        [&](Machine& machine) {
            return machine.Read(sim::ObservedCaller(caller), descriptor, out, size);
        },
        [&] {
            return sim::RealFunction<ssize_t(int, void*, size_t)>("read")(descriptor, out, size);
        });
}

ssize_t __read_chk(int descriptor, void* out, size_t size, size_t room) {
    const void* const caller = CALLER;
    return AskMachineOr<ssize_t>(
        [&](Machine& machine) -> std::optional<Answer> {
            if (size > room) return std::nullopt;  // libc ends the program, with its own message
            return machine.Read(sim::ObservedCaller(caller), descriptor, out, size);
        },
        [&] {
            return sim::RealFunction<ssize_t(int, void*, size_t, size_t)>("__read_chk")(
                descriptor, out, size, room);
        });
}

int close(int descriptor) {
    const void* const caller = CALLER;
    return AskMachineOr<int>(
        [&](Machine& machine) { return machine.Close(sim::ObservedCaller(caller), descriptor); },
        [&] { return sim::RealFunction<int(int)>("close")(descriptor); });
}

int ioctl(int descriptor, unsigned long request, ...) noexcept {
    std::va_list arguments;
    va_start(arguments, request);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    return IoctlAs("ioctl", CALLER, descriptor, request, argument);
}

// What ioctl calls in programs with 64-bit time stamps.
int __ioctl_time64(int descriptor, unsigned long request, ...) {
    std::va_list arguments;
    va_start(arguments, request);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    return IoctlAs("__ioctl_time64", CALLER, descriptor, request, argument);
}

DIR* opendir(const char* path) {
    const void* const caller = CALLER;
    if (activeMachine != nullptr) {
        ErrnoGuard guard;
        const std::optional<Answer> answer =
            activeMachine->OpenDirectory(sim::ObservedCaller(caller), path);
        if (answer && !answer->Ok()) {
            (void)guard.Finish<int>(*answer);
            return nullptr;
        }
        if (answer) {
            DIR* const handle = EmptyDirectory();
            if (handle == nullptr)
                (void)guard.Finish<int>(Answer::Failed(errno));
            else
                activeMachine->DirectoryOpened(handle, path);
            return handle;
        }
    }
    return sim::RealFunction<DIR*(const char*)>("opendir")(path);
}

int closedir(DIR* directory) {
    const void* const caller = CALLER;
    return AskMachineOr<int>(
        [&](Machine& machine) {
            const std::optional<Answer> answer =
                machine.CloseDirectory(sim::ObservedCaller(caller), directory);
            if (answer) (void)sim::RealFunction<int(DIR*)>("closedir")(directory);
            return answer;
        },
        [&] { return sim::RealFunction<int(DIR*)>("closedir")(directory); });
}

int iopl(int level) noexcept {
    return AskMachineOr<int>(
        [&](Machine& machine) { return std::optional(machine.SetPrivilege(level)); },
        [&] { return sim::RealFunction<int(int)>("iopl")(level); });
}

unsigned sleep(unsigned seconds) {
    return AskMachineOr<unsigned>(
        [&](Machine& machine) { return std::optional(machine.Sleep(seconds)); },
        [&] { return sim::RealFunction<unsigned(unsigned)>("sleep")(seconds); });
}

int system(const char* command) {
    const void* const caller = CALLER;
    return AskMachineOr<int>(
        [&](Machine& machine) {
            return machine.System(sim::ObservedCaller(caller), command,
                                  sim::RealFunction<int(const char*)>("system"));
        },
        [&] { return sim::RealFunction<int(const char*)>("system")(command); });
}

}  // extern "C"
