// SPDX-License-Identifier: MIT
//
// A shared library that touches the machine in every way there is, so that the simulated server
// can be tested with calls that come from a library under observation.
#ifndef TALVANE_TESTS_SIMULATOR_PROBE_H
#define TALVANE_TESTS_SIMULATOR_PROBE_H

#include <cstddef>
#include <cstdint>

namespace probe {

// Each calls the libc function of its name and returns what that returned.
int open(const char* path, int flags);
int open64(const char* path, int flags);
int openChecked(const char* path, int flags);    // __open_2
int open64Checked(const char* path, int flags);  // __open64_2
int openat(const char* path, int flags);
int openat64(const char* path, int flags);
long lseek(int descriptor, long offset, int whence);
long long lseek64(int descriptor, long long offset, int whence);
long read(int descriptor, void* out, std::size_t size);
long readChecked(int descriptor, void* out, std::size_t size);  // __read_chk
int close(int descriptor);
int ioctl(int descriptor, unsigned long request, void* argument);
int ioctlTime64(int descriptor, unsigned long request, void* argument);
bool opendir(const char* path);
int closedirNull();
int iopl(int level);
unsigned sleep(unsigned seconds);
int system(const char* command);

// One instruction each. `eax` is the accumulator before; the answer is the accumulator after.
std::uint32_t in8(std::uint16_t port, std::uint32_t eax);
std::uint32_t in16(std::uint16_t port, std::uint32_t eax);
std::uint32_t in32(std::uint16_t port, std::uint32_t eax);
std::uint32_t in8FromPort0x42(std::uint32_t eax);
void out8(std::uint16_t port, std::uint32_t eax);
void out16(std::uint16_t port, std::uint32_t eax);
void out32(std::uint16_t port, std::uint32_t eax);
void out32ToPort0x42(std::uint32_t eax);
void halt();

// Allocates, and releases at once. False when a quiet form answered null.
void allocate();
void allocateArray();
bool allocateQuietly();
bool allocateArrayQuietly();

}  // namespace probe

#endif
