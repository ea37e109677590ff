// SPDX-License-Identifier: MIT
//
// Requests and responses in the format of <linux/ipmi.h>. The kernel queues responses per open
// file, so no session sees the responses of another.

#include "transport/KernelController.h"

#include <fcntl.h>
#include <linux/ipmi.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "transport/PollTimeout.h"

namespace transport {
namespace {

// Whether an errno means that the file's interface is gone for good.
bool IsGone(int error) {
    return error == ENODEV || error == ENXIO || error == EIO || error == ESHUTDOWN;
}

}  // namespace

int KernelController::Open() {
    if (descriptor_ >= 0) return 0;
    descriptor_ = open(device_.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (descriptor_ >= 0) return 0;
    // There is no device file, or no interface that it stands for.
    return errno == ENOENT || errno == ENXIO ? ENODEV : errno;
}

void KernelController::Close() {
    if (descriptor_ >= 0) (void)close(descriptor_);  // result not used: nothing is buffered
    descriptor_ = -1;
    underWay_ = 0;
}

int KernelController::Exchange(const Request& request, Deadline deadline, Response& response) {
    if (cancelled_ != nullptr && cancelled_->IsRaised()) return ECANCELED;
    const bool wasOpen = descriptor_ >= 0;
    int error = Open();
    if (error == 0) error = Send(request);
    // A file never outlives its interface, but the interface may be back. The kernel has not taken
    // the request, so it can be sent again.
    if (wasOpen && IsGone(error)) {
        Close();
        error = Open();
        if (error == 0) error = Send(request);
    }
    if (error == 0) error = Receive(deadline, response);
    if (IsGone(error)) Close();
    return error;
}

int KernelController::Send(const Request& request) {
    if (const int error = DropLate(); IsGone(error)) return error;
    if (underWay_ >= kMaxUnderWay) return EBUSY;
    ipmi_system_interface_addr address{};
    address.addr_type = IPMI_SYSTEM_INTERFACE_ADDR_TYPE;
    address.channel = IPMI_BMC_CHANNEL;
    address.lun = request.lun;
    Bytes data = request.data;  // the kernel's record has no const
    ipmi_req message{};
    message.addr = reinterpret_cast<unsigned char*>(&address);
    message.addr_len = sizeof(address);
    message.msgid = static_cast<long>(++lastId_);
    message.msg.netfn = request.netFn;
    message.msg.cmd = request.command;
    message.msg.data = data.data();
    message.msg.data_len = static_cast<unsigned short>(data.size());
    if (ioctl(descriptor_, IPMICTL_SEND_COMMAND, &message) != 0) return errno;
    ++sent_;
    ++underWay_;
    return 0;
}

// Takes the next message from the file's queue without waiting. Returns 0 or an errno: EAGAIN when
// the queue is empty.
int KernelController::Take(ipmi_recv& message, MessageBuffer& data) {
    ipmi_addr address{};
    message = {};
    message.addr = reinterpret_cast<unsigned char*>(&address);
    message.addr_len = sizeof(address);
    message.msg.data = data.data();
    message.msg.data_len = IPMI_MAX_MSG_LENGTH;
    const int error = ioctl(descriptor_, IPMICTL_RECEIVE_MSG_TRUNC, &message) == 0 ? 0 : errno;
    message.addr = nullptr;  // its buffer ends with this function
    // EMSGSIZE means that the response was cut to the longest length there can be.
    if (error != 0 && error != EMSGSIZE) return error;
    if (message.recv_type == IPMI_RESPONSE_RECV_TYPE && underWay_ > 0) --underWay_;
    return 0;
}

// Takes the responses to requests that were given up. Until then they count as under way, here and
// in the kernel. Returns the errno that ended it: EAGAIN when all were taken.
int KernelController::DropLate() {
    MessageBuffer data;
    ipmi_recv message{};
    for (;;)
        if (const int error = Take(message, data)) return error;
}

void KernelController::WorkOff(Deadline deadline) {
    while (underWay_ > 0) {
        const int error = DropLate();
        if (error != EAGAIN && error != EINTR) return;
        if (underWay_ > 0 && WaitForMessage(deadline) != 0) return;
    }
}

// Waits until the file's queue has a message. Returns 0 or an errno.
int KernelController::WaitForMessage(Deadline deadline) {
    for (;;) {
        std::array<pollfd, 2> ready{{{descriptor_, POLLIN, 0}, {-1, POLLIN, 0}}};
        if (cancelled_ != nullptr) ready[1].fd = cancelled_->Descriptor();
        const int count = poll(ready.data(), cancelled_ == nullptr ? 1 : 2, PollTimeout(deadline));
        if (count == 0) return ETIMEDOUT;
        if (count < 0) {
            if (errno == EINTR) continue;
            return errno;
        }
        if (ready[1].revents != 0) return ECANCELED;
        return (ready[0].revents & POLLIN) != 0 ? 0 : ENODEV;
    }
}

// Skips late responses and events.
int KernelController::Receive(Deadline deadline, Response& response) {
    MessageBuffer data;
    for (;;) {
        if (const int error = WaitForMessage(deadline)) return error;
        ipmi_recv message{};
        if (const int error = Take(message, data)) {
            if (error == EAGAIN || error == EINTR) continue;
            return error;
        }
        if (message.recv_type != IPMI_RESPONSE_RECV_TYPE ||
            message.msgid != static_cast<long>(lastId_))
            continue;
        if (message.msg.data_len == 0) return EBADMSG;  // not even a completion code
        response.completion = data[0];
        response.data.assign(data.begin() + 1, data.begin() + message.msg.data_len);
        return 0;
    }
}

}  // namespace transport
