// SPDX-License-Identifier: MIT
//
// The calls and instructions, one function each.

#include "Probe.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/io.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <new>

// What headers choose with _FORTIFY_SOURCE or 64-bit time stamps.
extern "C" {
int __open_2(const char* path, int flags);
int __open64_2(const char* path, int flags);
ssize_t __read_chk(int descriptor, void* out, size_t size, size_t room);
int __ioctl_time64(int descriptor, unsigned long request, ...);
}

namespace probe {

int open(const char* path, int flags) {
    return ::open(path, flags);
}
int open64(const char* path, int flags) {
    return ::open64(path, flags);
}
int openChecked(const char* path, int flags) {
    return __open_2(path, flags);
}
int open64Checked(const char* path, int flags) {
    return __open64_2(path, flags);
}
int openat(const char* path, int flags) {
    return ::openat(AT_FDCWD, path, flags);
}
int openat64(const char* path, int flags) {
    return ::openat64(AT_FDCWD, path, flags);
}

long lseek(int descriptor, long offset, int whence) {
    return ::lseek(descriptor, offset, whence);
}

long long lseek64(int descriptor, long long offset, int whence) {
    return ::lseek64(descriptor, offset, whence);
}

long read(int descriptor, void* out, std::size_t size) {
    return ::read(descriptor, out, size);
}

long readChecked(int descriptor, void* out, std::size_t size) {
    return __read_chk(descriptor, out, size, size);
}

int close(int descriptor) {
    return ::close(descriptor);
}

int ioctl(int descriptor, unsigned long request, void* argument) {
    return ::ioctl(descriptor, request, argument);
}

int ioctlTime64(int descriptor, unsigned long request, void* argument) {
    return __ioctl_time64(descriptor, request, argument);
}

bool opendir(const char* path) {
    return ::opendir(path) != nullptr;
}

int closedirNull() {
    DIR* volatile directory = nullptr;  // volatile: the header forbids null
    return ::closedir(directory);
}

int iopl(int level) {
    return ::iopl(level);
}
unsigned sleep(unsigned seconds) {
    return ::sleep(seconds);
}
int system(const char* command) {
    return std::system(command);
}

std::uint32_t in8(std::uint16_t port, std::uint32_t eax) {
    asm volatile("inb %%dx, %%al" : "+a"(eax) : "d"(port));
    return eax;
}

std::uint32_t in16(std::uint16_t port, std::uint32_t eax) {
    asm volatile("inw %%dx, %%ax" : "+a"(eax) : "d"(port));
    return eax;
}

std::uint32_t in32(std::uint16_t port, std::uint32_t eax) {
    asm volatile("inl %%dx, %%eax" : "+a"(eax) : "d"(port));
    return eax;
}

std::uint32_t in8FromPort0x42(std::uint32_t eax) {
    asm volatile("inb $0x42, %%al" : "+a"(eax));
    return eax;
}

void out8(std::uint16_t port, std::uint32_t eax) {
    asm volatile("outb %%al, %%dx" : : "a"(eax), "d"(port));
}

void out16(std::uint16_t port, std::uint32_t eax) {
    asm volatile("outw %%ax, %%dx" : : "a"(eax), "d"(port));
}

void out32(std::uint16_t port, std::uint32_t eax) {
    asm volatile("outl %%eax, %%dx" : : "a"(eax), "d"(port));
}

void out32ToPort0x42(std::uint32_t eax) {
    asm volatile("outl %%eax, $0x42" : : "a"(eax));
}

void halt() {
    asm volatile("hlt");
}

// Called as functions, since a new expression that is released at once may be optimised away.
void allocate() {
    operator delete(operator new(16));
}
void allocateArray() {
    operator delete[](operator new[](16));
}

bool allocateQuietly() {
    void* const memory = operator new(16, std::nothrow);
    operator delete(memory);
    return memory != nullptr;
}

bool allocateArrayQuietly() {
    void* const memory = operator new[](16, std::nothrow);
    operator delete[](memory);
    return memory != nullptr;
}

}  // namespace probe
