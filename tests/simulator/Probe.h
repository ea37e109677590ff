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
int Open(const char* path, int flags);
int Open64(const char* path, int flags);
int OpenChecked(const char* path, int flags);    // __open_2
int Open64Checked(const char* path, int flags);  // __open64_2
int Openat(const char* path, int flags);
int Openat64(const char* path, int flags);
long Lseek(int descriptor, long offset, int whence);
long long Lseek64(int descriptor, long long offset, int whence);
long Read(int descriptor, void* out, std::size_t size);
long ReadChecked(int descriptor, void* out, std::size_t size);  // __read_chk
int Close(int descriptor);
int Ioctl(int descriptor, unsigned long request, void* argument);
int IoctlTime64(int descriptor, unsigned long request, void* argument);
bool Opendir(const char* path);
int ClosedirNull();
int Iopl(int level);
unsigned Sleep(unsigned seconds);
int System(const char* command);

// One instruction each. `eax` is the accumulator before; the answer is the accumulator after.
std::uint32_t In8(std::uint16_t port, std::uint32_t eax);
std::uint32_t In16(std::uint16_t port, std::uint32_t eax);
std::uint32_t In32(std::uint16_t port, std::uint32_t eax);
std::uint32_t In8FromPort0x42(std::uint32_t eax);
void Out8(std::uint16_t port, std::uint32_t eax);
void Out16(std::uint16_t port, std::uint32_t eax);
void Out32(std::uint16_t port, std::uint32_t eax);
void Out32ToPort0x42(std::uint32_t eax);
void Halt();

// Allocates, and releases at once. False when a quiet form answered null.
void Allocate();
void AllocateArray();
bool AllocateQuietly();
bool AllocateArrayQuietly();

}  // namespace probe

#endif
