// SPDX-License-Identifier: MIT
//
// A file descriptor that is closed when it is no longer needed.
#ifndef TALVANE_TOOLS_BASE_DESCRIPTOR_H
#define TALVANE_TOOLS_BASE_DESCRIPTOR_H

#include <fcntl.h>
#include <unistd.h>

namespace tool {

class Descriptor {
public:
    // Opens a path. When it is not open afterwards, errno has the reason.
    Descriptor(const char* path, int flags) : descriptor_(open(path, flags | O_CLOEXEC)) {}
    // Takes over an open descriptor; negative for none.
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    ~Descriptor() {
        if (IsOpen()) (void)close(descriptor_);  // result not used: closing loses nothing
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    bool IsOpen() const { return descriptor_ >= 0; }
    int Get() const { return descriptor_; }

private:
    int descriptor_;
};

}  // namespace tool

#endif
