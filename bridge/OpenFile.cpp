// SPDX-License-Identifier: MIT
//
// Whoever takes a call out of the queue, or out of `served_`, under the lock replies to it. So each
// call gets one reply, whether it is answered, interrupted, late or stopped.

#include "bridge/OpenFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <exception>
#include <iterator>
#include <utility>

#include "bridge/Failure.h"
#include "bridge/Log.h"
#include "bridge/StateChange.h"

namespace bridge {

using namespace transport;

namespace {

// The kernel gives every message a response in less, even where the BMC does not answer.
constexpr std::chrono::seconds kMaxWorkOff{120};

void FailAll(std::deque<Call>& calls, int error) {
    for (const Call& call : calls) call.reply(error, {});
}

std::string NameOf(const CallerRecord& record) {
    std::array<char, 80> text;
    (void)std::snprintf(text.data(), text.size(), "network function 0x%02X, command 0x%02X",
                        record.netFn, record.command);
    return text.data();
}

}  // namespace

OpenFile::OpenFile(SharedByFiles& shared, std::function<void()> onEnd)
    : shared_(shared),
      onEnd_(std::move(onEnd)),
      asked_(shared.failures),
      kernel_(shared.device, &cancelled_),
      session_(kernel_, shared.reservation) {}

OpenFile::~OpenFile() {
    Stop();
    if (thread_.joinable()) thread_.join();
}

int OpenFile::Open() {
    if (const int error = kernel_.Open()) return error;
    thread_ = std::thread(&OpenFile::Run, this);
    return 0;
}

int OpenFile::Add(Call call) {
    const std::lock_guard<std::mutex> lock(access_);
    if (waiting_.size() >= kMaxWaiting + (served_ ? 0 : 1)) return EBUSY;
    waiting_.push_back(std::move(call));
    changed_.notify_one();
    return 0;
}

void OpenFile::Interrupt(std::uintptr_t id) {
    std::optional<Call> interrupted;
    {
        const std::lock_guard<std::mutex> lock(access_);
        const auto waiting = std::find_if(waiting_.begin(), waiting_.end(),
                                          [&](const Call& call) { return call.id == id; });
        if (served_ && served_->id == id) {
            interrupted = std::exchange(served_, std::nullopt);
            cancelled_.Raise();
        } else if (waiting != waiting_.end()) {
            interrupted = std::move(*waiting);
            waiting_.erase(waiting);
        }
    }
    if (interrupted) interrupted->reply(EINTR, {});
}

void OpenFile::Expire(Deadline now) {
    std::deque<Call> late;
    {
        const std::lock_guard<std::mutex> lock(access_);
        const auto first =
            std::stable_partition(waiting_.begin(), waiting_.end(),
                                  [&](const Call& call) { return call.deadline > now; });
        std::move(first, waiting_.end(), std::back_inserter(late));
        waiting_.erase(first, waiting_.end());
    }
    FailAll(late, ETIMEDOUT);
}

std::optional<Deadline> OpenFile::NextDeadline() {
    const std::lock_guard<std::mutex> lock(access_);
    std::optional<Deadline> next;
    for (const Call& call : waiting_) next = std::min(next.value_or(call.deadline), call.deadline);
    return next;
}

void OpenFile::Close() {
    const std::lock_guard<std::mutex> lock(access_);
    closed_ = true;
    changed_.notify_one();
}

void OpenFile::Stop() {
    std::deque<Call> left;
    {
        const std::lock_guard<std::mutex> lock(access_);
        stopped_ = true;
        left = std::exchange(waiting_, {});
        if (served_) left.push_back(*std::exchange(served_, std::nullopt));
        cancelled_.Raise();
        changed_.notify_one();
    }
    FailAll(left, ENOTCONN);
}

// Returns false when there will be none.
bool OpenFile::WaitForCall() {
    std::unique_lock<std::mutex> lock(access_);
    changed_.wait(lock, [&] { return stopped_ || closed_ || !waiting_.empty(); });
    if (stopped_) return false;
    cancelled_.Lower();  // it was for the call before
    if (waiting_.empty()) return false;
    served_ = std::move(waiting_.front());
    waiting_.pop_front();
    return true;
}

std::optional<Call> OpenFile::TakeServed() {
    const std::lock_guard<std::mutex> lock(access_);
    return std::exchange(served_, std::nullopt);
}

void OpenFile::Serve() {
    std::optional<Call> call;
    {
        const std::lock_guard<std::mutex> lock(access_);
        call = served_;
    }
    if (!call) return;
    int error = ETIMEDOUT;
    Bytes answer;
    if (Deadline::clock::now() < call->deadline) {
        const std::string name = NameOf(call->record);
        if (MayChangeState(call->record.netFn, call->record.command))
            shared_.changes.Log(Priority::kInfo, name + " for process " +
                                                     std::to_string(call->process) + " of user " +
                                                     std::to_string(call->user));
        error = session_.Serve(call->bytes, answer, call->deadline);
        if (error != ECANCELED) asked_.Log(name, error);  // cancelled: the caller is gone
    }
    if (TakeServed()) call->reply(error, answer);
}

void OpenFile::Run() {
    while (WaitForCall()) {
        try {
            Serve();
        } catch (const std::exception& failure) {
            const std::optional<Call> call = TakeServed();
            if (call) call->reply(ErrorOf(failure), {});
        }
    }
    kernel_.WorkOff(Deadline::clock::now() + kMaxWorkOff);
    Log(Priority::kDebug, "closed after " + std::to_string(session_.Served()) + " requests, " +
                              std::to_string(kernel_.Sent()) + " messages to the BMC");
    onEnd_();
}

}  // namespace bridge
