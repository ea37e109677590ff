// SPDX-License-Identifier: MIT
//
// All open files of the device. One thread uses it: the one that reads what the kernel passes.
#ifndef TALVANE_BRIDGE_OPENFILES_H
#define TALVANE_BRIDGE_OPENFILES_H

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <optional>
#include <string>

#include "bridge/OpenFile.h"
#include "transport/Flag.h"

namespace bridge {

// Open files, and closed ones whose messages the BMC has yet to answer. The kernel's device has
// room for 30 files; the rest is for other programs.
constexpr std::size_t kMaxFiles = 24;

class OpenFiles {
public:
    // For the kernel's device with this path.
    explicit OpenFiles(const std::string& device);

    // Opens another file. Returns 0 or an errno: EBUSY when there are kMaxFiles.
    [[nodiscard]] int Open(OpenFile*& file);
    // `file` is no longer to be used.
    void Close(OpenFile& file) { file.Close(); }

    // These are those of OpenFile, for all files.
    void Interrupt(std::uintptr_t id);
    void Expire(transport::Deadline now);
    [[nodiscard]] std::optional<transport::Deadline> NextDeadline();
    // All files' threads have ended when it returns.
    void Stop();

    // Readable when a file has ended. RemoveEnded then frees it.
    [[nodiscard]] int Descriptor() const { return ended_.Descriptor(); }
    void RemoveEnded();

private:
    struct Entry {
        std::atomic<bool> ended = false;
        std::unique_ptr<OpenFile> file;
    };

    SharedByFiles shared_;
    transport::Flag ended_;
    Outcomes opened_;
    std::list<Entry> files_;
};

}  // namespace bridge

#endif
