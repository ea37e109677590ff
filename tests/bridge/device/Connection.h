// SPDX-License-Identifier: MIT
//
// The kernel's side of a CUSE device, in the format of <linux/fuse.h>: what callers of the device
// do, as requests to the bridge, and the bridge's replies.
#ifndef TALVANE_TESTS_BRIDGE_DEVICE_CONNECTION_H
#define TALVANE_TESTS_BRIDGE_DEVICE_CONNECTION_H

#include <sys/types.h>

#include <cstdint>
#include <map>
#include <span>
#include <string>

#include "transport/Message.h"

class Connection {
public:
    struct Reply {
        int error = 0;  // an errno; -1 when there was no reply
        transport::Bytes body;
    };
    // What the kernel has fetched for an ioctl.
    struct Fetched {
        std::uint32_t address = 0;  // of the record
        transport::Bytes call;
        std::uint32_t room = 0;  // for record and response
        bool callerHas32Bits = true;
        std::uint32_t command = 0xC0045301;
    };

    // Talks through this socket, which remains the caller's.
    explicit Connection(int socket) : socket_(socket) {}

    // Each sends a request, and returns the number that its reply will carry.
    std::uint64_t SendInit();
    std::uint64_t SendOpen();
    std::uint64_t SendIoctl(std::uint64_t file, const Fetched& fetched);
    std::uint64_t SendRelease(std::uint64_t file);
    // For the request with this number. It has no reply.
    void SendInterrupt(std::uint64_t number);

    // Waits for the reply to the request with this number.
    Reply ReplyTo(std::uint64_t number);
    // Whether the reply is there already.
    bool HasReplyTo(std::uint64_t number);

    // Sends an open and waits for the reply. `file` is how the kernel names the file.
    int Open(std::uint64_t& file);
    void Release(std::uint64_t file) { (void)ReplyTo(SendRelease(file)); }

    // Whom the following requests come from.
    pid_t process = 4242;
    uid_t user = 0;

private:
    std::uint64_t Send(std::uint32_t operation, std::span<const std::uint8_t> body);
    // Takes one reply from the socket. Returns whether there was one in time.
    bool Take(int milliseconds);

    int socket_;
    std::uint64_t last_ = 0;
    std::map<std::uint64_t, Reply> replies_;
};

#endif
