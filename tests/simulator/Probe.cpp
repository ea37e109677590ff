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

int Open(const char* path, int flags) {
    return ::open(path, flags);
}
int Open64(const char* path, int flags) {
    return ::open64(path, flags);
}
int OpenChecked(const char* path, int flags) {
    return __open_2(path, flags);
}
int Open64Checked(const char* path, int flags) {
    return __open64_2(path, flags);
}
int Openat(const char* path, int flags) {
    return ::openat(AT_FDCWD, path, flags);
}
int Openat64(const char* path, int flags) {
    return ::openat64(AT_FDCWD, path, flags);
}

long Lseek(int descriptor, long offset, int whence) {
    return ::lseek(descriptor, offset, whence);
}

long long Lseek64(int descriptor, long long offset, int whence) {
    return ::lseek64(descriptor, offset, whence);
}

long Read(int descriptor, void* out, std::size_t size) {
    return ::read(descriptor, out, size);
}

long ReadChecked(int descriptor, void* out, std::size_t size) {
    return __read_chk(descriptor, out, size, size);
}

int Close(int descriptor) {
    return ::close(descriptor);
}

int Ioctl(int descriptor, unsigned long request, void* argument) {
    return ::ioctl(descriptor, request, argument);
}

int IoctlTime64(int descriptor, unsigned long request, void* argument) {
    return __ioctl_time64(descriptor, request, argument);
}

bool Opendir(const char* path) {
    return ::opendir(path) != nullptr;
}

int ClosedirNull() {
    DIR* volatile directory = nullptr;  // volatile: the header forbids null
    return ::closedir(directory);
}

int Iopl(int level) {
    return ::iopl(level);
}
unsigned Sleep(unsigned seconds) {
    return ::sleep(seconds);
}
int System(const char* command) {
    return std::system(command);
}

std::uint32_t In8(std::uint16_t port, std::uint32_t eax) {
    asm volatile("inb %%dx, %%al" : "+a"(eax) : "d"(port));
    return eax;
}

std::uint32_t In16(std::uint16_t port, std::uint32_t eax) {
    asm volatile("inw %%dx, %%ax" : "+a"(eax) : "d"(port));
    return eax;
}

std::uint32_t In32(std::uint16_t port, std::uint32_t eax) {
    asm volatile("inl %%dx, %%eax" : "+a"(eax) : "d"(port));
    return eax;
}

std::uint32_t In8FromPort0x42(std::uint32_t eax) {
    asm volatile("inb $0x42, %%al" : "+a"(eax));
    return eax;
}

void Out8(std::uint16_t port, std::uint32_t eax) {
    asm volatile("outb %%al, %%dx" : : "a"(eax), "d"(port));
}

void Out16(std::uint16_t port, std::uint32_t eax) {
    asm volatile("outw %%ax, %%dx" : : "a"(eax), "d"(port));
}

void Out32(std::uint16_t port, std::uint32_t eax) {
    asm volatile("outl %%eax, %%dx" : : "a"(eax), "d"(port));
}

void Out32ToPort0x42(std::uint32_t eax) {
    asm volatile("outl %%eax, $0x42" : : "a"(eax));
}

void Halt() {
    asm volatile("hlt");
}

// Called as functions, since a new expression that is released at once may be optimised away.
void Allocate() {
    operator delete(operator new(16));
}
void AllocateArray() {
    operator delete[](operator new[](16));
}

bool AllocateQuietly() {
    void* const memory = operator new(16, std::nothrow);
    operator delete(memory);
    return memory != nullptr;
}

bool AllocateArrayQuietly() {
    void* const memory = operator new[](16, std::nothrow);
    operator delete[](memory);
    return memory != nullptr;
}

}  // namespace probe
