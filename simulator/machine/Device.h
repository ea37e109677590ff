// SPDX-License-Identifier: MIT
//
// The interfaces of a simulated server's devices: a path that can be opened, the open file, and I/O
// ports. A device refuses a call with the errno that the kernel gives.
#ifndef TALVANE_SIMULATOR_MACHINE_DEVICE_H
#define TALVANE_SIMULATOR_MACHINE_DEVICE_H

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

namespace sim {

// The result of a call: a value, or -1 and an errno.
struct Answer {
    std::int64_t value = 0;
    int error = 0;

    static Answer Failed(int error) { return {-1, error}; }
    bool Ok() const { return error == 0; }
};

// A device as one call of open sees it, with a position of its own.
class OpenFile {
public:
    virtual ~OpenFile() = default;

    // Creates a real descriptor for this file, so that descriptor numbers, close, fcntl and system
    // calls made without libc behave as they should. Called once; the caller owns the descriptor.
    // By default it is an empty anonymous file named after the device.
    virtual int MakeDescriptor(const char* path) const;

    virtual Answer Read(void* out, std::size_t size) = 0;
    virtual Answer Seek(std::int64_t offset, int whence) = 0;

    // No answer when the device does not know the request.
    virtual std::optional<Answer> Ioctl(unsigned long request, void* argument);

    virtual std::uint64_t Position() const = 0;
};

// What is at a path.
class Device {
public:
    virtual ~Device() = default;

    // Null, with `error` set, when the device cannot be opened.
    virtual std::unique_ptr<OpenFile> Open(int flags, int& error) = 0;
};

// Answers a range of I/O ports. Widths are 1, 2 and 4 bytes.
class PortDevice {
public:
    virtual ~PortDevice() = default;
    virtual std::uint32_t In(std::uint16_t port, unsigned width) = 0;
    virtual void Out(std::uint16_t port, unsigned width, std::uint32_t value) = 0;
};

}  // namespace sim

#endif
