// SPDX-License-Identifier: MIT
//
// A file of the IPMI device is an event counter: it is readable while responses are queued, so that
// the bridge's own poll waits for real.

#include "tests/bridge/device/FakeKernel.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <linux/ipmi.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdarg>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

FakeKernel* FakeKernel::current_ = nullptr;

namespace {

// Far more than any machine needs; a test that waits so long has failed. ThreadSanitizer does not
// see waits by a clock that cannot be set.
std::chrono::system_clock::time_point LongEnough() {
    return std::chrono::system_clock::now() + std::chrono::seconds(60);
}

int Fail(int error) {
    errno = error;
    return -1;
}

// The next `close` after the one below: ThreadSanitizer has one that keeps track of descriptors.
int CloseForReal(int file) {
    static const auto next = reinterpret_cast<int (*)(int)>(dlsym(RTLD_NEXT, "close"));
    return next(file);
}

}  // namespace

FakeKernel::FakeKernel() {
    int ends[2] = {-1, -1};
    (void)socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends);
    connection_ = ends[0];
    cuse_ = ends[1];
    current_ = this;
}

FakeKernel::~FakeKernel() {
    current_ = nullptr;
    (void)close(connection_);
}

void FakeKernel::BreakOff() {
    (void)shutdown(connection_, SHUT_RDWR);
}

void FakeKernel::SetAnswering(bool answering) {
    const std::lock_guard<std::mutex> lock(access_);
    answering_ = answering;
    if (!answering) return;
    for (const Sent& message : std::exchange(unanswered_, {})) Answer(message);
}

bool FakeKernel::WaitForMessages(std::size_t count) {
    std::unique_lock<std::mutex> lock(access_);
    return changed_.wait_until(lock, LongEnough(), [&] { return sent_.size() >= count; });
}

std::vector<FakeKernel::Sent> FakeKernel::Messages() {
    const std::lock_guard<std::mutex> lock(access_);
    return sent_;
}

std::size_t FakeKernel::OpenFiles() {
    const std::lock_guard<std::mutex> lock(access_);
    return files_.size();
}

bool FakeKernel::WaitForOpenFiles(std::size_t most) {
    std::unique_lock<std::mutex> lock(access_);
    return changed_.wait_until(lock, LongEnough(), [&] { return files_.size() <= most; });
}

void FakeKernel::SetOpenError(int error) {
    const std::lock_guard<std::mutex> lock(access_);
    openError_ = error;
}

void FakeKernel::SetCuseError(int error) {
    const std::lock_guard<std::mutex> lock(access_);
    cuseError_ = error;
}

void FakeKernel::FailPoll(int error) {
    const std::lock_guard<std::mutex> lock(access_);
    pollError_ = error;
}

void FakeKernel::WithdrawRequest(int error) {
    const std::lock_guard<std::mutex> lock(access_);
    readError_ = error;
}

void FakeKernel::RefuseReply(int error) {
    const std::lock_guard<std::mutex> lock(access_);
    writeError_ = error;
}

int FakeKernel::TakePollError(int file) {
    const std::lock_guard<std::mutex> lock(access_);
    return file == cuse_ ? std::exchange(pollError_, 0) : 0;
}

int FakeKernel::TakeReadError(int file) {
    const std::lock_guard<std::mutex> lock(access_);
    return file == cuse_ ? std::exchange(readError_, 0) : 0;
}

int FakeKernel::TakeWriteError(int file) {
    const std::lock_guard<std::mutex> lock(access_);
    return file == cuse_ ? std::exchange(writeError_, 0) : 0;
}

int FakeKernel::OpenCuse() {
    const std::lock_guard<std::mutex> lock(access_);
    return cuseError_ != 0 ? Fail(cuseError_) : cuse_;
}

int FakeKernel::OpenIpmi() {
    const std::lock_guard<std::mutex> lock(access_);
    if (openError_ != 0) return Fail(openError_);
    const int file = eventfd(0, EFD_SEMAPHORE | EFD_NONBLOCK | EFD_CLOEXEC);
    if (file >= 0) files_[file] = {};
    return file;
}

int FakeKernel::Close(int file) {
    const std::lock_guard<std::mutex> lock(access_);
    files_.erase(file);
    if (file == cuse_) cuse_ = -1;
    changed_.notify_all();
    return CloseForReal(file);
}

bool FakeKernel::IsCuse(int file) {
    const std::lock_guard<std::mutex> lock(access_);
    return file == cuse_;
}

bool FakeKernel::IsIpmi(int file) {
    const std::lock_guard<std::mutex> lock(access_);
    return files_.count(file) != 0;
}

int FakeKernel::IpmiControl(int file, unsigned long request, void* argument) {
    const std::lock_guard<std::mutex> lock(access_);
    if (request == IPMICTL_SEND_COMMAND) return Send(file, argument);
    if (request == IPMICTL_RECEIVE_MSG_TRUNC) return Receive(file, argument);
    return Fail(ENOTTY);
}

int FakeKernel::Send(int file, const void* argument) {
    const auto& message = *static_cast<const ipmi_req*>(argument);
    sent_.push_back({file, message.msgid, message.msg.netfn, message.msg.cmd});
    if (answering_)
        Answer(sent_.back());
    else
        unanswered_.push_back(sent_.back());
    changed_.notify_all();
    return 0;
}

void FakeKernel::Answer(const Sent& message) {
    const auto file = files_.find(message.file);
    if (file == files_.end()) return;
    file->second.push_back({message.id, message.command});
    const std::uint64_t one = 1;
    (void)!write(message.file, &one, sizeof(one));
}

int FakeKernel::Receive(int file, void* argument) {
    std::deque<Response>& queue = files_.at(file);
    if (queue.empty()) return Fail(EAGAIN);
    const Response response = queue.front();
    queue.pop_front();
    std::uint64_t one = 0;
    (void)syscall(SYS_read, file, &one, sizeof(one));  // ours would wait for the lock
    auto& received = *static_cast<ipmi_recv*>(argument);
    received.recv_type = IPMI_RESPONSE_RECV_TYPE;
    received.msgid = response.id;
    received.msg.data[0] = 0;  // completion code
    received.msg.data[1] = response.command;
    received.msg.data_len = 2;
    return 0;
}

namespace {

int OpenPath(const char* path, int flags, int mode) {
    FakeKernel* const kernel = FakeKernel::Current();
    if (kernel != nullptr && path == std::string_view("/dev/cuse")) return kernel->OpenCuse();
    if (kernel != nullptr && path == std::string_view(FakeKernel::kIpmiDevice))
        return kernel->OpenIpmi();
    return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

}  // namespace

extern "C" {

// Both names: one is for programs with 64-bit offsets, as libfuse and the bridge are.
int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const int mode = (flags & O_CREAT) != 0 ? va_arg(arguments, int) : 0;
    va_end(arguments);
    return OpenPath(path, flags, mode);
}

int open64(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const int mode = (flags & O_CREAT) != 0 ? va_arg(arguments, int) : 0;
    va_end(arguments);
    return OpenPath(path, flags, mode);
}

int close(int file) {
    FakeKernel* const kernel = FakeKernel::Current();
    if (kernel != nullptr) return kernel->Close(file);
    return CloseForReal(file);
}

ssize_t read(int file, void* buffer, size_t size) {
    const iovec whole{buffer, size};
    const ssize_t length = readv(file, &whole, 1);
    FakeKernel* const kernel = FakeKernel::Current();
    if (kernel == nullptr) return length;
    if (length == 0 && kernel->IsCuse(file)) return Fail(ENODEV);
    const int error = kernel->TakeReadError(file);
    return error != 0 ? Fail(error) : length;
}

int poll(pollfd* events, nfds_t count, int milliseconds) {
    static const auto next =
        reinterpret_cast<int (*)(pollfd*, nfds_t, int)>(dlsym(RTLD_NEXT, "poll"));
    FakeKernel* const kernel = FakeKernel::Current();
    const int error = kernel != nullptr && count > 0 ? kernel->TakePollError(events[0].fd) : 0;
    return error != 0 ? Fail(error) : next(events, count, milliseconds);
}

ssize_t writev(int file, const iovec* pieces, int count) {
    FakeKernel* const kernel = FakeKernel::Current();
    const int error = kernel != nullptr ? kernel->TakeWriteError(file) : 0;
    return error != 0 ? Fail(error) : syscall(SYS_writev, file, pieces, count);
}

int ioctl(int file, unsigned long request, ...) {
    va_list arguments;
    va_start(arguments, request);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    FakeKernel* const kernel = FakeKernel::Current();
    if (kernel != nullptr && kernel->IsIpmi(file))
        return kernel->IpmiControl(file, request, argument);
    return static_cast<int>(syscall(SYS_ioctl, file, request, argument));
}

}  // extern "C"
