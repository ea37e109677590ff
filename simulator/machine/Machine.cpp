// SPDX-License-Identifier: MIT
//
// Files and descriptors of a simulated server. This code runs inside interposed calls, so it makes
// none itself.

#include "simulator/machine/Machine.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>

#include "simulator/base/CallText.h"
#include "simulator/machine/MemoryDevice.h"
#include "simulator/machine/TextDevice.h"
#include "simulator/machine/Violation.h"

namespace sim {
namespace {

// Paths are compared without doubled or trailing slashes.
std::string normal(std::string_view path) {
    std::string result;
    for (const char c : path)
        if (c != '/' || result.empty() || result.back() != '/') result += c;
    if (result.size() > 1 && result.back() == '/') result.pop_back();
    return result;
}

bool identify(int descriptor, std::uint64_t& device, std::uint64_t& inode) {
    struct stat64 status;
    const int before = errno;
    const bool known = fstat64(descriptor, &status) == 0;
    errno = before;
    if (!known) return false;
    device = status.st_dev;
    inode = status.st_ino;
    return true;
}

}  // namespace

Machine::Machine() {
    install("/dev/mem", std::make_unique<MemoryDevice>(memory_));
    ports_.install(PciBus::kFirstPort, PciBus::kPorts, pci_);
}

bool Machine::isMachinePath(std::string_view given) {
    const std::string path = normal(given);
    if (path == "/dev/mem" || path == "/dev/ipmi" || path == "/proc/stat") return true;
    if (path == "/proc/ide" || path.starts_with("/proc/ide/")) return true;
    constexpr std::string_view disk = "/dev/hd";
    return path.size() == disk.size() + 1 && path.starts_with(disk) && path.back() >= 'a' &&
           path.back() <= 'z';
}

void Machine::install(const std::string& path, std::unique_ptr<Device> device) {
    if (!isMachinePath(path)) throw std::invalid_argument("no server has a device " + path);
    devices_.insert_or_assign(normal(path), std::move(device));
}

void Machine::installDirectory(const std::string& path) {
    if (!isMachinePath(path)) throw std::invalid_argument("no server has a directory " + path);
    directories_.insert(normal(path));
}

void Machine::refuse(const std::string& path, int error) {
    if (!isMachinePath(path)) throw std::invalid_argument("no server has a device " + path);
    refused_.insert_or_assign(normal(path), error);
}

Answer Machine::logged(std::string call, std::string what, Answer answer, std::string shown) {
    log_.add({std::move(call), std::move(what),
              answer.ok() ? std::move(shown) : "-1 " + errorName(answer.error)});
    return answer;
}

// An open descriptor of this machine. One that the program closed behind libc's back is forgotten.
Machine::Open* Machine::find(int descriptor) {
    const auto entry = opened_.find(descriptor);
    if (entry == opened_.end()) return nullptr;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    if (identify(descriptor, device, inode) && device == entry->second.device &&
        inode == entry->second.inode)
        return &entry->second;
    opened_.erase(entry);
    return nullptr;
}

// To the observed library only this machine's files are open; anyone else's stay out of its reach.
std::optional<Answer> Machine::notOpen(Caller caller, const std::string& call) {
    if (caller.empty()) return std::nullopt;
    return logged(call, "a descriptor that is not open", Answer::failed(EBADF), "");
}

std::optional<Answer> Machine::open(Caller caller, const char* path, int flags) {
    if (path == nullptr || !isMachinePath(path)) {
        if (caller.empty()) return std::nullopt;
        violation(std::string(caller) + " asked for open(" + quoted(path) +
                  "), which this machine does not have");
    }
    const std::optional<int> fault = faults_.enter("open");
    const Answer answer = fault ? Answer::failed(*fault) : openFile(normal(path), flags);
    return logged("open", std::string(path) + " " + openFlags(flags), answer, "ok");
}

Answer Machine::openFile(const std::string& path, int flags) {
    if (const auto refused = refused_.find(path); refused != refused_.end())
        return Answer::failed(refused->second);
    const auto device = devices_.find(path);
    if (device == devices_.end()) return Answer::failed(ENOENT);
    int error = EACCES;
    std::unique_ptr<OpenFile> file = device->second->open(flags, error);
    if (file == nullptr) return Answer::failed(error);
    const int descriptor = file->makeDescriptor(path.c_str());
    if (descriptor < 0) return Answer::failed(errno);
    Open opened{path, std::move(file), 0, 0};
    identify(descriptor, opened.device, opened.inode);
    opened_.insert_or_assign(descriptor, std::move(opened));
    return {descriptor};
}

std::optional<Answer> Machine::seek(Caller caller, int descriptor, std::int64_t offset,
                                    int whence) {
    if (find(descriptor) == nullptr) return notOpen(caller, "lseek");
    const std::optional<int> fault = faults_.enter("lseek");
    Open* const opened = find(descriptor);  // again: an action inside the call may have closed it
    if (opened == nullptr) return notOpen(caller, "lseek");
    const Answer answer = fault ? Answer::failed(*fault) : opened->file->seek(offset, whence);
    return logged("lseek", opened->path + " " + seekTarget(offset, whence), answer,
                  hex(static_cast<std::uint64_t>(answer.value)));
}

std::optional<Answer> Machine::read(Caller caller, int descriptor, void* out, std::size_t size) {
    if (find(descriptor) == nullptr) return notOpen(caller, "read");
    const std::optional<int> fault = faults_.enter("read");
    Open* const opened = find(descriptor);
    if (opened == nullptr) return notOpen(caller, "read");
    const std::string what =
        opened->path + " " + hex(opened->file->position()) + " " + std::to_string(size);
    const std::size_t wanted = faults_.readSize(size);
    const Answer answer = fault ? Answer::failed(*fault) : opened->file->read(out, wanted);
    return logged("read", what, answer, std::to_string(answer.value));
}

std::optional<Answer> Machine::ioctl(Caller caller, int descriptor, unsigned long request,
                                     void* argument) {
    if (find(descriptor) == nullptr) return notOpen(caller, "ioctl");
    const std::optional<int> fault = faults_.enter("ioctl");
    Open* const opened = find(descriptor);
    if (opened == nullptr) return notOpen(caller, "ioctl");
    const std::string what = opened->path + " " + hex(request);
    if (fault) return logged("ioctl", what, Answer::failed(*fault), "");
    const std::optional<Answer> answer = opened->file->ioctl(request, argument);
    if (!answer)
        violation((caller.empty() ? "the program" : std::string(caller)) + " asked for ioctl(" +
                  quoted(opened->path.c_str()) + ", " + hex(request) +
                  "), which this machine does not have");
    return logged("ioctl", what, *answer, std::to_string(answer->value));
}

std::optional<Answer> Machine::close(Caller caller, int descriptor) {
    if (find(descriptor) == nullptr) return notOpen(caller, "close");
    const std::optional<int> fault = faults_.enter("close");
    Open* const opened = find(descriptor);
    if (opened == nullptr) return notOpen(caller, "close");
    const std::string path = opened->path;
    opened_.erase(descriptor);  // Linux frees the descriptor whatever close answers
    const Answer answer = logged("close", path, fault ? Answer::failed(*fault) : Answer{}, "0");
    (void)syscall(SYS_close, descriptor);  // result not used: the file behind it holds nothing
    return answer;
}

std::optional<Answer> Machine::openDirectory(Caller caller, const char* path) {
    if (path == nullptr || !isMachinePath(path)) {
        if (caller.empty()) return std::nullopt;
        violation(std::string(caller) + " asked for opendir(" + quoted(path) +
                  "), which this machine does not have");
    }
    const std::optional<int> fault = faults_.enter("opendir");
    return logged("opendir", path, fault ? Answer::failed(*fault) : findDirectory(normal(path)),
                  "ok");
}

Answer Machine::findDirectory(const std::string& path) const {
    if (const auto refused = refused_.find(path); refused != refused_.end())
        return Answer::failed(refused->second);
    if (devices_.contains(path)) return Answer::failed(ENOTDIR);
    const auto isBelow = [&](const std::string& other) { return other.starts_with(path + "/"); };
    const auto device = devices_.upper_bound(path + "/");
    const auto directory = directories_.lower_bound(path);
    const bool exists =
        (device != devices_.end() && isBelow(device->first)) ||
        (directory != directories_.end() && (*directory == path || isBelow(*directory)));
    return exists ? Answer{} : Answer::failed(ENOENT);
}

void Machine::directoryOpened(const void* handle, const char* path) {
    openedDirectories_.insert_or_assign(handle, path);
}

std::optional<Answer> Machine::closeDirectory(Caller caller, const void* handle) {
    const auto opened = openedDirectories_.find(handle);
    if (opened == openedDirectories_.end()) {
        if (caller.empty()) return std::nullopt;
        violation(std::string(caller) + " asked for closedir of a directory that it was not given");
    }
    const std::string path = opened->second;
    openedDirectories_.erase(opened);
    const std::optional<int> fault = faults_.enter("closedir");
    return logged("closedir", path, fault ? Answer::failed(*fault) : Answer{}, "0");
}

std::optional<Answer> Machine::system(Caller caller, const char* command, int (*run)(const char*)) {
    if (caller.empty()) return std::nullopt;
    if (!free_.isRunBy(command))
        violation(std::string(caller) + " asked for system(" + quoted(command) +
                  "), which this machine does not have");
    const std::optional<int> fault = faults_.enter("system");
    const Answer answer =
        fault ? Answer::failed(*fault) : Answer{run(free_.before(command).c_str())};
    return logged("system", command, answer, std::to_string(answer.value));
}

ProcStat& Machine::stat() {
    if (stat_ == nullptr) {
        stat_ = std::make_shared<ProcStat>();
        install("/proc/stat",
                std::make_unique<TextDevice>([this, stat = stat_] { return stat->text(clock_); }));
    }
    return *stat_;
}

bool Machine::allocate() {
    allocations_ += 1;
    return faults_.allocationFails();
}

}  // namespace sim
