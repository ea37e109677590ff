// SPDX-License-Identifier: MIT
//
// The callbacks that libfuse makes, and the set-up of the device.

#define FUSE_USE_VERSION 312

#include "bridge/CharacterDevice.h"

#include <cuse_lowlevel.h>
#include <fuse_lowlevel.h>
#include <fuse_opt.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <memory>
#include <new>

#include "bridge/IoctlStep.h"
#include "bridge/Log.h"
#include "bridge/Readiness.h"
#include "bridge/Rights.h"
#include "transport/KernelController.h"
#include "transport/Reservation.h"
#include "transport/Session.h"

namespace bridge {
namespace {

using namespace transport;

// Set when the caller is a 32-bit program, on any kernel. It is FUSE_IOCTL_32BIT of <linux/fuse.h>,
// which cannot be included: it defines much that libfuse's headers define, too.
constexpr unsigned kCallerHas32Bits = 1U << 3;

// When more callers ask at once, the others wait for a thread.
constexpr unsigned kMaxThreads = 32;

// What all open files share.
struct Device {
    DeviceNames names;
    Reservation reservation;
    Outcomes opened;
};

// An open file of the device.
struct OpenFile {
    OpenFile(const std::string& device, Reservation& reservation)
        : kernel(device), session(kernel, reservation) {}

    KernelController kernel;
    Session session;
    Outcomes asked;
};

OpenFile& FileOf(const fuse_file_info* info) {
    return *reinterpret_cast<OpenFile*>(static_cast<std::uintptr_t>(info->fh));
}

iovec At(std::uint32_t address, std::size_t length) {
    return {reinterpret_cast<void*>(static_cast<std::uintptr_t>(address)), length};
}

// Runs a callback's body. The body returns an errno to reply with, or 0 when it has replied. No
// exception may pass through libfuse.
template <typename Body>
void Replying(fuse_req_t request, Body body) {
    int error = ENOMEM;
    try {
        error = body();
    } catch (const std::bad_alloc&) {
        Log(Priority::kError, "out of memory");
    } catch (const std::exception& failure) {
        Log(Priority::kError, failure.what());
        error = EIO;
    }
    if (error != 0) (void)fuse_reply_err(request, error);  // result not used: the caller is gone
}

void OnInitDone(void* userData) {
    const DeviceNames& names = static_cast<const Device*>(userData)->names;
    Log(Priority::kInfo, "/dev/" + names.provided + " is there, requests go to " + names.kernel);
    ReportReady();
}

// Fails while the kernel's device cannot be opened. An agent that cannot open a device tries again
// later. If the device did open, the agent would take it for a working one.
void OnOpen(fuse_req_t request, fuse_file_info* info) {
    Replying(request, [&] {
        Device& device = *static_cast<Device*>(fuse_req_userdata(request));
        const std::string& kernel = device.names.kernel;
        auto file = std::make_unique<OpenFile>(kernel, device.reservation);
        const int error = file->kernel.Open();
        device.opened.Log("open " + kernel, error);
        if (error != 0) return error;
        info->fh = reinterpret_cast<std::uintptr_t>(file.get());
        if (fuse_reply_open(request, info) == 0) (void)file.release();  // OnRelease frees it
        return 0;
    });
}

void OnRelease(fuse_req_t request, fuse_file_info* info) {
    const std::unique_ptr<OpenFile> file(&FileOf(info));
    Replying(request, [&] {
        Log(Priority::kInfo, "closed after " + std::to_string(file->session.Served()) +
                                 " requests, " + std::to_string(file->kernel.Sent()) +
                                 " messages to the BMC");
        (void)fuse_reply_err(request, 0);  // result not used: the caller is gone
        return 0;
    });
}

int Serve(fuse_req_t request, OpenFile& file, const CallerRecord& record,
          std::span<const std::uint8_t> call) {
    Bytes answer;
    const int error = file.session.Serve(call, answer);
    std::array<char, 80> what;
    (void)std::snprintf(what.data(), what.size(), "network function 0x%02X, command 0x%02X",
                        record.netFn, record.command);
    file.asked.Log(what.data(), error);
    if (error != 0) return error;
    (void)fuse_reply_ioctl(request, 0, answer.data(),
                           answer.size());  // result not used: the caller is gone
    return 0;
}

// Asks the kernel to call again with the record and the data.
void Fetch(fuse_req_t request, std::uint32_t address, const CallerRecord& record) {
    const iovec recordAt = At(address, kRecordSize);
    const std::array<iovec, 2> in{recordAt, At(record.dataAddress, record.dataLength)};
    // The response follows the record's own bytes. It may be shorter than the room for it.
    const std::array<iovec, 2> out{recordAt, At(record.responseAddress, kMaxResponse)};
    (void)fuse_reply_ioctl_retry(request, in.data(), record.dataLength == 0 ? 1 : 2, out.data(),
                                 out.size());  // result not used: the caller is gone
}

int AnswerIoctl(fuse_req_t request, std::uint32_t address, const IoctlStage& stage,
                OpenFile& file) {
    const IoctlStep step = NextStep(stage);
    switch (step.kind) {
        case IoctlStep::Kind::kFetchRecord: {
            const iovec recordAt = At(address, kRecordSize);
            (void)fuse_reply_ioctl_retry(request, &recordAt, 1, nullptr, 0);  // result not used
            return 0;
        }
        case IoctlStep::Kind::kFetchData:
            Fetch(request, address, step.record);
            return 0;
        case IoctlStep::Kind::kServe:
            return Serve(request, file, step.record, stage.call);
        case IoctlStep::Kind::kRefuse:
            break;
    }
    return step.error;
}

void OnIoctl(fuse_req_t request, int command, void* argument, fuse_file_info* info, unsigned flags,
             const void* in, std::size_t inSize, std::size_t outSize) {
    Replying(request, [&] {
        const auto address = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(argument));
        const IoctlStage stage{static_cast<unsigned>(command),
                               (flags & kCallerHas32Bits) != 0,
                               {static_cast<const std::uint8_t*>(in), inSize},
                               outSize};
        return AnswerIoctl(request, address, stage, FileOf(info));
    });
}

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

}  // namespace

int ServeDevice(const DeviceNames& names, const std::string& user) {
    const std::string path = "/dev/" + names.provided;
    if (access(path.c_str(), F_OK) == 0) {
        Log(Priority::kError, path + " exists already");
        return 1;
    }
    fuse_set_log_func(LogOfLibrary);

    const std::string name = "DEVNAME=" + names.provided;
    const char* deviceInfo[] = {name.c_str()};
    cuse_info info{};
    info.dev_info_argc = 1;
    info.dev_info_argv = deviceInfo;
    info.flags = CUSE_UNRESTRICTED_IOCTL;
    cuse_lowlevel_ops operations{};
    operations.init_done = OnInitDone;
    operations.open = OnOpen;
    operations.release = OnRelease;
    operations.ioctl = OnIoctl;

    std::string program = "talvane-ipmi-bridge";
    std::string foreground = "-f";
    char* arguments[] = {program.data(), foreground.data(), nullptr};
    int multithreaded = 0;
    Device device{names, {}, {}};
    const std::unique_ptr<fuse_session, TearDown> session(
        cuse_lowlevel_setup(2, arguments, &info, &operations, &multithreaded, &device));
    if (!session) {
        Log(Priority::kError, "cannot serve a device through /dev/cuse (modprobe cuse, as root)");
        return 1;
    }
    if (const int error = DropRights(user)) {
        Log(Priority::kError, WithReason("cannot give up rights", error));
        return 1;
    }
    const std::unique_ptr<fuse_loop_config, decltype(&fuse_loop_cfg_destroy)> loop(
        fuse_loop_cfg_create(), fuse_loop_cfg_destroy);
    fuse_loop_cfg_set_max_threads(loop.get(), kMaxThreads);
    const int result = fuse_session_loop_mt(session.get(), loop.get());
    if (result < 0) {
        Log(Priority::kError, WithReason(path + " is gone", -result));
        return 1;
    }
    return 0;
}

}  // namespace bridge
