// SPDX-License-Identifier: MIT
//
// The kernel's IPMI device as it looks to a program: a queue of responses per open file. It stands
// in front of the C library's open, close, poll and ioctl for the path kPath; waiting takes no
// time.
#ifndef TALVANE_TESTS_TRANSPORT_FAKEKERNELDEVICE_H
#define TALVANE_TESTS_TRANSPORT_FAKEKERNELDEVICE_H

#include <deque>
#include <functional>
#include <map>
#include <vector>

#include "transport/Message.h"

class FakeKernelDevice {
public:
    static constexpr const char* kPath = "/dev/ipmi0";

    struct Sent {
        int file = 0;
        long id = 0;
        int addressType = 0;
        int channel = 0;
        transport::Request request;
    };
    struct Queued {
        int receiveType = 1;  // IPMI_RESPONSE_RECV_TYPE
        long id = 0;
        transport::Bytes data;  // completion code first
    };

    FakeKernelDevice() { current_ = this; }
    ~FakeKernelDevice() { current_ = nullptr; }
    FakeKernelDevice(const FakeKernelDevice&) = delete;
    FakeKernelDevice& operator=(const FakeKernelDevice&) = delete;

    static FakeKernelDevice* Current() { return current_; }

    void Queue(int file, Queued message) { files_.at(file).push_back(std::move(message)); }

    // The interface goes; files that are open now stay dead.
    void Disappear();
    void ComeBack() { openError = 0; }

    [[nodiscard]] std::size_t OpenFiles() const { return files_.size(); }

    // The calls. They return -1 and set errno as the C library does.
    int Open(int flags);
    int Close(int file);
    int Poll(int file, int timeout, short& events);
    int Ioctl(int file, unsigned long request, void* argument);
    [[nodiscard]] bool Owns(int file) const { return files_.count(file) != 0; }

    int openError = 0;
    int sendError = 0;
    int pollError = 0;                        // of the next wait
    std::size_t limit = 100;                  // of messages that a file may have under way
    std::function<void(const Sent&)> onSend;  // unset: answers at once
    std::function<void()> onWait;             // before a wait for an empty queue ends

    std::vector<Sent> sent;
    std::vector<int> waits;  // time-outs that were waited with
    int flags = 0;           // of the last open

private:
    int Send(int file, void* argument);
    int Receive(int file, void* argument);

    static FakeKernelDevice* current_;

    std::map<int, std::deque<Queued>> files_;
    std::map<int, bool> dead_;
    std::map<int, std::size_t> underWay_;
    int nextFile_ = 5000;
};

#endif
