// SPDX-License-Identifier: MIT
//
// A request is one packet: header, operation's own record, data. A reply is header and data.

#include "tests/bridge/device/Connection.h"

#include <linux/fuse.h>
#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <cstring>
#include <vector>

namespace {

// Far more than any machine needs; a test that waits so long has failed.
constexpr int kLongEnough = 60000;

template <typename Record>
void Append(transport::Bytes& bytes, const Record& record) {
    const auto* const start = reinterpret_cast<const std::uint8_t*>(&record);
    bytes.insert(bytes.end(), start, start + sizeof(record));
}

template <typename Record>
transport::Bytes AsBytes(const Record& record) {
    transport::Bytes bytes;
    Append(bytes, record);
    return bytes;
}

}  // namespace

std::uint64_t Connection::Send(std::uint32_t operation, std::span<const std::uint8_t> body) {
    fuse_in_header header{};
    header.len = static_cast<std::uint32_t>(sizeof(header) + body.size());
    header.opcode = operation;
    header.unique = last_ += 2;  // even, as the kernel's are
    header.uid = user;
    header.pid = static_cast<std::uint32_t>(process);
    transport::Bytes packet = AsBytes(header);
    packet.insert(packet.end(), body.begin(), body.end());
    (void)send(socket_, packet.data(), packet.size(), MSG_NOSIGNAL);
    return header.unique;
}

std::uint64_t Connection::SendInit() {
    cuse_init_in init{};
    init.major = FUSE_KERNEL_VERSION;
    init.minor = FUSE_KERNEL_MINOR_VERSION;
    init.flags = CUSE_UNRESTRICTED_IOCTL;
    return Send(CUSE_INIT, AsBytes(init));
}

std::uint64_t Connection::SendOpen() {
    return Send(FUSE_OPEN, AsBytes(fuse_open_in{}));
}

std::uint64_t Connection::SendIoctl(std::uint64_t file, const Fetched& fetched) {
    fuse_ioctl_in call{};
    call.fh = file;
    call.flags = FUSE_IOCTL_UNRESTRICTED | (fetched.callerHas32Bits ? FUSE_IOCTL_32BIT : 0U);
    call.cmd = fetched.command;
    call.arg = fetched.address;
    call.in_size = static_cast<std::uint32_t>(fetched.call.size());
    call.out_size = fetched.room;
    transport::Bytes body = AsBytes(call);
    body.insert(body.end(), fetched.call.begin(), fetched.call.end());
    return Send(FUSE_IOCTL, body);
}

std::uint64_t Connection::SendRelease(std::uint64_t file) {
    fuse_release_in release{};
    release.fh = file;
    return Send(FUSE_RELEASE, AsBytes(release));
}

void Connection::SendInterrupt(std::uint64_t number) {
    fuse_interrupt_in interrupt{};
    interrupt.unique = number;
    (void)Send(FUSE_INTERRUPT, AsBytes(interrupt));
}

bool Connection::Take(int milliseconds) {
    pollfd ready{socket_, POLLIN, 0};
    if (poll(&ready, 1, milliseconds) != 1) return false;
    std::array<std::uint8_t, 8192> packet;
    const ssize_t length = recv(socket_, packet.data(), packet.size(), 0);
    fuse_out_header header{};
    if (length < static_cast<ssize_t>(sizeof(header))) return false;
    std::memcpy(&header, packet.data(), sizeof(header));
    replies_[header.unique] = {
        -header.error, transport::Bytes(packet.begin() + sizeof(header), packet.begin() + length)};
    return true;
}

Connection::Reply Connection::ReplyTo(std::uint64_t number) {
    while (replies_.count(number) == 0)
        if (!Take(kLongEnough)) return {-1, {}};
    return replies_.at(number);
}

bool Connection::HasReplyTo(std::uint64_t number) {
    while (Take(0)) continue;
    return replies_.count(number) != 0;
}

int Connection::Open(std::uint64_t& file) {
    const Reply reply = ReplyTo(SendOpen());
    fuse_open_out opened{};
    if (reply.error == 0 && reply.body.size() == sizeof(opened))
        std::memcpy(&opened, reply.body.data(), sizeof(opened));
    file = opened.fh;
    return reply.error;
}
