// SPDX-License-Identifier: MIT
//
// An open file of the device: a descriptor of the kernel's device, a queue of calls, and the one
// thread that serves them in turn. A call that waits takes no thread. All but the constructor and
// the destructor return at once.
#ifndef TALVANE_BRIDGE_OPENFILE_H
#define TALVANE_BRIDGE_OPENFILE_H

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "bridge/Call.h"
#include "bridge/LimitedLog.h"
#include "transport/Flag.h"
#include "transport/KernelController.h"
#include "transport/Reservation.h"
#include "transport/Session.h"

namespace bridge {

// Calls that wait while another is served.
constexpr std::size_t kMaxWaiting = 16;

// What all open files share.
struct SharedByFiles {
    std::string device;  // the kernel's
    transport::Reservation reservation;
    LimitedLog failures;
    LimitedLog changes;  // commands that change the BMC's or the machine's state
};

class OpenFile {
public:
    // `onEnd` is called by the file's thread as the last thing it does.
    OpenFile(SharedByFiles& shared, std::function<void()> onEnd);
    // Stops, and waits for the thread to end.
    ~OpenFile();
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    // Opens the kernel's device and starts the thread. Returns 0 or an errno.
    [[nodiscard]] int Open();

    // Takes the call, which gets its reply later. Returns 0; or EBUSY when kMaxWaiting wait, and
    // the call gets no reply.
    [[nodiscard]] int Add(Call call);

    // Gives the call with this id an EINTR, if it has no reply yet.
    void Interrupt(std::uintptr_t id);

    // Gives the waiting calls whose deadline has come an ETIMEDOUT.
    void Expire(transport::Deadline now);
    // The earliest deadline of those that wait.
    [[nodiscard]] std::optional<transport::Deadline> NextDeadline();

    // The file's last caller has closed it. The thread ends when the BMC has answered all messages.
    void Close();
    // All calls get an ENOTCONN, and the thread ends.
    void Stop();

private:
    void Run();
    void Serve();
    bool WaitForCall();
    // Takes what is left of a call that is being served; nobody else replies to it then.
    std::optional<Call> TakeServed();

    SharedByFiles& shared_;
    std::function<void()> onEnd_;
    Outcomes asked_;
    transport::Flag cancelled_;
    transport::KernelController kernel_;
    transport::Session session_;

    std::mutex access_;  // to what follows
    std::condition_variable changed_;
    std::deque<Call> waiting_;
    std::optional<Call> served_;  // until it has its reply
    bool closed_ = false;
    bool stopped_ = false;

    std::thread thread_;
};

}  // namespace bridge

#endif
