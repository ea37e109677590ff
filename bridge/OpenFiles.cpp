// SPDX-License-Identifier: MIT
//
// A file is freed after its thread has ended, so that nobody waits for a thread.

#include "bridge/OpenFiles.h"

#include <algorithm>
#include <cerrno>
#include <chrono>

namespace bridge {

using transport::Deadline;

namespace {

// Callers can cause failures at will, and a monitor asks day and night.
constexpr unsigned kFailuresAtOnce = 20;
constexpr std::chrono::seconds kPerFailure{10};
constexpr unsigned kChangesAtOnce = 200;
constexpr std::chrono::seconds kPerChange{1};

}  // namespace

OpenFiles::OpenFiles(const std::string& device)
    : shared_{device, {}, {kFailuresAtOnce, kPerFailure}, {kChangesAtOnce, kPerChange}},
      opened_(shared_.failures) {}

int OpenFiles::Open(OpenFile*& file) {
    RemoveEnded();
    int error = EBUSY;
    if (files_.size() < kMaxFiles) {
        Entry& entry = files_.emplace_back();
        try {
            entry.file = std::make_unique<OpenFile>(shared_, [&] {
                entry.ended = true;
                ended_.Raise();
            });
            error = entry.file->Open();
        } catch (...) {
            files_.pop_back();
            throw;
        }
        if (error == 0)
            file = entry.file.get();
        else
            files_.pop_back();
    }
    opened_.Log("open " + shared_.device, error);
    return error;
}

void OpenFiles::Interrupt(std::uintptr_t id) {
    for (Entry& entry : files_) entry.file->Interrupt(id);
}

void OpenFiles::Expire(Deadline now) {
    for (Entry& entry : files_) entry.file->Expire(now);
}

std::optional<Deadline> OpenFiles::NextDeadline() {
    std::optional<Deadline> next;
    for (Entry& entry : files_)
        if (const std::optional<Deadline> one = entry.file->NextDeadline())
            next = std::min(next.value_or(*one), *one);
    return next;
}

void OpenFiles::Stop() {
    for (Entry& entry : files_) entry.file->Stop();  // all, before the first is waited for
    files_.clear();
}

void OpenFiles::RemoveEnded() {
    if (!ended_.IsRaised()) return;
    ended_.Lower();  // before the look: a file that ends after it raises the flag again
    files_.remove_if([](const Entry& entry) { return entry.ended.load(); });
}

}  // namespace bridge
