// SPDX-License-Identifier: MIT
//
// The kernel as the bridge meets it, without root: a socket in place of /dev/cuse, and an IPMI
// device in place of /dev/ipmi0. It stands in front of the C library's open, close, read, writev
// and ioctl. Any thread may use it. One exists at a time.
#ifndef TALVANE_TESTS_BRIDGE_DEVICE_FAKEKERNEL_H
#define TALVANE_TESTS_BRIDGE_DEVICE_FAKEKERNEL_H

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <map>
#include <mutex>
#include <vector>

#include "transport/Message.h"

class FakeKernel {
public:
    static constexpr const char* kIpmiDevice = "/dev/ipmi0";

    // A message to the BMC that has been sent.
    struct Sent {
        int file = 0;
        long id = 0;
        std::uint8_t netFn = 0;
        std::uint8_t command = 0;
    };

    FakeKernel();
    ~FakeKernel();
    FakeKernel(const FakeKernel&) = delete;
    FakeKernel& operator=(const FakeKernel&) = delete;

    static FakeKernel* Current() { return current_; }

    // The kernel's end of the connection: packets in the format of <linux/fuse.h>.
    [[nodiscard]] int Connection() const { return connection_; }

    // The bridge's next read of /dev/cuse ends with ENODEV.
    void BreakOff();
    // The next request is gone when the bridge reads it, and the read ends with this error.
    void WithdrawRequest(int error);
    // The bridge's next wait for a request ends with this error.
    void FailPoll(int error);
    // The next reply ends with this error and reaches nobody.
    void RefuseReply(int error);

    // Whether the BMC answers. While it does not, messages wait until it does again. The response
    // to a message is its command's number.
    void SetAnswering(bool answering);

    // Waits until this many messages in all have been sent. Returns whether they have been.
    [[nodiscard]] bool WaitForMessages(std::size_t count);
    [[nodiscard]] std::vector<Sent> Messages();
    // Of /dev/ipmi0, by the bridge.
    [[nodiscard]] std::size_t OpenFiles();
    // Waits until no more than this many files are open. Returns whether they are.
    [[nodiscard]] bool WaitForOpenFiles(std::size_t most);

    void SetOpenError(int error);
    void SetCuseError(int error);

    // The calls. They return -1 and set errno as the C library does.
    int OpenCuse();
    int OpenIpmi();
    int Close(int file);
    int IpmiControl(int file, unsigned long request, void* argument);
    [[nodiscard]] bool IsCuse(int file);
    [[nodiscard]] bool IsIpmi(int file);
    // The error that such a call with this file is to end with; 0 for none.
    int TakePollError(int file);
    int TakeReadError(int file);
    int TakeWriteError(int file);

private:
    // A response that the bridge has not taken yet.
    struct Response {
        long id = 0;
        std::uint8_t command = 0;
    };

    int Send(int file, const void* argument);
    int Receive(int file, void* argument);
    void Answer(const Sent& message);  // the lock is held

    static FakeKernel* current_;

    std::mutex access_;
    std::condition_variable changed_;
    int connection_ = -1;
    int cuse_ = -1;  // the bridge's end
    bool answering_ = true;
    int openError_ = 0;
    int cuseError_ = 0;
    int pollError_ = 0;
    int readError_ = 0;
    int writeError_ = 0;
    std::map<int, std::deque<Response>> files_;  // of /dev/ipmi0
    std::vector<Sent> sent_;
    std::vector<Sent> unanswered_;
};

#endif
