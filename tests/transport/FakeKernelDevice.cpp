// SPDX-License-Identifier: MIT
//
// The calls as <linux/ipmi.h> and the kernel's ipmi_devintf have them, and the C library's
// functions that lead to them. Whatever is not the device's goes to the kernel.

#include "tests/transport/FakeKernelDevice.h"

#include <fcntl.h>
#include <linux/ipmi.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <utility>

FakeKernelDevice* FakeKernelDevice::current_ = nullptr;

namespace {

int Fail(int error) {
    errno = error;
    return -1;
}

}  // namespace

void FakeKernelDevice::Disappear() {
    openError = ENOENT;
    for (const auto& [file, queue] : files_) dead_[file] = true;
}

int FakeKernelDevice::Open(int openFlags) {
    flags = openFlags;
    if (openError != 0) return Fail(openError);
    files_[nextFile_] = {};
    return nextFile_++;
}

int FakeKernelDevice::Close(int file) {
    files_.erase(file);
    return 0;
}

int FakeKernelDevice::Poll(int file, int timeout, short& events) {
    waits.push_back(timeout);
    if (const int error = std::exchange(pollError, 0)) return Fail(error);
    if (files_.at(file).empty() && onWait) onWait();
    events = files_.at(file).empty() ? 0 : POLLIN;
    return events == 0 ? 0 : 1;
}

int FakeKernelDevice::Ioctl(int file, unsigned long request, void* argument) {
    if (dead_[file]) return Fail(ENODEV);
    if (request == IPMICTL_SEND_COMMAND) return Send(file, argument);
    if (request == IPMICTL_RECEIVE_MSG_TRUNC) return Receive(file, argument);
    return Fail(ENOTTY);
}

int FakeKernelDevice::Send(int file, void* argument) {
    if (sendError != 0) return Fail(sendError);
    if (underWay_[file] >= limit) return Fail(EBUSY);
    ++underWay_[file];
    const ipmi_req& message = *static_cast<const ipmi_req*>(argument);
    ipmi_system_interface_addr address{};
    if (message.addr_len != sizeof(address)) return Fail(EINVAL);
    std::memcpy(&address, message.addr, sizeof(address));
    const auto* data = message.msg.data;
    sent.push_back({file,
                    message.msgid,
                    address.addr_type,
                    address.channel,
                    {message.msg.netfn, address.lun, message.msg.cmd,
                     transport::Bytes(data, data + message.msg.data_len)}});
    if (onSend)
        onSend(sent.back());
    else
        Queue(file, {IPMI_RESPONSE_RECV_TYPE, message.msgid, {0x00, 0xAB}});
    return 0;
}

int FakeKernelDevice::Receive(int file, void* argument) {
    if (files_.at(file).empty()) return Fail(EAGAIN);
    const Queued message = files_.at(file).front();
    files_.at(file).pop_front();
    if (underWay_[file] != 0) --underWay_[file];
    ipmi_recv& received = *static_cast<ipmi_recv*>(argument);
    received.recv_type = message.receiveType;
    received.msgid = message.id;
    const auto room = received.msg.data_len;
    const auto length = std::min<std::size_t>(room, message.data.size());
    std::copy_n(message.data.begin(), length, received.msg.data);
    received.msg.data_len = static_cast<unsigned short>(length);
    return message.data.size() > room ? Fail(EMSGSIZE) : 0;
}

extern "C" {

int open(const char* path, int flags, ...) {
    FakeKernelDevice* const device = FakeKernelDevice::Current();
    if (device != nullptr && std::strcmp(path, FakeKernelDevice::kPath) == 0)
        return device->Open(flags);
    va_list arguments;
    va_start(arguments, flags);
    const int mode = (flags & O_CREAT) != 0 ? va_arg(arguments, int) : 0;
    va_end(arguments);
    return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

int close(int file) {
    FakeKernelDevice* const device = FakeKernelDevice::Current();
    if (device != nullptr && device->Owns(file)) return device->Close(file);
    return static_cast<int>(syscall(SYS_close, file));
}

int poll(pollfd* files, nfds_t count, int timeout) {
    FakeKernelDevice* const device = FakeKernelDevice::Current();
    if (device != nullptr && count != 0 && device->Owns(files->fd)) {
        // What is waited for beside the device is the kernel's own. It is looked at once.
        files->revents = 0;
        const int others = static_cast<int>(syscall(SYS_poll, files + 1, count - 1, 0));
        if (others != 0) return others;
        return device->Poll(files->fd, timeout, files->revents);
    }
    return static_cast<int>(syscall(SYS_poll, files, count, timeout));
}

int ioctl(int file, unsigned long request, ...) {
    va_list arguments;
    va_start(arguments, request);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    FakeKernelDevice* const device = FakeKernelDevice::Current();
    if (device != nullptr && device->Owns(file)) return device->Ioctl(file, request, argument);
    return static_cast<int>(syscall(SYS_ioctl, file, request, argument));
}

}  // extern "C"
