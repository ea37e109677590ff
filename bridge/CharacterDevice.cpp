// SPDX-License-Identifier: MIT
//
// The set-up of the device, and the loop that reads what the kernel passes. Libfuse has loops of
// its own. They have no deadlines, end with success when the connection breaks off, and wait for
// callers before they end.

#define FUSE_USE_VERSION 312

#include "bridge/CharacterDevice.h"

#include <cuse_lowlevel.h>
#include <fcntl.h>
#include <fuse_lowlevel.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>

#include "bridge/Callbacks.h"
#include "bridge/Failure.h"
#include "bridge/Log.h"
#include "bridge/Rights.h"
#include "bridge/StopSignals.h"
#include "transport/PollTimeout.h"

namespace bridge {
namespace {

void LogOfLibrary(fuse_log_level level, const char* format, va_list arguments) {
    std::array<char, 256> text;
    (void)std::vsnprintf(text.data(), text.size(), format, arguments);
    std::string_view message = text.data();
    while (message.ends_with('\n')) message.remove_suffix(1);
    Log(level <= FUSE_LOG_ERR ? Priority::kError : Priority::kDebug, message);
}

struct TearDown {
    void operator()(fuse_session* session) const { cuse_lowlevel_teardown(session); }
};
using Session = std::unique_ptr<fuse_session, TearDown>;

// Returns null when there is no connection to the kernel.
Session Connect(Device& device) {
    fuse_set_log_func(LogOfLibrary);
    const std::string name = "DEVNAME=" + device.names.provided;
    const char* deviceInfo[] = {name.c_str()};
    cuse_info info{};
    info.dev_info_argc = 1;
    info.dev_info_argv = deviceInfo;
    info.flags = CUSE_UNRESTRICTED_IOCTL;
    const cuse_lowlevel_ops operations = Callbacks();

    std::string program = "talvane-ipmi-bridge";
    std::string foreground = "-f";
    char* arguments[] = {program.data(), foreground.data(), nullptr};
    int multithreaded = 0;
    Session session(cuse_lowlevel_setup(2, arguments, &info, &operations, &multithreaded, &device));
    // A request may be withdrawn between poll and read, which must not wait for the next one then.
    if (session && fcntl(fuse_session_fd(session.get()), F_SETFL, O_NONBLOCK) != 0) session.reset();
    return session;
}

// What libfuse reads requests into.
struct Buffer {
    ~Buffer() { std::free(request.mem); }  // libfuse has allocated it
    fuse_buf request{};
};

// Takes one request from the kernel and makes the callback. Returns 0 or an errno.
int TakeRequest(fuse_session* session, Buffer& buffer) {
    const int length = fuse_session_receive_buf(session, &buffer.request);
    if (length == -EAGAIN || length == -EINTR) return 0;
    if (length < 0) return -length;
    if (length == 0) return ENODEV;  // what the kernel says when the connection has broken off
    fuse_session_process_buf(session, &buffer.request);
    return fuse_session_exited(session) == 0 ? 0 : ENODEV;
}

// Serves callers until a signal comes. Returns 0, or an errno when the connection has broken off.
int ServeCallers(fuse_session* session, OpenFiles& files, const StopSignals& stop) {
    Buffer buffer;
    std::array<pollfd, 3> events{{{fuse_session_fd(session), POLLIN, 0},
                                  {stop.Descriptor(), POLLIN, 0},
                                  {files.Descriptor(), POLLIN, 0}}};
    for (;;) {
        const std::optional<transport::Deadline> next = files.NextDeadline();
        const int wait = next ? transport::PollTimeout(*next) : -1;
        if (poll(events.data(), events.size(), wait) < 0) {
            if (errno == EINTR) continue;
            return errno;
        }
        if (events[1].revents != 0) return 0;
        files.RemoveEnded();
        files.Expire(transport::Deadline::clock::now());
        if (events[0].revents == 0) continue;
        if (const int error = TakeRequest(session, buffer)) return error;
    }
}

int Serve(const DeviceNames& names, const std::string& user) {
    const std::string path = "/dev/" + names.provided;
    if (access(path.c_str(), F_OK) == 0) {
        Log(Priority::kError, path + " exists already");
        return 1;
    }
    Device device{names, OpenFiles(names.kernel)};
    const StopSignals stop;
    const Session session = Connect(device);
    if (!session) {
        Log(Priority::kError,
            "cannot serve a device through /dev/cuse (is the module cuse loaded, and may this user "
            "open the device?)");
        return 1;
    }
    if (const int error = DropRights(user)) {
        Log(Priority::kError, WithReason("cannot become user " + user, error));
        return 1;
    }
    const int error = ServeCallers(session.get(), device.files, stop);
    device.files.Stop();  // before the session ends, through which callers get their replies
    if (error == 0) return 0;
    Log(Priority::kError, WithReason(path + " is gone", error));
    return 1;
}

}  // namespace

int ServeDevice(const DeviceNames& names, const std::string& user) {
    try {
        return Serve(names, user);
    } catch (const std::exception& failure) {
        (void)ErrorOf(failure);  // result not used: there is no caller to tell
        return 1;
    }
}

}  // namespace bridge
