// SPDX-License-Identifier: MIT
//
// An open file's handle is its address.

#define FUSE_USE_VERSION 312

#include "bridge/Callbacks.h"

#include <cuse_lowlevel.h>
#include <fuse_lowlevel.h>
#include <sys/uio.h>

#include <array>
#include <cerrno>
#include <exception>

#include "bridge/Failure.h"
#include "bridge/IoctlStep.h"
#include "bridge/Log.h"
#include "bridge/Readiness.h"

namespace bridge {
namespace {

using namespace transport;

// Set when the caller is a 32-bit program, on any kernel. It is FUSE_IOCTL_32BIT of <linux/fuse.h>,
// which cannot be included: it defines much that libfuse's headers define, too.
constexpr unsigned kCallerHas32Bits = 1U << 3;

Device& DeviceOf(fuse_req_t request) {
    return *static_cast<Device*>(fuse_req_userdata(request));
}

OpenFile& FileOf(const fuse_file_info* info) {
    return *reinterpret_cast<OpenFile*>(static_cast<std::uintptr_t>(info->fh));
}

iovec At(std::uint32_t address, std::size_t length) {
    return {reinterpret_cast<void*>(static_cast<std::uintptr_t>(address)), length};
}

// Runs a callback's body. The body returns an errno to reply with, or 0 when it has replied or
// somebody else will. No exception may pass through libfuse.
template <typename Body>
void Replying(fuse_req_t request, Body body) {
    int error = 0;
    try {
        error = body();
    } catch (const std::exception& failure) {
        error = ErrorOf(failure);
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
        OpenFiles& files = DeviceOf(request).files;
        OpenFile* file = nullptr;
        if (const int error = files.Open(file)) return error;
        info->fh = reinterpret_cast<std::uintptr_t>(file);
        if (fuse_reply_open(request, info) != 0) files.Close(*file);  // the caller is gone
        return 0;
    });
}

void OnRelease(fuse_req_t request, fuse_file_info* info) {
    DeviceOf(request).files.Close(FileOf(info));
    (void)fuse_reply_err(request, 0);  // result not used: the caller is gone
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

// Libfuse keeps a request's memory while this runs, so no other request has its address.
void OnInterrupt(fuse_req_t request, void* device) {
    static_cast<Device*>(device)->files.Interrupt(reinterpret_cast<std::uintptr_t>(request));
}

// Hands the request to the file's thread.
int Queue(fuse_req_t request, OpenFile& file, const CallerRecord& record,
          std::span<const std::uint8_t> bytes) {
    const auto reply = [request](int error, std::span<const std::uint8_t> answer) {
        // Results not used: the caller is gone.
        if (error != 0)
            (void)fuse_reply_err(request, error);
        else
            (void)fuse_reply_ioctl(request, 0, answer.data(), answer.size());
    };
    const fuse_ctx& caller = *fuse_req_ctx(request);
    Call call{reinterpret_cast<std::uintptr_t>(request),
              caller.pid,
              caller.uid,
              record,
              Bytes(bytes.begin(), bytes.end()),
              Deadline::clock::now() + record.timeout,
              reply};
    // Before the thread can reply, since the request ends with its reply. An interrupt that has
    // come already finds no call.
    fuse_req_interrupt_func(request, OnInterrupt, &DeviceOf(request));
    if (fuse_req_interrupted(request) != 0) return EINTR;
    return file.Add(std::move(call));
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
            return Queue(request, file, step.record, stage.call);
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

}  // namespace

cuse_lowlevel_ops Callbacks() {
    cuse_lowlevel_ops operations{};
    operations.init_done = OnInitDone;
    operations.open = OnOpen;
    operations.release = OnRelease;
    operations.ioctl = OnIoctl;
    return operations;
}

}  // namespace bridge
