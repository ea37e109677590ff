// SPDX-License-Identifier: MIT
//
// Files, directories and the shell of a simulated server. This code runs inside interposed calls,
// so it must not make an interposed call itself.

#include "simulator/machine/Machine.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>

#include "simulator/base/CallText.h"
#include "simulator/machine/MemoryDevice.h"
#include "simulator/machine/RealFile.h"
#include "simulator/machine/TextDevice.h"
#include "simulator/machine/Violation.h"

namespace sim {
namespace {

// The path without doubled or trailing slashes, as paths are compared.
std::string NormalPath(std::string_view path) {
    std::string result;
    for (const char c : path)
        if (c != '/' || result.empty() || result.back() != '/') result += c;
    if (result.size() > 1 && result.back() == '/') result.pop_back();
    return result;
}

bool IdentifyFile(int descriptor, std::uint64_t& device, std::uint64_t& inode) {
    struct stat64 status;
    const int before = errno;
    const bool known = fstat64(descriptor, &status) == 0;
    errno = before;
    if (!known) return false;
    device = status.st_dev;
    inode = status.st_ino;
    return true;
}

Answer ReadableDirectory(const std::string& path) {
    const long descriptor =
        syscall(SYS_openat, AT_FDCWD, path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return Answer::Failed(errno);
    (void)syscall(SYS_close, descriptor);  // the result does not matter: nothing was read
    return Answer{};
}

}  // namespace

Machine::Machine() {
    Install("/dev/mem", std::make_unique<MemoryDevice>(memory_));
    ports_.Install(PciBus::kFirstPort, PciBus::kPorts, pci_);
}

bool Machine::IsMachinePath(std::string_view given) {
    const std::string path = NormalPath(given);
    if (path == "/dev/mem" || path == "/dev/ipmi" || path == "/proc/stat") return true;
    if (path == "/proc/ide" || path.starts_with("/proc/ide/")) return true;
    constexpr std::string_view disk = "/dev/hd";
    return path.size() == disk.size() + 1 && path.starts_with(disk) && path.back() >= 'a' &&
           path.back() <= 'z';
}

void Machine::Install(const std::string& path, std::unique_ptr<Device> device) {
    if (!IsMachinePath(path)) throw std::invalid_argument("no server has a device " + path);
    devices_.insert_or_assign(NormalPath(path), std::move(device));
}

void Machine::InstallDirectory(const std::string& path) {
    if (!IsMachinePath(path)) throw std::invalid_argument("no server has a directory " + path);
    directories_.insert(NormalPath(path));
}

void Machine::UseReal(const std::string& path, const std::string& file) {
    if (!IsMachinePath(path)) throw std::invalid_argument("no server has a device " + path);
    devices_.erase(NormalPath(path));
    real_.insert_or_assign(NormalPath(path), file);
}

void Machine::Refuse(const std::string& path, int error) {
    if (!IsMachinePath(path)) throw std::invalid_argument("no server has a device " + path);
    refused_.insert_or_assign(NormalPath(path), error);
}

Answer Machine::LogAnswer(std::string call, std::string what, Answer answer, std::string shown) {
    log_.Add({std::move(call), std::move(what),
              answer.Ok() ? std::move(shown) : "-1 " + ErrorName(answer.error)});
    return answer;
}

// The open file of a descriptor; null when it is not one of this machine. A descriptor that the
// program closed by a direct system call is forgotten.
Machine::OpenedFile* Machine::Find(int descriptor) {
    const auto entry = opened_.find(descriptor);
    if (entry == opened_.end()) return nullptr;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    if (IdentifyFile(descriptor, device, inode) && device == entry->second.device &&
        inode == entry->second.inode)
        return &entry->second;
    opened_.erase(entry);
    return nullptr;
}

// The observed library may use this machine's descriptors only: any other is not open to it.
std::optional<Answer> Machine::RefuseUnopened(Caller caller, const std::string& call) {
    if (caller.empty()) return std::nullopt;
    return LogAnswer(call, "a descriptor that is not open", Answer::Failed(EBADF), "");
}

std::optional<Answer> Machine::Open(Caller caller, const char* path, int flags) {
    if (path == nullptr || !IsMachinePath(path)) {
        if (caller.empty()) return std::nullopt;
        AbortOnViolation(std::string(caller) + " asked for open(" + Quoted(path) +
                         "), which this machine does not have");
    }
    const std::optional<int> fault = faults_.Enter("open");
    const Answer answer = fault ? Answer::Failed(*fault) : OpenPath(NormalPath(path), flags);
    return LogAnswer("open", std::string(path) + " " + OpenFlags(flags), answer, "ok");
}

Answer Machine::OpenPath(const std::string& path, int flags) {
    if (const auto refused = refused_.find(path); refused != refused_.end())
        return Answer::Failed(refused->second);
    int error = EACCES;
    std::unique_ptr<OpenFile> file = OpenDeviceOrFile(path, flags, error);
    if (file == nullptr) return Answer::Failed(error);
    const int descriptor = file->MakeDescriptor(path.c_str());
    if (descriptor < 0) return Answer::Failed(errno);
    OpenedFile opened{path, std::move(file), 0, 0};
    IdentifyFile(descriptor, opened.device, opened.inode);
    opened_.insert_or_assign(descriptor, std::move(opened));
    return {descriptor};
}

std::unique_ptr<OpenFile> Machine::OpenDeviceOrFile(const std::string& path, int flags,
                                                    int& error) {
    const auto device = devices_.find(path);
    if (device != devices_.end()) return device->second->Open(flags, error);
    if (const auto real = RealPath(path)) return RealFile::Open(*real, flags, error);
    error = ENOENT;
    return nullptr;
}

// The path of the real system that stands for this one; nothing when none does.
std::optional<std::string> Machine::RealPath(const std::string& path) const {
    for (const auto& [start, file] : real_)
        if (path == start || path.starts_with(start + "/")) return file + path.substr(start.size());
    return std::nullopt;
}

std::optional<Answer> Machine::Seek(Caller caller, int descriptor, std::int64_t offset,
                                    int whence) {
    if (Find(descriptor) == nullptr) return RefuseUnopened(caller, "lseek");
    const std::optional<int> fault = faults_.Enter("lseek");
    OpenedFile* const opened =
        Find(descriptor);  // again: an action inside the call may have closed it
    if (opened == nullptr) return RefuseUnopened(caller, "lseek");
    const Answer answer = fault ? Answer::Failed(*fault) : opened->file->Seek(offset, whence);
    return LogAnswer("lseek", opened->path + " " + SeekTarget(offset, whence), answer,
                     Hex(static_cast<std::uint64_t>(answer.value)));
}

std::optional<Answer> Machine::Read(Caller caller, int descriptor, void* out, std::size_t size) {
    if (Find(descriptor) == nullptr) return RefuseUnopened(caller, "read");
    const std::optional<int> fault = faults_.Enter("read");
    OpenedFile* const opened = Find(descriptor);
    if (opened == nullptr) return RefuseUnopened(caller, "read");
    const std::string what =
        opened->path + " " + Hex(opened->file->Position()) + " " + std::to_string(size);
    const std::size_t wanted = faults_.ReadSize(size);
    const Answer answer = fault ? Answer::Failed(*fault) : opened->file->Read(out, wanted);
    return LogAnswer("read", what, answer, std::to_string(answer.value));
}

std::optional<Answer> Machine::Ioctl(Caller caller, int descriptor, unsigned long request,
                                     void* argument) {
    if (Find(descriptor) == nullptr) return RefuseUnopened(caller, "ioctl");
    const std::optional<int> fault = faults_.Enter("ioctl");
    OpenedFile* const opened = Find(descriptor);
    if (opened == nullptr) return RefuseUnopened(caller, "ioctl");
    const std::string what = opened->path + " " + Hex(request);
    if (fault) return LogAnswer("ioctl", what, Answer::Failed(*fault), "");
    const std::optional<Answer> answer = opened->file->Ioctl(request, argument);
    if (!answer)
        AbortOnViolation((caller.empty() ? "the program" : std::string(caller)) +
                         " asked for ioctl(" + Quoted(opened->path.c_str()) + ", " + Hex(request) +
                         "), which this machine does not have");
    return LogAnswer("ioctl", what, *answer, std::to_string(answer->value));
}

std::optional<Answer> Machine::Close(Caller caller, int descriptor) {
    if (Find(descriptor) == nullptr) return RefuseUnopened(caller, "close");
    const std::optional<int> fault = faults_.Enter("close");
    OpenedFile* const opened = Find(descriptor);
    if (opened == nullptr) return RefuseUnopened(caller, "close");
    const std::string path = opened->path;
    opened_.erase(descriptor);  // Linux frees the descriptor whatever close answers
    const Answer answer = LogAnswer("close", path, fault ? Answer::Failed(*fault) : Answer{}, "0");
    (void)syscall(SYS_close, descriptor);  // the result does not matter: the file is empty
    return answer;
}

std::optional<Answer> Machine::OpenDirectory(Caller caller, const char* path) {
    if (path == nullptr || !IsMachinePath(path)) {
        if (caller.empty()) return std::nullopt;
        AbortOnViolation(std::string(caller) + " asked for opendir(" + Quoted(path) +
                         "), which this machine does not have");
    }
    const std::optional<int> fault = faults_.Enter("opendir");
    return LogAnswer("opendir", path,
                     fault ? Answer::Failed(*fault) : FindDirectory(NormalPath(path)), "ok");
}

Answer Machine::FindDirectory(const std::string& path) const {
    if (const auto refused = refused_.find(path); refused != refused_.end())
        return Answer::Failed(refused->second);
    if (devices_.contains(path)) return Answer::Failed(ENOTDIR);
    const auto isBelow = [&](const std::string& other) { return other.starts_with(path + "/"); };
    const auto device = devices_.upper_bound(path + "/");
    const auto directory = directories_.lower_bound(path);
    const bool exists =
        (device != devices_.end() && isBelow(device->first)) ||
        (directory != directories_.end() && (*directory == path || isBelow(*directory)));
    if (exists) return Answer{};
    const auto real = RealPath(path);
    return real ? ReadableDirectory(*real) : Answer::Failed(ENOENT);
}

void Machine::DirectoryOpened(const void* handle, const char* path) {
    openedDirectories_.insert_or_assign(handle, path);
}

std::optional<Answer> Machine::CloseDirectory(Caller caller, const void* handle) {
    const auto opened = openedDirectories_.find(handle);
    if (opened == openedDirectories_.end()) {
        if (caller.empty()) return std::nullopt;
        AbortOnViolation(std::string(caller) +
                         " asked for closedir of a directory that it was not given");
    }
    const std::string path = opened->second;
    openedDirectories_.erase(opened);
    const std::optional<int> fault = faults_.Enter("closedir");
    return LogAnswer("closedir", path, fault ? Answer::Failed(*fault) : Answer{}, "0");
}

std::optional<Answer> Machine::System(Caller caller, const char* command, int (*run)(const char*)) {
    // All that other modules can ask of a machine's shell.
    const bool isPlainFree = command != nullptr && std::string_view(command) == "free";
    if (caller.empty() && !(isPlainFree && free_.IsRunBy(command))) return std::nullopt;
    if (!free_.IsRunBy(command))
        AbortOnViolation(std::string(caller) + " asked for system(" + Quoted(command) +
                         "), which this machine does not have");
    const std::optional<int> fault = faults_.Enter("system");
    const Answer answer =
        fault ? Answer::Failed(*fault) : Answer{run(free_.DefineBefore(command).c_str())};
    return LogAnswer("system", command, answer, std::to_string(answer.value));
}

ProcStat& Machine::GetStat() {
    if (stat_ == nullptr) {
        stat_ = std::make_shared<ProcStat>();
        Install("/proc/stat",
                std::make_unique<TextDevice>([this, stat = stat_] { return stat->Text(clock_); }));
    }
    return *stat_;
}

bool Machine::AllocationFails() {
    allocations_ += 1;
    return faults_.AllocationFails();
}

}  // namespace sim
